// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The file operations the renaming window makes itself (the rename and the conversion are the Processor's).

#include "app/FileOperations.h"
#include "foundation/CorvexError.h"
#include "platform/FileAttributes.h"
#include "platform/Trash.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cerrno>
#include <cstring>
#include <sys/xattr.h>
#include <unistd.h>

QString FileOperations::userInfoDescription(const QVariantMap &userInfo)
{
    QStringList entries;
    for (auto it = userInfo.cbegin(); it != userInfo.cend(); ++it) {
        const QVariant &value = it.value();
        QString text;
        if (value.typeId() == QMetaType::QByteArray)
            text = QStringLiteral("<%1 bytes>").arg(value.toByteArray().size());
        else if (value.canConvert<QString>())
            text = value.toString();
        else
            text = QString::fromUtf8(value.typeName());
        entries.append(QStringLiteral("%1 = \"%2\";").arg(it.key(), text));
    }
    return QStringLiteral("{") + entries.join(u' ') + QStringLiteral("}");
}

bool FileOperations::createFolder(const QString &path, QString *reason)
{
    if (QDir().mkpath(path) && QFileInfo(path).isDir())
        return true;
    // Find the reason: the first part of the path that is in the way or cannot be written.
    QString existing = QFileInfo(path).absoluteFilePath();
    while (!existing.isEmpty() && !QFileInfo::exists(existing))
        existing = QFileInfo(existing).path();
    const CorvexError error =
        CorvexError::fromErrno(QFileInfo(existing).isDir() ? EACCES : ENOTDIR, path, true);
    if (reason)
        *reason = error.localizedDescription();
    return false;
}

bool FileOperations::setExtensionHidden(const QString &path, bool hidden, CorvexError *error)
{
    const QByteArray file = QFile::encodeName(path);
    const int result = hidden
                           ? ::setxattr(file.constData(), FileAttributes::HideExtensionAttribute, "1", 1, 0)
                           : ::removexattr(file.constData(), FileAttributes::HideExtensionAttribute);
    if (result == 0 || (!hidden && errno == ENODATA))
        return true;
    const int savedErrno = errno;
    if (error)
        *error = CorvexError::fromErrno(savedErrno, path, true);
    // A file system without extended attributes cannot hide an extension: the file is renamed all the same,
    // only the error is reported.
    return savedErrno == ENOTSUP;
}

bool FileOperations::removeItemAtPath(const QString &path, CorvexError *error)
{
    const QFileInfo info(path);
    if (info.isDir() && !info.isSymLink()) {
        if (QDir(path).removeRecursively())
            return true;
        if (error)
            *error = CorvexError::fromErrno(QFileInfo::exists(path) ? EACCES : ENOENT, path, true);
        return false;
    }
    if (::unlink(QFile::encodeName(path).constData()) == 0)
        return true;
    if (error)
        *error = CorvexError::fromErrno(errno, path, true);
    return false;
}

bool FileOperations::recycleFile(const QString &path, CorvexError *error)
{
    return Trash::moveItemToTrash(path, nullptr, error);
}
