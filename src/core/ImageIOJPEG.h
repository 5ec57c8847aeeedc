// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/ImageRowWriter.h"

#include <memory>

class QIODevice;

// The JPEG encoder, on libjpeg-turbo: baseline, quality 92, full-resolution colour (4:4:4), so that text and
// thin coloured lines on flat backgrounds keep crisp edges. Transparent pixels are laid over white. Rows are
// encoded as they arrive: only a few rows are ever held.
class ImageIOJPEG final : public ImageRowWriter
{
public:
    // The quality used: high enough that text keeps crisp edges without ringing.
    static constexpr int Quality = 92;

    // An encoder writing to the device, which must stay open until finish().
    explicit ImageIOJPEG(QIODevice *device);
    ~ImageIOJPEG() override;

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
