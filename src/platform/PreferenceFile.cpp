// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PreferenceFile_p.h"

#include "foundation/CorvexError.h"
#include "foundation/WriteAll.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

PreferenceFileSignature signatureOf(const struct stat &st)
{
    PreferenceFileSignature s;
    s.exists = true;
    s.device = st.st_dev;
    s.inode = st.st_ino;
    s.size = st.st_size;
    s.modified = qint64(st.st_mtim.tv_sec) * 1000000000LL + st.st_mtim.tv_nsec;
    s.changed = qint64(st.st_ctim.tv_sec) * 1000000000LL + st.st_ctim.tv_nsec;
    return s;
}

QString errnoText(int errnoValue)
{
    return QString::fromLocal8Bit(std::strerror(errnoValue));
}

} // namespace

PreferenceFileLock::PreferenceFileLock(const QString &lockPath)
{
    QDir().mkpath(QFileInfo(lockPath).absolutePath());
    const QByteArray path = QFile::encodeName(lockPath);
    mFd = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (mFd < 0) {
        mErrorText = QStringLiteral("cannot open the lock file %1: %2").arg(lockPath, errnoText(errno));
        return;
    }
    while (::flock(mFd, LOCK_EX) != 0) {
        if (errno == EINTR)
            continue;
        mErrorText = QStringLiteral("cannot lock %1: %2").arg(lockPath, errnoText(errno));
        ::close(mFd);
        mFd = -1;
        return;
    }
}

PreferenceFileLock::~PreferenceFileLock()
{
    if (mFd >= 0) {
        ::flock(mFd, LOCK_UN);
        ::close(mFd);
    }
}

PreferenceFile::PreferenceFile(QString path) : mPath(std::move(path)) {}

PreferenceFile::~PreferenceFile()
{
    if (mFd >= 0)
        ::close(mFd);
}

PreferenceFileSignature PreferenceFile::signatureOfPath(const QString &path)
{
    struct stat st;
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    return signatureOf(st);
}

bool PreferenceFile::isUnchanged() const
{
    return mKnown && signatureOfPath(mPath) == mHeld;
}

void PreferenceFile::hold(int fd)
{
    if (mFd >= 0)
        ::close(mFd);
    mFd = fd;
    mHeld = {};
    struct stat st;
    if (fd >= 0 && ::fstat(fd, &st) == 0)
        mHeld = signatureOf(st);
    mKnown = true;
}

PreferenceFile::ReadResult PreferenceFile::read(QVariantMap *values, bool allowQuarantine, QString *errorText,
                                                QString *movedTo)
{
    values->clear();
    const QByteArray encoded = QFile::encodeName(mPath);
    const int fd = ::open(encoded.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        const int e = errno;
        if (e == ENOENT) {
            hold(-1);
            return ReadResult::Missing;
        }
        *errorText = QStringLiteral("cannot read %1: %2").arg(mPath, errnoText(e));
        return ReadResult::Failed;
    }
    QFile file;
    QByteArray bytes;
    if (file.open(fd, QIODevice::ReadOnly, QFileDevice::DontCloseHandle))
        bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        *errorText = QStringLiteral("cannot read %1: %2").arg(mPath, file.errorString());
        ::close(fd);
        return ReadResult::Failed;
    }
    QString parseError;
    const QVariant parsed = PropertyList::parse(bytes, &parseError);
    if (parsed.metaType().id() == QMetaType::QVariantMap) {
        *values = parsed.toMap();
        hold(fd);
        return ReadResult::Read;
    }
    ::close(fd);
    const QString what = parsed.isValid() ? QStringLiteral("holds no dictionary") : parseError;
    if (!allowQuarantine) {
        *errorText = QStringLiteral("%1 is not a valid preference file (%2)").arg(mPath, what);
        return ReadResult::Failed;
    }
    // Never overwrite a damaged file: keep it beside the domain under a name of its own.
    const QString base = mPath + QStringLiteral(".corrupt-") +
                         QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = base;
    for (int n = 2; QFileInfo::exists(target) || QFileInfo(target).isSymLink(); ++n)
        target = base + QStringLiteral("-%1").arg(n);
    if (::rename(encoded.constData(), QFile::encodeName(target).constData()) != 0) {
        *errorText = QStringLiteral("%1 is not a valid preference file (%2) and cannot be moved aside: %3")
                         .arg(mPath, what, errnoText(errno));
        return ReadResult::Failed;
    }
    *errorText = QStringLiteral("%1 is not a valid preference file (%2); it has been moved to %3")
                     .arg(mPath, what, target);
    *movedTo = target;
    hold(-1);
    return ReadResult::Quarantined;
}

QString PreferenceFile::writeTarget() const
{
    // A domain file that is a symbolic link (kept elsewhere, e.g. with the user's dotfiles) stays a link:
    // the file it points to is replaced.
    const QFileInfo info(mPath);
    if (!info.isSymLink())
        return mPath;
    const QString target = info.symLinkTarget();
    return target.isEmpty() ? mPath : target;
}

bool PreferenceFile::write(const QVariantMap &values, CorvexError *error)
{
    QString serialiseError;
    const QByteArray bytes = PropertyList::serialize(values, PropertyList::Format::Xml, &serialiseError);
    if (bytes.isEmpty()) {
        if (error)
            *error = CorvexError(CorvexError::CocoaErrorDomain, CorvexError::FileWriteUnknownError,
                                 {{CorvexError::FilePathErrorKey, mPath},
                                  {CorvexError::LocalizedFailureReasonErrorKey, serialiseError}});
        return false;
    }
    const QString target = writeTarget();
    const QString folder = QFileInfo(target).absolutePath();
    if (!QDir().mkpath(folder)) {
        if (error)
            *error = CorvexError::fromErrno(errno ? errno : EACCES, folder, true);
        return false;
    }
    QByteArray tempPath = QFile::encodeName(target + QStringLiteral(".XXXXXX"));
    const int fd = ::mkostemp(tempPath.data(), O_CLOEXEC);
    if (fd < 0) {
        if (error)
            *error = CorvexError::fromErrno(errno, target, true);
        return false;
    }
    struct stat old;
    if (::stat(QFile::encodeName(target).constData(), &old) == 0)
        ::fchmod(fd, old.st_mode & 07777);
    const bool written = writeAll(fd, bytes) && ::fdatasync(fd) == 0;
    const int writeErrno = errno;
    if (!written || ::rename(tempPath.constData(), QFile::encodeName(target).constData()) != 0) {
        const int e = written ? errno : writeErrno;
        ::close(fd);
        ::unlink(tempPath.constData());
        if (error)
            *error = CorvexError::fromErrno(e, target, true);
        return false;
    }
    hold(fd);
    return true;
}

bool PreferenceFile::remove(CorvexError *error)
{
    if (::unlink(QFile::encodeName(mPath).constData()) != 0) {
        if (error)
            *error = CorvexError::fromErrno(errno, mPath, true);
        return false;
    }
    hold(-1);
    return true;
}
