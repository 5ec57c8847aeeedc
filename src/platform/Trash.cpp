// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "Trash.h"

#include "CorvexError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <cerrno>
#include <sys/stat.h>

bool Trash::moveItemToTrash(const QString &path, QString *pathInTrash, CorvexError *error)
{
    struct stat status
    {
    };
    if (path.isEmpty() || ::lstat(QFile::encodeName(path).constData(), &status) != 0) {
        if (error)
            *error = CorvexError::fromErrno(path.isEmpty() ? ENOENT : errno, path, true);
        return false;
    }
    // Qt trashes into the current folder, and reports success, when the data folder does not exist yet.
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (dataHome.isEmpty() || !QDir().mkpath(dataHome)) {
        if (error)
            *error = CorvexError::fromErrno(EACCES, dataHome, true);
        return false;
    }
    QString trashed;
    if (!QFile::moveToTrash(QFileInfo(path).absoluteFilePath(), &trashed) || QDir::isRelativePath(trashed)) {
        if (error)
            *error = CorvexError::fromErrno(QFileInfo::exists(path) ? EACCES : ENOENT, path, true);
        return false;
    }
    if (pathInTrash)
        *pathInTrash = trashed;
    return true;
}
