// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ImageRowWriter.h"

#include <memory>

class QIODevice;

// The TIFF encoder, on libtiff: 8-bit RGB, or RGB with unassociated (straight) alpha, in strips compressed
// with a fast deflate and the horizontal predictor, with the resolution in dots per inch. Rows are encoded
// as they arrive: only one strip is ever held.
class ImageIOTIFF final : public ImageRowWriter
{
public:
    // An encoder writing to the device, which must stay open and seekable until finish().
    explicit ImageIOTIFF(QIODevice *device);
    ~ImageIOTIFF() override;

    bool begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch, QString *reason) override;
    bool writeRows(const uchar *pixels, int count, QString *reason) override;
    bool finish(QString *reason) override;

    // Encodes the whole image to the device, with its resolution.
    static bool write(const QImage &image, QIODevice *device, QString *reason);

    // The encoder's state, known only to its source file.
    struct State;

private:
    std::unique_ptr<State> d;
};
