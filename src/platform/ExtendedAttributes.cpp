// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ExtendedAttributes.h"

#include <QFile>
#include <cerrno>
#include <sys/xattr.h>

namespace {

template <class Result> Result finish(Result result, int *errorCode)
{
    if (errorCode)
        *errorCode = result < 0 ? errno : 0;
    return result;
}

} // namespace

const ExtendedAttributes &ExtendedAttributes::fileSystem()
{
    // Kept for the life of the process: loggers still write while it exits.
    static const ExtendedAttributes *const files = new ExtendedAttributes;
    return *files;
}

QByteArray ExtendedAttributes::platformName(const QString &name)
{
    QByteArray utf8 = name.toUtf8();
    for (const char *space : {"user.", "trusted.", "security.", "system."}) {
        if (utf8.startsWith(space))
            return utf8;
    }
    return "user." + utf8;
}

long ExtendedAttributes::size(const QString &path, const QString &name, int *errorCode) const
{
    const QByteArray attribute = platformName(name);
    const QByteArray file = QFile::encodeName(path);
    return finish(long(::getxattr(file.constData(), attribute.constData(), nullptr, 0)), errorCode);
}

QByteArray ExtendedAttributes::value(const QString &path, const QString &name, int *errorCode) const
{
    const QByteArray attribute = platformName(name);
    const QByteArray file = QFile::encodeName(path);
    for (int attempt = 0; attempt < 4; ++attempt) {
        const long length = ExtendedAttributes::size(path, name, errorCode);
        if (length < 0)
            return QByteArray();
        QByteArray buffer(qsizetype(length), Qt::Uninitialized);
        const ssize_t read =
            ::getxattr(file.constData(), attribute.constData(), buffer.data(), size_t(length));
        if (read >= 0) {
            if (errorCode)
                *errorCode = 0;
            buffer.truncate(read);
            return buffer.isNull() ? QByteArray("") : buffer;
        }
        if (errno != ERANGE) // ERANGE: the value grew meanwhile; ask again
            break;
    }
    if (errorCode)
        *errorCode = errno;
    return QByteArray();
}

int ExtendedAttributes::set(const QString &path, const QString &name, const QByteArray &value,
                            int *errorCode) const
{
    const QByteArray attribute = platformName(name);
    const QByteArray file = QFile::encodeName(path);
    return finish(
        ::setxattr(file.constData(), attribute.constData(), value.constData(), size_t(value.size()), 0),
        errorCode);
}

int ExtendedAttributes::remove(const QString &path, const QString &name, int *errorCode) const
{
    const QByteArray attribute = platformName(name);
    const QByteArray file = QFile::encodeName(path);
    return finish(::removexattr(file.constData(), attribute.constData()), errorCode);
}

bool ExtendedAttributes::isUnsupportedError(int errorCode)
{
    return errorCode == ENOTSUP || errorCode == EOPNOTSUPP;
}
