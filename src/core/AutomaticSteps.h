// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

class FileFormat;
class ScreenshotInfo;

// What applying the automatic steps did.
struct AutomaticStepsReport
{
    QString filePath;        // where the file is now
    bool renamed = false;    // renamed by the pattern
    bool converted = false;  // converted to the automatic format
    bool moved = false;      // moved into the automatic folder
    bool opened = false;     // opened with the chosen application
    QStringList failedSteps; // "rename", "convert", "move", "open": the steps that were on and failed
};

// The automatic steps the agent applies to a new screenshot, as the shared preferences switch them on, in
// this order: rename by the pattern ("autoRename", "autoRenameFormat"), convert ("autoReformat",
// "autoReformatExtension"), move ("autoMove", "autoMoveFolder"), open ("openWith",
// "openWithBundleIdentifier", only when the agent handles opening). A failing step is logged and skipped; the
// file is never lost and an existing file is never replaced: a taken name gets " 2", " 3", ... before its
// extension.
class AutomaticSteps
{
public:
    AutomaticSteps() = delete;

    // Applies every step that is on to the screenshot's file and sets the record's file path to where the
    // file ends up. The report says what happened; its filePath is null only when the file was missing at the
    // start.
    static AutomaticStepsReport applyToScreenshotInfo(ScreenshotInfo &info);

    // The path "folder/baseName.extension", or "folder/baseName N.extension" with the smallest N from 2 on
    // that names no existing file (or names `ignoredPath`). An empty extension adds no ".".
    static QString availablePath(const QString &folder, const QString &baseName, const QString &extension,
                                 const QString &ignoredPath = QString());

    // Moves the file into the folder under the base name and extension (a taken name gets a number, as above)
    // with the format's plain move. Returns the new path (the old one when it already had this name), or a
    // null string when the move failed (logged; the file stays where it was).
    static QString moveToAvailablePath(const QString &path, const FileFormat *format, const QString &folder,
                                       const QString &baseName, const QString &extension);

    // Converts the file into the format, next to it under the same base name. The source goes to the Trash
    // when the conversion succeeds; when it fails, the source is put back in its place and any half-written
    // file removed. Returns the new path, or a null string on failure (logged).
    static QString convertKeepingSource(const QString &path, const FileFormat *sourceFormat,
                                        const FileFormat *targetFormat, const QString &targetExtension);
};
