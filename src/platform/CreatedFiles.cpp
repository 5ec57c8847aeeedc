// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/CreatedFiles.h"

#include "foundation/WriteAll.h"
#include "platform/ExtendedAttributes.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 KeptMilliseconds = qint64(60) * 60 * 1000;

// "device inode birth-time" of the file, the birth time in nanoseconds (0 where the file system has none).
QByteArray identityOf(const QString &path)
{
    struct statx status = {};
    if (::statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_INO | STATX_BTIME, &status) != 0)
        return {};
    const qint64 birth = (status.stx_mask & STATX_BTIME)
                             ? qint64(status.stx_btime.tv_sec) * 1000000000 + status.stx_btime.tv_nsec
                             : 0;
    return QByteArray::number(quint64(status.stx_dev_major) << 32 | status.stx_dev_minor) + ' ' +
           QByteArray::number(quint64(status.stx_ino)) + ' ' + QByteArray::number(birth);
}

// Runs `body` on the registry's descriptor under an exclusive lock; false when the registry cannot be opened.
template <class Body> bool withRegistry(Body &&body)
{
    QDir().mkpath(QFileInfo(CreatedFiles::registryPath()).absolutePath());
    const int fd = ::open(QFile::encodeName(CreatedFiles::registryPath()).constData(),
                          O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    while (::flock(fd, LOCK_EX) != 0 && errno == EINTR) {
    }
    const bool result = body(fd);
    ::close(fd);
    return result;
}

// The entries still kept: "identity path-in-base64 time" lines.
QList<QByteArray> readEntries(int fd)
{
    QByteArray text;
    char buffer[4096];
    ::lseek(fd, 0, SEEK_SET);
    for (ssize_t n; (n = ::read(fd, buffer, sizeof buffer)) > 0;)
        text.append(buffer, n);
    const qint64 oldest = QDateTime::currentMSecsSinceEpoch() - KeptMilliseconds;
    QList<QByteArray> kept;
    for (const QByteArray &line : text.split('\n')) {
        const qsizetype space = line.lastIndexOf(' ');
        if (space > 0 && line.mid(space + 1).toLongLong() >= oldest)
            kept.append(line);
    }
    return kept;
}

} // namespace

QString CreatedFiles::registryPath()
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty())
        folder = QDir::tempPath();
    return folder + QStringLiteral("/corvex/created-files");
}

void CreatedFiles::markCreated(const QString &path, const QString &finalPath) const
{
    int errorCode = 0;
    if (mAttributes.set(path, ExtendedAttributes::CreatedByCorvex, QByteArray("1"), &errorCode) == 0 ||
        !ExtendedAttributes::isUnsupportedError(errorCode))
        return;
    const QByteArray identity = identityOf(path);
    if (identity.isEmpty())
        return;
    const QByteArray name =
        QFile::encodeName(QFileInfo(finalPath.isEmpty() ? path : finalPath).absoluteFilePath());
    withRegistry([&](int fd) {
        QList<QByteArray> entries = readEntries(fd);
        entries.append(identity + ' ' + name.toBase64() + ' ' +
                       QByteArray::number(QDateTime::currentMSecsSinceEpoch()));
        const QByteArray text = entries.join('\n') + '\n';
        return ::ftruncate(fd, 0) == 0 && ::lseek(fd, 0, SEEK_SET) == 0 && writeAll(fd, text);
    });
}

bool CreatedFiles::wasCreated(const QString &path) const
{
    int errorCode = 0;
    if (mAttributes.size(path, ExtendedAttributes::CreatedByCorvex, &errorCode) >= 0)
        return true;
    if (!QFileInfo::exists(registryPath()))
        return false;
    const QByteArray identity = identityOf(path);
    if (identity.isEmpty())
        return false;
    const QByteArray key =
        identity + ' ' + QFile::encodeName(QFileInfo(path).absoluteFilePath()).toBase64() + ' ';
    return withRegistry([&](int fd) {
        for (const QByteArray &entry : readEntries(fd)) {
            if (entry.startsWith(key))
                return true;
        }
        return false;
    });
}
