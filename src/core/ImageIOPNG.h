// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/PNGRowReader.h"

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>

class QIODevice;

// The PNG codec, on libspng. Decoded images are Format_RGB888 when the file has no transparency, otherwise
// Format_RGBA8888 (not premultiplied); 16-bit files are reduced to 8 bits a channel.
class ImageIOPNG
{
public:
    ImageIOPNG() = delete;

    // True when the bytes start with the PNG signature.
    static bool hasSignature(const QByteArray &head);

    // Reads the header only: pixel size and stored resolution (dots per inch, 72 by 72 when none is stored).
    static bool readProperties(const QString &path, QSize *pixelSize, QSizeF *dotsPerInch, QString *reason);

    // Decodes the image. Refuses images whose decoded size would pass maximumBytes; a truncated or corrupt
    // file fails. The image carries the stored resolution as its dots per meter.
    static QImage read(const QString &path, qint64 maximumBytes, QString *reason);

    // Decodes the file row by row without holding the whole image (interlaced files: decoded whole, then
    // handed over row by row). Same size limit and errors as read().
    static bool readRows(const QString &path, qint64 maximumBytes, PNGRowReader &reader, QString *reason);

    // Encodes the image to the device, with a pHYs chunk when the image's resolution is not 72 dpi.
    static bool write(const QImage &image, QIODevice *device, QString *reason);
};
