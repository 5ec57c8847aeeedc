// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <exception>

// What the favourite-folder list (BookmarkItem, UserDefaultBookmarks) throws for a programming error: asking
// an empty item for its data, an index outside the list, or an item that yields nothing where a value is
// required. Everything else in the program reports failures by return value.
class BookmarkException : public std::exception
{
public:
    enum Kind {
        InternalInconsistency, // an item with neither bookmark data nor a URL was asked for one of them
        InvalidArgument,       // an item produced no value where the list needs one (saving, URLs())
        Range,                 // an index outside the list
    };

    BookmarkException(Kind kind, const QString &reason);

    Kind kind() const { return mKind; }
    // "NSInternalInconsistencyException", "NSInvalidArgumentException" or "NSRangeException".
    QString name() const;
    const QString &reason() const { return mReason; }
    // The name and the reason.
    const char *what() const noexcept override { return mWhat.constData(); }

private:
    Kind mKind;
    QString mReason;
    QByteArray mWhat;
};
