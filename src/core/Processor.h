// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/DropboxCheck.h"

#include <QList>
#include <QSizeF>
#include <QString>
#include <QUrl>

class CorvexError;
class FileFormat;
class ScreenshotInfo;

// The one object that decides what happens to a new screenshot and performs the file operations: the
// automatic steps (rename by pattern, convert, move, open with another application) and whether the renaming
// window is shown. The agent and the application share it.
class Processor
{
public:
    // The one instance, created on first use (safe when first called from two threads at once).
    static Processor &sharedProcessor();

    // A processor that asks the Dropbox check given whether a vanished screenshot may have been taken away
    // by Dropbox.
    explicit Processor(DropboxCheck dropboxCheck);

    // Automatic processing runs in the agent; in the application this does nothing.
    void processScreenshotInfo(const ScreenshotInfo &info);

    // Decision rules, read from the shared domain as it is stored (no factory values).
    bool needsAutomaticProcessing();
    bool shouldShowCorvexWindow();
    bool appHandlesOpenWith();
    bool agentHandlesOpenWith();

    // Opens the file with the application of the given identifier (a desktop-file id, or one of the platform
    // ids standing for the desktop's default image viewer and text editor). Logs and reports failure.
    bool openURL(const QUrl &url, const QString &bundleIdentifier);

    // The name (no folder, no extension) that the stored pattern gives the screenshot; advances the stored
    // counter once per counter token.
    QString fileNameByAutomaticRenamingFromInfo(const ScreenshotInfo &info, const FileFormat *fileFormat);

    // Width and height in points: a bitmap's pixel size × 72 / its stored resolution, a PDF's first-page
    // media box; 0 by 0 when the file cannot be read.
    QSizeF imageDimensionsOfURL(const QUrl &url, bool isPDF);

    // Moves the file when the two formats are the same row of the format table; otherwise converts it into
    // the destination format and moves the source to the Trash (whether or not the conversion succeeded).
    bool renameItemAtURL(const QUrl &sourceURL, const FileFormat *sourceFormat, const QUrl &destinationURL,
                         const FileFormat *destinationFormat, CorvexError *error = nullptr);

private:
    Processor();
    Processor(const Processor &) = delete;
    Processor &operator=(const Processor &) = delete;

    // The no-such-file error, explained when Dropbox's screenshot sharing might have taken the file away.
    CorvexError decoratedForDropbox(const CorvexError &error) const;

    DropboxCheck mDropboxCheck;
    QList<QString> mRecentRenames;
};
