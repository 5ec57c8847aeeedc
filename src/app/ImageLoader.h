// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

// Loading a screenshot for the renaming window, away from the main thread: the whole file is read into
// memory, decoded, and a copy scaled down for display is made along with it.
class ImageLoader
{
public:
    enum class Status {
        Loaded,      // image holds the picture
        ReadFailed,  // the file could not be read
        DecodeFailed // the file was read but holds no image this program can decode
    };

    struct Result
    {
        Status status = Status::ReadFailed;
        QImage image;   // the full picture (for printing)
        QImage display; // the picture scaled to fit the display bound (the full picture when it fits)
    };

    ImageLoader() = delete;

    // The size in points (pixels × 72 / stored resolution) the file's header declares, read without decoding;
    // an empty size when unknown. Cheap enough for the main thread.
    static QSizeF imageSizeOfFile(const QString &path);

    // Reads and decodes the file (any of the six formats; a PDF's first page); any thread. The picture's
    // device pixel ratio makes its logical size its size in points. The display copy fits into displayBound
    // (device pixels, keeping the aspect ratio, never enlarged); an empty bound makes no display copy.
    static Result load(const QString &path, const QSize &displayBound);

    // Scales an image down, proportionally, to fit into the bound (never enlarges); fast for large factors.
    static QImage scaledToFit(const QImage &image, const QSize &bound);

    // The picture for a file that cannot be shown: the caution icon, 128 by 128, with the icon of the file
    // type in its bottom-right quarter. Main thread only.
    static QImage fileNotFoundImageForFileType(const QString &fileExtension);
};
