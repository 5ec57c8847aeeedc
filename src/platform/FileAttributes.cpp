// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileAttributes.h"

#include <QDateTime>
#include <QFile>
#include <QTimeZone>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

QDateTime dateFromTimestamp(const struct statx_timestamp &stamp)
{
    const qint64 ms = qint64(stamp.tv_sec) * 1000 + qint64(stamp.tv_nsec) / 1000000;
    return QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc());
}

QString typeName(mode_t mode)
{
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileAttributes::TypeRegular;
    case S_IFDIR:
        return FileAttributes::TypeDirectory;
    case S_IFLNK:
        return FileAttributes::TypeSymbolicLink;
    case S_IFSOCK:
        return FileAttributes::TypeSocket;
    case S_IFCHR:
        return FileAttributes::TypeCharacterSpecial;
    case S_IFBLK:
        return FileAttributes::TypeBlockSpecial;
    default:
        return FileAttributes::TypeUnknown;
    }
}

QString userName(uid_t uid)
{
    std::array<char, 4096> buffer{};
    struct passwd entry
    {
    };
    struct passwd *found = nullptr;
    if (getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return QString::fromLocal8Bit(found->pw_name);
}

QString groupName(gid_t gid)
{
    std::array<char, 4096> buffer{};
    struct group entry
    {
    };
    struct group *found = nullptr;
    if (getgrgid_r(gid, &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return {};
    return QString::fromLocal8Bit(found->gr_name);
}

// The hook for a hidden extension: the user extended attribute, read from the item itself (not a link's
// target). Anything but a clear yes counts as no.
bool extensionHidden(const QByteArray &nativePath)
{
    std::array<char, 16> value{};
    const ssize_t length = lgetxattr(nativePath.constData(), FileAttributes::HideExtensionAttribute,
                                     value.data(), value.size() - 1);
    if (length <= 0)
        return false;
    const QByteArray text = QByteArray(value.data(), length).trimmed().toLower();
    return text == "1" || text == "true" || text == "yes";
}

} // namespace

QVariantMap FileAttributes::attributesOfItemAtPath(const QString &path, CorvexError *error)
{
    const QByteArray nativePath = QFile::encodeName(path);
    struct statx info
    {
    };
    const unsigned mask = STATX_BASIC_STATS | STATX_BTIME;
    if (path.isEmpty() || statx(AT_FDCWD, nativePath.constData(), AT_SYMLINK_NOFOLLOW, mask, &info) != 0) {
        const int code = path.isEmpty() ? ENOENT : errno;
        if (error)
            *error = CorvexError::fromErrno(code, path, false);
        return {};
    }

    QVariantMap attributes;
    const QDateTime modified = dateFromTimestamp(info.stx_mtime);
    const bool hasBirthTime =
        (info.stx_mask & STATX_BTIME) && (info.stx_btime.tv_sec != 0 || info.stx_btime.tv_nsec != 0);
    attributes.insert(CreationDateKey, hasBirthTime ? dateFromTimestamp(info.stx_btime) : modified);
    attributes.insert(ModificationDateKey, modified);
    attributes.insert(SizeKey, qint64(info.stx_size));
    attributes.insert(TypeKey, typeName(info.stx_mode));
    attributes.insert(PosixPermissionsKey, qint64(info.stx_mode & 07777));
    attributes.insert(OwnerAccountIDKey, qint64(info.stx_uid));
    attributes.insert(GroupOwnerAccountIDKey, qint64(info.stx_gid));
    const QString owner = userName(info.stx_uid);
    if (!owner.isEmpty())
        attributes.insert(OwnerAccountNameKey, owner);
    const QString group = groupName(info.stx_gid);
    if (!group.isEmpty())
        attributes.insert(GroupOwnerAccountNameKey, group);
    attributes.insert(SystemNumberKey, qint64(makedev(info.stx_dev_major, info.stx_dev_minor)));
    attributes.insert(SystemFileNumberKey, qint64(info.stx_ino));
    attributes.insert(ReferenceCountKey, qint64(info.stx_nlink));
    attributes.insert(ExtensionHiddenKey, extensionHidden(nativePath));
    return attributes;
}
