// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AutomaticSteps.h"
#include "foundation/PreferenceKeys.h"

#include "core/AppUserDefaults.h"
#include "core/FactoryDefaults.h"
#include "core/FileFormat.h"
#include "core/Processor.h"
#include "core/ScreenshotInfo.h"
#include "foundation/CorvexError.h"
#include "logging/Log.h"
#include "platform/FileMove.h"
#include "platform/HomeFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <unistd.h>

namespace {

// The parts of a file path: its folder, its name without the extension, and the extension (after the last
// "."; empty when there is none).
struct PathParts
{
    QString folder;
    QString baseName;
    QString extension;
};

PathParts partsOf(const QString &path)
{
    const QFileInfo info(path);
    const QString extension = info.suffix();
    QString baseName = info.fileName();
    if (!extension.isEmpty())
        baseName.chop(extension.size() + 1);
    return PathParts{info.absolutePath(), baseName, extension};
}

const FileFormat *formatOfPath(const QString &path)
{
    return qzFileFormatForExtension(FileFormat::allFileFormats(), QFileInfo(path).suffix());
}

bool pathExists(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

QString storedOrFactoryString(const QString &key)
{
    const QString stored = AppUserDefaults::sharedCorvexDefaults().stringForKey(key);
    return stored.isNull() ? factoryDefaults().value(key).toString() : stored;
}

QString expandedFolder(const QString &folder)
{
    const QString expanded = expandTildeInPath(folder);
    return QDir::cleanPath(QDir::isAbsolutePath(expanded) ? expanded
                                                          : QDir::home().absoluteFilePath(expanded));
}

constexpr int MaximumMoveAttempts = 100;

} // namespace

QString AutomaticSteps::availablePath(const QString &folder, const QString &baseName,
                                      const QString &extension, const QString &ignoredPath)
{
    const QString suffix = extension.isEmpty() ? QString() : QLatin1Char('.') + extension;
    for (qint64 number = 1;; ++number) {
        const QString name = number == 1 ? baseName : QStringLiteral("%1 %2").arg(baseName).arg(number);
        const QString candidate = QDir::cleanPath(folder + QLatin1Char('/') + name + suffix);
        if (candidate == ignoredPath || !pathExists(candidate))
            return candidate;
    }
}

QString AutomaticSteps::moveToAvailablePath(const QString &path, const FileFormat *format,
                                            const QString &folder, const QString &baseName,
                                            const QString &extension)
{
    for (int attempt = 0; attempt < MaximumMoveAttempts; ++attempt) {
        const QString candidate = availablePath(folder, baseName, extension, path);
        if (candidate == path)
            return path;
        CorvexError error;
        // The same format on both sides: a plain move that never replaces an existing file.
        if (Processor::sharedProcessor().renameItemAtURL(QUrl::fromLocalFile(path), format,
                                                         QUrl::fromLocalFile(candidate), format, &error))
            return candidate;
        // Someone took the name meanwhile: try the next one.
        if (error.domain() != CorvexError::CocoaErrorDomain ||
            error.code() != CorvexError::FileWriteFileExistsError)
            return QString();
    }
    return QString();
}

QString AutomaticSteps::convertKeepingSource(const QString &path, const FileFormat *sourceFormat,
                                             const FileFormat *targetFormat, const QString &targetExtension)
{
    const PathParts parts = partsOf(path);
    // Converting sends the source to the Trash even when writing the new file fails; a second name for the
    // source (a hard link, else a copy) lets it go straight back to its place.
    const QString keep = availablePath(
        parts.folder, QLatin1Char('.') + QFileInfo(path).fileName() + QStringLiteral(".corvex-keep"), {});
    if (::link(QFile::encodeName(path).constData(), QFile::encodeName(keep).constData()) != 0 &&
        !QFile::copy(path, keep)) {
        DDLogError(QStringLiteral("Could not keep a copy of %1 while converting it, so it was not converted")
                       .arg(path));
        return QString();
    }

    const QString destination = availablePath(parts.folder, parts.baseName, targetExtension);
    CorvexError error;
    if (Processor::sharedProcessor().renameItemAtURL(QUrl::fromLocalFile(path), sourceFormat,
                                                     QUrl::fromLocalFile(destination), targetFormat,
                                                     &error)) {
        QFile::remove(keep);
        return destination;
    }

    // The destination name was free before, so whatever is there now is a half-written file of ours.
    if (pathExists(destination))
        QFile::remove(destination);
    if (pathExists(path)) {
        QFile::remove(keep);
    } else {
        CorvexError restoreError;
        if (!FileMove::moveItemAtPath(keep, path, &restoreError))
            DDLogError(
                QStringLiteral("Could not put %1 back after a failed conversion; it is kept as %2 (%3)")
                    .arg(path, keep, restoreError.localizedDescription()));
    }
    DDLogError(QStringLiteral("Could not convert %1 to %2: %3")
                   .arg(path, targetFormat->description(), error.localizedDescription()));
    return QString();
}

AutomaticStepsReport AutomaticSteps::applyToScreenshotInfo(ScreenshotInfo &info)
{
    AutomaticStepsReport report;
    QString path = QFileInfo(info.filePath()).absoluteFilePath();
    if (info.filePath().isEmpty() || !pathExists(path)) {
        DDLogError(QStringLiteral("Could not process %1 because file does not exist").arg(info.filePath()));
        return report;
    }

    AppUserDefaults &defaults = AppUserDefaults::sharedCorvexDefaults();
    Processor &processor = Processor::sharedProcessor();
    defaults.synchronize();

    if (defaults.boolForKey(kAutoRenameKey)) {
        const PathParts parts = partsOf(path);
        const FileFormat *format = formatOfPath(path);
        const QString name = processor.fileNameByAutomaticRenamingFromInfo(info, format);
        QString newPath;
        if (name.isEmpty() ||
            (parts.extension.isEmpty() && (name == QLatin1String(".") || name == QLatin1String(".."))))
            DDLogError(
                QStringLiteral(
                    "Could not rename %1 automatically because the renaming pattern gives no usable name")
                    .arg(path));
        else
            newPath = moveToAvailablePath(path, format, parts.folder, name, parts.extension);
        if (newPath.isNull()) {
            report.failedSteps.append(QStringLiteral("rename"));
        } else if (newPath != path) {
            DDLogInfo(QStringLiteral("Renamed %1 to %2").arg(path, newPath));
            path = newPath;
            report.renamed = true;
        }
    }

    if (defaults.boolForKey(kAutoReformatKey)) {
        const QString extension = storedOrFactoryString(kAutoReformatExtensionKey).toLower();
        const FileFormat *target = qzFileFormatForExtension(FileFormat::allFileFormats(), extension);
        const FileFormat *source = formatOfPath(path);
        if (!target) {
            DDLogError(QStringLiteral(
                           "Could not convert %1 because \"%2\" is not the extension of a known image format")
                           .arg(path, extension));
            report.failedSteps.append(QStringLiteral("convert"));
        } else if (source != target) {
            const QString newPath = convertKeepingSource(path, source, target, extension);
            if (newPath.isNull()) {
                report.failedSteps.append(QStringLiteral("convert"));
            } else {
                DDLogInfo(QStringLiteral("Converted %1 to %2").arg(path, newPath));
                path = newPath;
                report.converted = true;
            }
        }
    }

    if (defaults.boolForKey(kAutoMoveKey)) {
        const QString stored = defaults.stringForKey(kAutoMoveFolderKey);
        const QString folder = stored.isEmpty() ? QString() : expandedFolder(stored);
        const PathParts parts = partsOf(path);
        QString newPath;
        if (folder.isEmpty())
            DDLogError(QStringLiteral("Could not move %1 because no folder is chosen for moving screenshots")
                           .arg(path));
        else if (!QDir().mkpath(folder) || !QFileInfo(folder).isDir())
            DDLogError(QStringLiteral("Could not move %1 because the folder %2 could not be created")
                           .arg(path, folder));
        else
            newPath = moveToAvailablePath(path, formatOfPath(path), folder, parts.baseName, parts.extension);
        if (newPath.isNull()) {
            report.failedSteps.append(QStringLiteral("move"));
        } else if (newPath != path) {
            DDLogInfo(QStringLiteral("Moved %1 to %2").arg(path, newPath));
            path = newPath;
            report.moved = true;
        }
    }

    if (processor.agentHandlesOpenWith()) {
        // Never stored: the application's factory choice, the desktop's image viewer.
        const QString identifier = storedOrFactoryString(kOpenWithBundleIdentifierKey);
        report.opened = processor.openURL(QUrl::fromLocalFile(path), identifier);
        if (!report.opened)
            report.failedSteps.append(QStringLiteral("open"));
    }

    info.setFilePath(path);
    report.filePath = path;
    return report;
}
