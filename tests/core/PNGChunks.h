// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TestSupport.h"
#include "core/ImageIOPNG.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <gtest/gtest.h>

// Images for the codec tests, and PNG files built by hand, chunk by chunk, for tests of odd and broken files.
namespace pngchunks {

// An image whose every pixel differs from its neighbours, so a misplaced row or column shows; with an alpha
// channel, the pixels have many degrees of transparency.
inline QImage noisy(int width, int height, QImage::Format format = QImage::Format_RGB888)
{
    QImage image(width, height, format);
    const bool alpha = image.hasAlphaChannel();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y,
                           qRgba((x * 7 + y) % 256, (y * 13 + x * 3) % 256, (x * y) % 256,
                                 alpha ? (x + y * 5) % 256 : 255));
    return image;
}

// An odd-sized picture of 40 flat blocks with hard edges at 72 dpi: few colours, so every lossless format
// must give back exactly these pixels, and an odd width catches row-padding mistakes.
inline QImage blocks(int width = 61, int height = 37)
{
    QImage image(width, height, QImage::Format_RGB888);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x / 8 * 30, y / 8 * 50, ((x / 8 + y / 8) % 3) * 120));
    image.setDotsPerMeterX(2835); // 72 dpi: one pixel per point
    image.setDotsPerMeterY(2835);
    return image;
}

// Writes the image as a PNG file with the product's encoder; returns the path.
inline QString savePNG(const QString &path, const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(ImageIOPNG::write(image, &buffer, nullptr));
    return corvex::test::writeFile(path, buffer.data());
}

inline QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    for (int i = 0; i < 4; ++i)
        bytes[i] = char(value >> (24 - 8 * i));
    return bytes;
}

inline QByteArray littleEndian(quint32 value, int size = 4)
{
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = char(value >> (8 * i));
    return bytes;
}

inline quint32 pngCRC(const QByteArray &bytes)
{
    quint32 crc = 0xffffffffu;
    for (const char c : bytes) {
        crc ^= quint8(c);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

// A PNG chunk with its length and CRC.
inline QByteArray chunk(const char *type, const QByteArray &data)
{
    const QByteArray body = QByteArray(type, 4) + data;
    return bigEndian(quint32(data.size())) + body + bigEndian(pngCRC(body));
}

} // namespace pngchunks
