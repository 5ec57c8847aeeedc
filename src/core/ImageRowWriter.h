// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>

// An encoder that takes an image row by row, top to bottom, so that the whole image never has to be held.
// Rows are Format_RGB888 or Format_RGBA8888 (straight alpha) bytes, as PNGRowReader hands them over.
class ImageRowWriter
{
public:
    virtual ~ImageRowWriter() = default;

    // Starts the file: pixel size, the format of the rows to come and the resolution to store.
    virtual bool begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch,
                       QString *reason) = 0;

    // Encodes the next rows: count rows of width * 3 or width * 4 bytes, one after the other.
    virtual bool writeRows(const uchar *pixels, int count, QString *reason) = 0;

    // Completes the file after the last row.
    virtual bool finish(QString *reason) = 0;

    // Encodes a whole image: rows of other formats are converted one at a time, with the image's resolution.
    static bool writeImage(const QImage &image, ImageRowWriter &writer, QString *reason);
};
