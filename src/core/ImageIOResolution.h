// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSizeF>
#include <QString>

// The resolution stored in the header of a JPEG (JFIF density, else EXIF resolution), TIFF (XResolution,
// YResolution and ResolutionUnit of the first directory) or BMP file (pixels per meter), read without
// decoding the image. Qt's readers cannot say whether a file stores one, so they cannot tell "none stored"
// from 96 dpi.
class ImageIOResolution
{
public:
    ImageIOResolution() = delete;

    enum class Container { JPEG, TIFF, BMP };

    // Dots per inch horizontally and vertically; 72 by 72 when the file stores none (or an unusable one).
    static QSizeF storedDotsPerInch(const QString &path, Container container);
};
