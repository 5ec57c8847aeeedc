// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

// Loading a screenshot for the renaming window, away from the main thread. For the window only a copy
// scaled down to the display is made, decoded straight into that size where the format allows (a PNG's
// rows are averaged down as they are decoded, a JPEG is decoded at a reduced scale), so the full picture is
// never held; the full picture is decoded on its own when it is needed (printing).
class ImageLoader
{
public:
    enum class Status {
        Loaded,      // the picture was decoded
        ReadFailed,  // the file could not be read
        DecodeFailed // the file was read but holds no image this program can decode
    };

    struct Result
    {
        Status status = Status::ReadFailed;
        // The full picture. Always set by loadFullImage; set by load only when the display copy is the full
        // picture (it fits into the bound), and then the same image as display.
        QImage image;
        // The picture scaled to fit the display bound (the full picture when it fits), Format_RGB32 or
        // Format_ARGB32_Premultiplied; its device pixel ratio makes its logical size that of the full
        // picture.
        QImage display;
        QSize pixelSize; // the full picture's size in pixels
    };

    ImageLoader() = delete;

    // The size in points (pixels × 72 / stored resolution) the file's header declares, read without decoding;
    // an empty size when unknown. Cheap enough for the main thread.
    static QSizeF imageSizeOfFile(const QString &path);

    // Decodes the file (any of the six formats; a PDF's first page) for display; any thread. The display copy
    // fits into displayBound (device pixels, keeping the aspect ratio, never enlarged); an empty bound keeps
    // the full size. A picture stored at more than 72 dpi (a screenshot of a high-density screen) has the
    // logical size of its size in points; otherwise its logical size is its pixel size.
    static Result load(const QString &path, const QSize &displayBound);

    // Decodes the full picture (for printing); any thread. Its device pixel ratio follows the same rule as
    // load's; display is left empty.
    static Result loadFullImage(const QString &path);

    // Scales an image down, proportionally, to fit into the bound (never enlarges) by averaging the area each
    // pixel covers. A reduced copy's device pixel ratio is 1; an image that fits is returned as it is.
    static QImage scaledToFit(const QImage &image, const QSize &bound);

    // The picture for a file that cannot be shown: the caution icon, 128 by 128, with the icon of the file
    // type in its bottom-right quarter. Main thread only.
    static QImage fileNotFoundImageForFileType(const QString &fileExtension);
};
