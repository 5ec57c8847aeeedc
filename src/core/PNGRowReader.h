// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>

// Receives a PNG's rows as they are decoded.
struct PNGRowReader
{
    virtual ~PNGRowReader() = default;
    // Called once before any row: pixel size, Format_RGB888 (opaque) or Format_RGBA8888 (not premultiplied),
    // stored resolution in dots per inch. Returning false stops decoding (readRows then fails with no
    // reason).
    virtual bool begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch) = 0;
    // Called for every row, top to bottom; pixels holds width * 3 or width * 4 bytes, valid during the call.
    virtual bool row(int y, const uchar *pixels) = 0;
};
