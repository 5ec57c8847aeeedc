// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileMove.h"

#include "foundation/CorvexError.h"
#include "foundation/WriteAll.h"

#include <QFile>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>
#include <vector>

namespace {

class Descriptor
{
public:
    explicit Descriptor(int fd) : mFd(fd) {}
    ~Descriptor()
    {
        if (mFd >= 0)
            ::close(mFd);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    int get() const { return mFd; }
    int release()
    {
        const int fd = mFd;
        mFd = -1;
        return fd;
    }

private:
    int mFd;
};

bool fail(CorvexError *error, int errnoValue, const QString &path, bool writing)
{
    if (error)
        *error = CorvexError::fromErrno(errnoValue, path, writing);
    return false;
}

// Copies all bytes; false with errno set on failure.
bool copyContents(int from, int to, off_t size)
{
    off_t copied = 0;
    while (copied < size) {
        const ssize_t n = ::copy_file_range(from, nullptr, to, nullptr, size_t(size - copied), 0);
        if (n > 0) {
            copied += n;
            continue;
        }
        if (n == 0)
            break;
        if (errno == EINTR)
            continue;
        if (errno != EXDEV && errno != ENOSYS && errno != EOPNOTSUPP && errno != EINVAL)
            return false;
        break; // fall back to read and write
    }
    std::vector<char> buffer(1 << 20);
    for (;;) {
        const ssize_t n = ::read(from, buffer.data(), buffer.size());
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return false;
        if (n == 0)
            return true;
        if (writeAll(to, buffer.data(), n) != n)
            return false;
    }
}

// The move across file systems: copy to a new file, check, then remove the source.
bool copyThenRemove(const QByteArray &source, const QByteArray &destination, const struct stat &sourceStatus,
                    const QString &sourcePath, const QString &destinationPath, CorvexError *error)
{
    if (!S_ISREG(sourceStatus.st_mode))
        return fail(error, EXDEV, sourcePath, true);
    Descriptor in(::open(source.constData(), O_RDONLY | O_CLOEXEC));
    if (in.get() < 0)
        return fail(error, errno, sourcePath, false);
    Descriptor out(::open(destination.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                          sourceStatus.st_mode & 07777));
    if (out.get() < 0)
        return fail(error, errno, destinationPath, true);
    struct stat written
    {
    };
    const bool copied = copyContents(in.get(), out.get(), sourceStatus.st_size) && ::fsync(out.get()) == 0 &&
                        ::fstat(out.get(), &written) == 0;
    const int copyErrno = copied ? 0 : errno;
    if (!copied || written.st_size != sourceStatus.st_size) {
        ::unlink(destination.constData());
        return fail(error, copied ? EIO : copyErrno, destinationPath, true);
    }
    ::fchmod(out.get(), sourceStatus.st_mode & 07777);
    const struct timespec times[2] = {sourceStatus.st_atim, sourceStatus.st_mtim};
    ::futimens(out.get(), times);
    if (::close(out.release()) != 0) {
        const int closeErrno = errno;
        ::unlink(destination.constData());
        return fail(error, closeErrno, destinationPath, true);
    }
    if (::unlink(source.constData()) != 0) {
        // The source cannot go: take the copy back, so that the file is not duplicated.
        const int unlinkErrno = errno;
        ::unlink(destination.constData());
        return fail(error, unlinkErrno, sourcePath, true);
    }
    return true;
}

} // namespace

bool FileMove::moveItemAtPath(const QString &sourcePath, const QString &destinationPath, CorvexError *error)
{
    const QByteArray source = QFile::encodeName(sourcePath);
    const QByteArray destination = QFile::encodeName(destinationPath);
    struct stat sourceStatus
    {
    };
    if (sourcePath.isEmpty() || ::lstat(source.constData(), &sourceStatus) != 0)
        return fail(error, sourcePath.isEmpty() ? ENOENT : errno, sourcePath, true);
    struct stat destinationStatus
    {
    };
    if (::lstat(destination.constData(), &destinationStatus) == 0)
        return fail(error, EEXIST, destinationPath, true);

    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, destination.constData(), RENAME_NOREPLACE) == 0)
        return true;
    int renameErrno = errno;
    if (renameErrno == EINVAL || renameErrno == ENOSYS) {
        // The file system cannot refuse to replace by itself; the check above stands in for it.
        if (::rename(source.constData(), destination.constData()) == 0)
            return true;
        renameErrno = errno;
    }
    if (renameErrno == EXDEV)
        return copyThenRemove(source, destination, sourceStatus, sourcePath, destinationPath, error);
    if (renameErrno == ENOENT && ::lstat(source.constData(), &sourceStatus) != 0)
        return fail(error, ENOENT, sourcePath, true);
    return fail(error, renameErrno, destinationPath, true);
}
