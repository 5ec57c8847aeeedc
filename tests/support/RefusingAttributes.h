// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ExtendedAttributes.h"

#include <cerrno>

// The extended attributes of a file system that takes no user attributes: every call on a "user." name fails
// with ENOTSUP; other names go to the file system.
class RefusingAttributes : public ExtendedAttributes
{
public:
    long size(const QString &path, const QString &name, int *errorCode) const override
    {
        return refuses(name, errorCode) ? -1 : ExtendedAttributes::size(path, name, errorCode);
    }
    QByteArray value(const QString &path, const QString &name, int *errorCode) const override
    {
        return refuses(name, errorCode) ? QByteArray() : ExtendedAttributes::value(path, name, errorCode);
    }
    int set(const QString &path, const QString &name, const QByteArray &value, int *errorCode) const override
    {
        return refuses(name, errorCode) ? -1 : ExtendedAttributes::set(path, name, value, errorCode);
    }
    int remove(const QString &path, const QString &name, int *errorCode) const override
    {
        return refuses(name, errorCode) ? -1 : ExtendedAttributes::remove(path, name, errorCode);
    }

private:
    static bool refuses(const QString &name, int *errorCode)
    {
        if (!platformName(name).startsWith("user."))
            return false;
        errno = ENOTSUP;
        if (errorCode)
            *errorCode = ENOTSUP;
        return true;
    }
};
