// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/BookmarkException.h"

BookmarkException::BookmarkException(Kind kind, const QString &reason) : mKind(kind), mReason(reason)
{
    mWhat = (name() + QStringLiteral(": ") + reason).toUtf8();
}

QString BookmarkException::name() const
{
    switch (mKind) {
    case InternalInconsistency:
        return QStringLiteral("NSInternalInconsistencyException");
    case InvalidArgument:
        return QStringLiteral("NSInvalidArgumentException");
    case Range:
        break;
    }
    return QStringLiteral("NSRangeException");
}
