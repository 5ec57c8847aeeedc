// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Bookmark.h"

#include "platform/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPair>
#include <QStandardPaths>
#include <QVariantMap>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

const QString kVersionKey = QStringLiteral("CorvexBookmarkVersion");
const QString kPathKey = QStringLiteral("path");
const QString kDeviceKey = QStringLiteral("device");
const QString kInodeKey = QStringLiteral("inode");
const QString kSizeKey = QStringLiteral("size");
// Times as integer nanoseconds since 1970 (exact, unlike property-list dates).
const QString kModificationKey = QStringLiteral("modificationTime");
const QString kBirthKey = QStringLiteral("birthTime");

constexpr int kEntryBudget = 100000;
constexpr int kWalkDepth = 3;

// The identity of an item as the file system gives it.
struct Identity
{
    quint64 device = 0;
    quint64 inode = 0;
    quint64 size = 0;
    std::optional<qint64> birthNSecs;
    qint64 modificationNSecs = 0;
};

std::optional<Identity> identityOf(const QString &path, int *errnoValue = nullptr)
{
    struct statx info
    {
    };
    const QByteArray native = QFile::encodeName(path);
    if (path.isEmpty() || statx(AT_FDCWD, native.constData(), AT_SYMLINK_NOFOLLOW,
                                STATX_BASIC_STATS | STATX_BTIME, &info) != 0) {
        if (errnoValue)
            *errnoValue = path.isEmpty() ? ENOENT : errno;
        return std::nullopt;
    }
    Identity identity;
    identity.device = makedev(info.stx_dev_major, info.stx_dev_minor);
    identity.inode = info.stx_ino;
    identity.size = info.stx_size;
    identity.modificationNSecs = qint64(info.stx_mtime.tv_sec) * 1000000000 + info.stx_mtime.tv_nsec;
    if ((info.stx_mask & STATX_BTIME) && (info.stx_btime.tv_sec != 0 || info.stx_btime.tv_nsec != 0))
        identity.birthNSecs = qint64(info.stx_btime.tv_sec) * 1000000000 + info.stx_btime.tv_nsec;
    return identity;
}

// True when the item at the path is the bookmarked one.
bool isSameItem(const QString &path, const Identity &wanted)
{
    const std::optional<Identity> found = identityOf(path);
    if (!found || found->device != wanted.device || found->inode != wanted.inode)
        return false;
    return !found->birthNSecs || !wanted.birthNSecs || *found->birthNSecs == *wanted.birthNSecs;
}

std::optional<quint64> unsignedValue(const QVariant &value)
{
    if (value.metaType().id() != QMetaType::LongLong && value.metaType().id() != QMetaType::ULongLong)
        return std::nullopt;
    return value.toULongLong();
}

// The search over folders, bounded by an entry budget. Each folder is read at most once; its sub-folders
// (hidden ones left out) are remembered for a later walk below it.
class Search
{
public:
    explicit Search(const Identity &wanted) : mWanted(wanted) {}

    // Reads one folder's entries; returns the path of the item when it is there.
    std::optional<QString> scan(const QString &folder)
    {
        if (mBudget <= 0 || folder.isEmpty())
            return std::nullopt;
        const std::optional<Key> key = folderKey(folder);
        if (!key || key->first != mWanted.device || mChildren.contains(*key))
            return std::nullopt;
        QStringList &children = mChildren[*key];

        DIR *dir = opendir(QFile::encodeName(folder).constData());
        if (!dir)
            return std::nullopt;
        std::optional<QString> result;
        const QString prefix = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
        while (const dirent *entry = readdir(dir)) {
            if (--mBudget < 0)
                break;
            const char *name = entry->d_name;
            const bool hidden = name[0] == '.';
            if (hidden && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0')))
                continue;
            // Hidden folders are not walked into; a hidden file can still be the one looked for.
            const bool maybeFolder = !hidden && (entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN);
            if (quint64(entry->d_ino) != mWanted.inode && !maybeFolder)
                continue;
            const QString path = prefix + QFile::decodeName(name);
            if (quint64(entry->d_ino) == mWanted.inode && isSameItem(path, mWanted)) {
                result = path;
                break;
            }
            if (maybeFolder && (entry->d_type == DT_DIR || QFileInfo(path).isDir()))
                children.append(path);
        }
        closedir(dir);
        return result;
    }

    // Walks below the folder, level by level, down to the given depth.
    std::optional<QString> walk(const QString &root, int depth)
    {
        QStringList level{root};
        for (int d = 0; d <= depth && !level.isEmpty() && mBudget > 0; ++d) {
            QStringList next;
            for (const QString &folder : std::as_const(level)) {
                if (std::optional<QString> found = scan(folder))
                    return found;
                if (const std::optional<Key> key = folderKey(folder))
                    next += mChildren.value(*key);
            }
            level = next;
        }
        return std::nullopt;
    }

    // The sub-folders found in a folder that was read.
    QStringList children(const QString &folder) const
    {
        const std::optional<Key> key = folderKey(folder);
        return key ? mChildren.value(*key) : QStringList();
    }

private:
    using Key = QPair<quint64, quint64>;

    static std::optional<Key> folderKey(const QString &folder)
    {
        struct stat info
        {
        };
        if (stat(QFile::encodeName(folder).constData(), &info) != 0 || !S_ISDIR(info.st_mode))
            return std::nullopt;
        return Key(quint64(info.st_dev), quint64(info.st_ino));
    }

    Identity mWanted;
    int mBudget = kEntryBudget;
    QHash<Key, QStringList> mChildren;
};

// The top of the file system that the folder lies on (the last ancestor on the same device).
QString mountTop(const QString &folder, quint64 device)
{
    QString current = QDir::cleanPath(folder);
    while (current != QLatin1String("/")) {
        const QString parent = QFileInfo(current).path();
        struct stat info
        {
        };
        if (stat(QFile::encodeName(parent).constData(), &info) != 0 || quint64(info.st_dev) != device)
            break;
        current = parent;
    }
    return current;
}

std::optional<QString> search(const QString &path, const Identity &wanted)
{
    Search search(wanted);
    // The recorded folder, or its nearest existing ancestor when it is gone.
    QString folder = QFileInfo(path).path();
    while (!QFileInfo(folder).isDir() && folder != QLatin1String("/"))
        folder = QFileInfo(folder).path();
    if (std::optional<QString> found = search.scan(folder))
        return found;

    const QString parent = QFileInfo(folder).path();
    if (std::optional<QString> found = search.scan(parent))
        return found;
    for (const QString &sibling : search.children(parent))
        if (std::optional<QString> found = search.scan(sibling))
            return found;
    for (const QString &child : search.children(folder))
        if (std::optional<QString> found = search.scan(child))
            return found;

    const QString home = QDir::homePath();
    const QString dataHome = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    const QString top = mountTop(folder, wanted.device);
    const QString uid = QString::number(getuid());
    const QStringList places{
        home,
        QStandardPaths::writableLocation(QStandardPaths::DesktopLocation),
        QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
        QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
        QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
        dataHome + QStringLiteral("/Trash/files"),
        top + QStringLiteral("/.Trash-") + uid + QStringLiteral("/files"),
        top + QStringLiteral("/.Trash/") + uid + QStringLiteral("/files"),
    };
    for (const QString &place : places)
        if (std::optional<QString> found = search.scan(place))
            return found;

    if (std::optional<QString> found = search.walk(parent, kWalkDepth))
        return found;
    return search.walk(home, kWalkDepth);
}

} // namespace

QByteArray Bookmark::create(const QString &path, CorvexError *error)
{
    const QString absolute = path.isEmpty() ? QString() : QFileInfo(path).absoluteFilePath();
    int errnoValue = 0;
    const std::optional<Identity> identity = identityOf(absolute, &errnoValue);
    if (!identity) {
        if (error)
            *error = CorvexError::fromErrno(errnoValue, path, false);
        return {};
    }
    QVariantMap map;
    map.insert(kVersionKey, Version);
    map.insert(kPathKey, absolute);
    map.insert(kDeviceKey, qint64(identity->device));
    map.insert(kInodeKey, qint64(identity->inode));
    map.insert(kSizeKey, qint64(identity->size));
    map.insert(kModificationKey, identity->modificationNSecs);
    if (identity->birthNSecs)
        map.insert(kBirthKey, *identity->birthNSecs);
    return PropertyList::serialize(map, PropertyList::Format::Binary);
}

std::optional<QString> Bookmark::resolve(const QByteArray &data, bool *isStale)
{
    if (isStale)
        *isStale = false;
    if (data.isEmpty())
        return std::nullopt;
    const QVariant parsed = PropertyList::parse(data);
    if (parsed.metaType().id() != QMetaType::QVariantMap)
        return std::nullopt;
    const QVariantMap map = parsed.toMap();
    const std::optional<quint64> version = unsignedValue(map.value(kVersionKey));
    const QVariant pathValue = map.value(kPathKey);
    const std::optional<quint64> device = unsignedValue(map.value(kDeviceKey));
    const std::optional<quint64> inode = unsignedValue(map.value(kInodeKey));
    if (!version || *version != quint64(Version) || pathValue.metaType().id() != QMetaType::QString ||
        !device || !inode)
        return std::nullopt;
    const QString path = pathValue.toString();
    if (!QDir::isAbsolutePath(path))
        return std::nullopt;

    Identity wanted;
    wanted.device = *device;
    wanted.inode = *inode;
    const QVariant birth = map.value(kBirthKey);
    if (birth.metaType().id() == QMetaType::LongLong)
        wanted.birthNSecs = birth.toLongLong();

    if (isSameItem(path, wanted))
        return path;
    std::optional<QString> found = search(path, wanted);
    if (!found && identityOf(path))
        found = path;
    if (found && isStale)
        *isStale = true;
    return found;
}
