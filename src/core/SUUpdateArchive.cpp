// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUUpdateArchive.h"

#include "core/SUErrors.h"
#include "foundation/CorvexError.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <cstring>
#include <memory>
#include <sys/stat.h>

namespace updatearchive {

QString tr(const char *text)
{
    return QCoreApplication::translate("SUUpdateArchive", text);
}

using ReadArchive = std::unique_ptr<archive, decltype(&archive_read_free)>;
using WriteArchive = std::unique_ptr<archive, decltype(&archive_write_free)>;

QString archiveErrorText(archive *a)
{
    const char *text = archive_error_string(a);
    if (text && *text)
        return QString::fromLocal8Bit(text);
    const int code = archive_errno(a);
    return code ? QString::fromLocal8Bit(std::strerror(code)) : tr("unknown error");
}

// Empties the folder, keeping the folder itself.
void removeContents(const QString &folder)
{
    QDir dir(folder);
    const QFileInfoList entries =
        dir.entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (entry.isDir() && !entry.isSymLink())
            QDir(entry.filePath()).removeRecursively();
        else
            QFile::remove(entry.filePath());
    }
}

// Copies the entry's data blocks to the disk writer; a failed write (a full disk) is an error.
bool copyData(archive *reader, archive *writer, QString *problem)
{
    const void *block = nullptr;
    size_t size = 0;
    la_int64_t offset = 0;
    for (;;) {
        const int status = archive_read_data_block(reader, &block, &size, &offset);
        if (status == ARCHIVE_EOF)
            return true;
        if (status < ARCHIVE_WARN) {
            *problem = archiveErrorText(reader);
            return false;
        }
        if (archive_write_data_block(writer, block, size, offset) < ARCHIVE_WARN) {
            *problem = archiveErrorText(writer);
            return false;
        }
    }
}

} // namespace updatearchive

bool SUUpdateArchive::isContainedPath(const QString &entryPath)
{
    if (entryPath.isEmpty() || entryPath.startsWith(QLatin1Char('/')))
        return false;
    int depth = 0;
    for (const QString &component : entryPath.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        if (component == QLatin1String(".."))
            --depth;
        else if (component != QLatin1String("."))
            ++depth;
        if (depth < 0)
            return false;
    }
    return true;
}

bool SUUpdateArchive::isContainedLink(const QString &entryPath, const QString &target)
{
    if (target.isEmpty() || target.startsWith(QLatin1Char('/')))
        return false;
    const int slash = entryPath.lastIndexOf(QLatin1Char('/'));
    const QString folder = slash < 0 ? QString() : entryPath.left(slash + 1);
    return isContainedPath(folder + target);
}

bool SUUpdateArchive::unpack(const QString &archivePath, const QString &destinationFolder,
                             QString *bundlePath, CorvexError *error)
{
    using namespace updatearchive;
    auto fail = [&](const QString &text) {
        removeContents(destinationFolder);
        if (error)
            *error = suError(SUError::UnarchivingError, text);
        return false;
    };
    const QDir destination(destinationFolder);
    if (!destination.exists() ||
        !destination.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
        if (error)
            *error = suError(SUError::UnarchivingError,
                             tr("The update cannot be unpacked into %1: it is not an empty folder.")
                                 .arg(destinationFolder));
        return false;
    }
    ReadArchive reader(archive_read_new(), &archive_read_free);
    WriteArchive writer(archive_write_disk_new(), &archive_write_free);
    archive_read_support_filter_all(reader.get());
    archive_read_support_format_tar(reader.get());
    archive_read_support_format_zip(reader.get());
    archive_write_disk_set_options(writer.get(), ARCHIVE_EXTRACT_TIME | ARCHIVE_EXTRACT_PERM |
                                                     ARCHIVE_EXTRACT_SECURE_NODOTDOT |
                                                     ARCHIVE_EXTRACT_SECURE_SYMLINKS);
    const QByteArray encodedArchive = QFile::encodeName(archivePath);
    if (archive_read_open_filename(reader.get(), encodedArchive.constData(), 64 * 1024) != ARCHIVE_OK)
        return fail(tr("The update archive %1 cannot be opened; it is damaged or no archive: %2")
                        .arg(archivePath, archiveErrorText(reader.get())));

    // Entries are written below the folder's real path (every entry path is checked to stay inside it), so
    // that no symbolic link on the way to the folder trips the check for links inside the archive.
    const QString root = QFileInfo(destination.absolutePath()).canonicalFilePath() + QLatin1Char('/');
    QStringList topLevel;
    archive_entry *entry = nullptr;
    int entries = 0;
    for (;;) {
        const int status = archive_read_next_header(reader.get(), &entry);
        if (status == ARCHIVE_EOF)
            break;
        if (status < ARCHIVE_WARN)
            return fail(tr("The update archive is damaged: %1").arg(archiveErrorText(reader.get())));
        ++entries;
        const QString path =
            QString::fromUtf8(archive_entry_pathname_utf8(entry) ? archive_entry_pathname_utf8(entry)
                                                                 : archive_entry_pathname(entry));
        if (!isContainedPath(path))
            return fail(
                tr("The update archive is refused: its entry \"%1\" lies outside its folder.").arg(path));
        const mode_t type = archive_entry_filetype(entry);
        if (type != AE_IFREG && type != AE_IFDIR && type != AE_IFLNK)
            return fail(tr("The update archive is refused: its entry \"%1\" is not a file, folder or link.")
                            .arg(path));
        if (type == AE_IFLNK) {
            const QString target = QString::fromUtf8(archive_entry_symlink(entry));
            if (!isContainedLink(path, target))
                return fail(
                    tr("The update archive is refused: its link \"%1\" points outside its folder (%2).")
                        .arg(path, target));
        }
        if (const char *hardlink = archive_entry_hardlink(entry)) {
            const QString target = QString::fromUtf8(hardlink);
            if (!isContainedPath(target))
                return fail(
                    tr("The update archive is refused: its link \"%1\" points outside its folder (%2).")
                        .arg(path, target));
            archive_entry_set_hardlink(entry, QFile::encodeName(root + target).constData());
        }
        const QString first = path.section(QLatin1Char('/'), 0, 0, QString::SectionSkipEmpty);
        if (first != QLatin1String(".") && !first.isEmpty() && !topLevel.contains(first))
            topLevel.append(first);
        archive_entry_set_pathname(entry, QFile::encodeName(root + path).constData());
        if (archive_write_header(writer.get(), entry) < ARCHIVE_WARN)
            return fail(tr("The update cannot be unpacked: %1").arg(archiveErrorText(writer.get())));
        QString problem;
        if (archive_entry_size(entry) > 0 && !copyData(reader.get(), writer.get(), &problem))
            return fail(tr("The update cannot be unpacked: %1").arg(problem));
        if (archive_write_finish_entry(writer.get()) < ARCHIVE_WARN)
            return fail(tr("The update cannot be unpacked: %1").arg(archiveErrorText(writer.get())));
    }
    if (archive_write_close(writer.get()) != ARCHIVE_OK)
        return fail(tr("The update cannot be unpacked: %1").arg(archiveErrorText(writer.get())));
    if (entries == 0)
        return fail(tr("The update archive is empty."));
    if (topLevel.size() != 1 || !topLevel.first().endsWith(QLatin1String(".app")) ||
        QFileInfo(root + topLevel.first()).isSymLink() || !QFileInfo(root + topLevel.first()).isDir())
        return fail(tr("The update archive does not hold one application bundle (it holds: %1).")
                        .arg(topLevel.join(QLatin1String(", "))));
    if (bundlePath)
        *bundlePath = root + topLevel.first();
    return true;
}
