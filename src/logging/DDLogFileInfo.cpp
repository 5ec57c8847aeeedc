// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogFileInfo.h"

#include "logging/SystemLog_p.h"
#include "platform/ExtendedAttributes.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using logging_private::systemLog;

namespace {

QDateTime dateOf(const struct statx_timestamp &time)
{
    return QDateTime::fromMSecsSinceEpoch(qint64(time.tv_sec) * 1000 + time.tv_nsec / 1000000);
}

QString fileTypeOf(mode_t mode)
{
    if (S_ISREG(mode))
        return QStringLiteral("NSFileTypeRegular");
    if (S_ISDIR(mode))
        return QStringLiteral("NSFileTypeDirectory");
    if (S_ISLNK(mode))
        return QStringLiteral("NSFileTypeSymbolicLink");
    return QStringLiteral("NSFileTypeUnknown");
}

qint64 nsecsOf(const struct statx_timestamp &time)
{
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

int compareLaterFirst(qint64 mine, qint64 theirs)
{
    if (mine > theirs)
        return -1;
    if (mine < theirs)
        return 1;
    return 0;
}

} // namespace

std::shared_ptr<DDLogFileInfo> DDLogFileInfo::logFileWithPath(const QString &filePath,
                                                              const ExtendedAttributes &attributes)
{
    return std::make_shared<DDLogFileInfo>(filePath, attributes);
}

DDLogFileInfo::DDLogFileInfo(const QString &filePath, const ExtendedAttributes &attributes)
    : mFilePath(filePath), mExtendedAttributes(&attributes)
{
}

QString DDLogFileInfo::fileName() const
{
    return QFileInfo(mFilePath).fileName();
}

const DDLogFileInfo::Attributes &DDLogFileInfo::attributes() const
{
    if (mAttributes)
        return *mAttributes;
    Attributes result;
    struct statx status
    {
    };
    const QByteArray path = QFile::encodeName(mFilePath);
    if (::statx(AT_FDCWD, path.constData(), 0, STATX_BASIC_STATS | STATX_BTIME, &status) == 0) {
        result.fileSize = status.stx_size;
        result.modificationDate = dateOf(status.stx_mtime);
        result.modificationNSecs = nsecsOf(status.stx_mtime);
        if (status.stx_mask & STATX_BTIME) {
            result.creationDate = dateOf(status.stx_btime);
            result.creationNSecs = nsecsOf(status.stx_btime);
        } else {
            // No creation date on this file system: the one recorded at creation, else the earliest time
            // known.
            bool ok = false;
            const qint64 recorded =
                mExtendedAttributes->value(mFilePath, CreationDateAttributeName).toLongLong(&ok);
            if (ok)
                result.creationDate = QDateTime::fromMSecsSinceEpoch(recorded);
            else
                result.creationDate = qMin(dateOf(status.stx_mtime), dateOf(status.stx_ctime));
            result.creationNSecs = result.creationDate.toMSecsSinceEpoch() * 1000000;
        }
        result.map.insert(QStringLiteral("NSFileSize"), qulonglong(result.fileSize));
        result.map.insert(QStringLiteral("NSFileCreationDate"), result.creationDate);
        result.map.insert(QStringLiteral("NSFileModificationDate"), result.modificationDate);
        result.map.insert(QStringLiteral("NSFilePosixPermissions"), int(status.stx_mode & 07777));
        result.map.insert(QStringLiteral("NSFileType"), fileTypeOf(status.stx_mode));
    }
    mAttributes = std::move(result);
    return *mAttributes;
}

const QVariantMap &DDLogFileInfo::fileAttributes() const
{
    return attributes().map;
}

QDateTime DDLogFileInfo::creationDate() const
{
    return attributes().creationDate;
}

QDateTime DDLogFileInfo::modificationDate() const
{
    return attributes().modificationDate;
}

quint64 DDLogFileInfo::fileSize() const
{
    return attributes().fileSize;
}

double DDLogFileInfo::age() const
{
    const QDateTime created = creationDate();
    if (!created.isValid())
        return 0.0;
    return double(QDateTime::currentMSecsSinceEpoch() - created.toMSecsSinceEpoch()) / 1000.0;
}

bool DDLogFileInfo::isArchived() const
{
    return hasExtendedAttributeWithName(ArchivedAttributeName);
}

void DDLogFileInfo::setIsArchived(bool flag)
{
    if (flag)
        addExtendedAttributeWithName(ArchivedAttributeName);
    else
        removeExtendedAttributeWithName(ArchivedAttributeName);
}

void DDLogFileInfo::reset()
{
    mAttributes.reset();
}

QString DDLogFileInfo::flagFilePathForAttribute(const QString &attrName) const
{
    const QFileInfo file(mFilePath);
    const QString suffix = attrName.section(QLatin1Char('.'), -1);
    return file.path() + QLatin1String("/.") + file.fileName() + QLatin1Char('.') + suffix;
}

void DDLogFileInfo::renameFile(const QString &newFileName)
{
    if (newFileName == fileName())
        return;
    const QString newPath = QFileInfo(mFilePath).path() + QLatin1Char('/') + newFileName;
    const QByteArray from = QFile::encodeName(mFilePath);
    const QByteArray to = QFile::encodeName(newPath);
    if (::rename(from.constData(), to.constData()) != 0) {
        const CorvexError error = CorvexError::fromErrno(errno, mFilePath, true);
        systemLog(QStringLiteral("DDLogFileInfo: Error renaming file (%1): %2")
                      .arg(fileName(), logging_private::describeError(error)));
    } else {
        const QString oldFlag = flagFilePathForAttribute(ArchivedAttributeName);
        if (QFile::exists(oldFlag)) {
            DDLogFileInfo renamed(newPath, *mExtendedAttributes);
            QFile::rename(oldFlag, renamed.flagFilePathForAttribute(ArchivedAttributeName));
        }
    }
    // The path changes even when the move failed.
    mFilePath = newPath;
    reset();
}

bool DDLogFileInfo::hasExtendedAttributeWithName(const QString &attrName) const
{
    if (mExtendedAttributes->size(mFilePath, attrName) >= 0)
        return true;
    const QByteArray flag = QFile::encodeName(flagFilePathForAttribute(attrName));
    return ::access(flag.constData(), F_OK) == 0;
}

void DDLogFileInfo::addExtendedAttributeWithName(const QString &attrName)
{
    int errorCode = 0;
    const int result = mExtendedAttributes->set(mFilePath, attrName, QByteArray(""), &errorCode);
    if (result == 0)
        return;
    if (ExtendedAttributes::isUnsupportedError(errorCode)) {
        // The file system takes no user attributes: an empty flag file beside the file says the same.
        const QByteArray flag = QFile::encodeName(flagFilePathForAttribute(attrName));
        const int fd = ::open(flag.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        if (fd >= 0) {
            ::close(fd);
            return;
        }
    }
    systemLog(
        QStringLiteral("DDLogFileInfo: setxattr(%1, %2): error = %3").arg(attrName, fileName()).arg(result));
}

void DDLogFileInfo::removeExtendedAttributeWithName(const QString &attrName)
{
    int errorCode = 0;
    const int result = mExtendedAttributes->remove(mFilePath, attrName, &errorCode);
    if (result != 0 && errorCode != ENODATA && !ExtendedAttributes::isUnsupportedError(errorCode))
        systemLog(QStringLiteral("DDLogFileInfo: removexattr(%1, %2): error = %3")
                      .arg(attrName, fileName())
                      .arg(result));
    const QByteArray flag = QFile::encodeName(flagFilePathForAttribute(attrName));
    ::unlink(flag.constData());
}

void DDLogFileInfo::recordCreationDate()
{
    struct statx status
    {
    };
    const QByteArray path = QFile::encodeName(mFilePath);
    if (::statx(AT_FDCWD, path.constData(), 0, STATX_BTIME, &status) != 0 || (status.stx_mask & STATX_BTIME))
        return;
    mExtendedAttributes->set(mFilePath, CreationDateAttributeName,
                             QByteArray::number(QDateTime::currentMSecsSinceEpoch()));
    reset();
}

int DDLogFileInfo::reverseCompareByCreationDate(const DDLogFileInfo &other) const
{
    return compareLaterFirst(attributes().creationNSecs, other.attributes().creationNSecs);
}

int DDLogFileInfo::reverseCompareByModificationDate(const DDLogFileInfo &other) const
{
    return compareLaterFirst(attributes().modificationNSecs, other.attributes().modificationNSecs);
}
