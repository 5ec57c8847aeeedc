// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Trash.h"

#include "foundation/CorvexError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>
#include <cerrno>
#include <sys/stat.h>

namespace {

// Qt writes the original path of a trashed item as it is; the Trash format wants it percent-encoded, or other
// programs restore a name holding "%" or non-ASCII characters to the wrong place.
void encodeOriginalPath(const QString &pathInTrash, const QString &originalPath)
{
    const QFileInfo trashed(pathInTrash);
    QFile info(
        trashed.dir().absoluteFilePath(QStringLiteral("../info/%1.trashinfo").arg(trashed.fileName())));
    if (!info.open(QIODevice::ReadWrite))
        return;
    QByteArrayList lines = info.readAll().split('\n');
    bool changed = false;
    for (QByteArray &line : lines) {
        if (line.startsWith("Path=")) {
            line = QByteArray("Path=") + QUrl::toPercentEncoding(originalPath, "/");
            changed = true;
            break;
        }
    }
    if (changed) {
        info.resize(0);
        info.seek(0);
        info.write(lines.join('\n'));
    }
}

} // namespace

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
    encodeOriginalPath(trashed, QFileInfo(path).absoluteFilePath());
    if (pathInTrash)
        *pathInTrash = trashed;
    return true;
}
