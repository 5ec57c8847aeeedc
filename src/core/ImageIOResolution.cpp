// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOResolution.h"

#include <QBuffer>
#include <QFile>

namespace {

const QSizeF Default(72, 72);

quint32 readUnsigned(const QByteArray &bytes, qsizetype at, int size, bool bigEndian)
{
    if (at < 0 || at + size > bytes.size())
        return 0;
    quint32 value = 0;
    for (int i = 0; i < size; ++i) {
        const quint32 byte = quint8(bytes.at(at + (bigEndian ? i : size - 1 - i)));
        value = (value << 8) | byte;
    }
    return value;
}

QSizeF plausible(double x, double y)
{
    // Anything outside this range is a broken header rather than a resolution.
    if (x >= 1 && y >= 1 && x <= 100000 && y <= 100000)
        return QSizeF(x, y);
    return Default;
}

QSizeF bmpDensity(QFile &file)
{
    const QByteArray head = file.read(54);
    if (readUnsigned(head, 14, 4, false) < 40)
        return Default; // an old OS/2 header has no resolution
    const double x = qint32(readUnsigned(head, 38, 4, false)), y = qint32(readUnsigned(head, 42, 4, false));
    if (x <= 0 || y <= 0)
        return Default;
    return plausible(x * 0.0254, y * 0.0254);
}

QSizeF tiffDensity(QIODevice &file)
{
    const QByteArray header = file.read(8);
    const bool big = header.startsWith("MM");
    const quint32 ifd = readUnsigned(header, 4, 4, big);
    if (header.size() < 8 || ifd < 8 || !file.seek(ifd))
        return Default;
    const QByteArray countBytes = file.read(2);
    const quint32 count = readUnsigned(countBytes, 0, 2, big);
    const QByteArray entries = file.read(qint64(count) * 12);
    double resolution[2] = {0, 0};
    int unit = 2; // inches unless the file says otherwise
    for (quint32 i = 0; i < count; ++i) {
        const qsizetype at = qsizetype(i) * 12;
        const quint32 tag = readUnsigned(entries, at, 2, big);
        const quint32 type = readUnsigned(entries, at + 2, 2, big);
        if (tag == 296) {
            unit = int(readUnsigned(entries, at + 8, 2, big));
        } else if ((tag == 282 || tag == 283) && type == 5) { // a RATIONAL stored elsewhere
            const quint32 offset = readUnsigned(entries, at + 8, 4, big);
            const qint64 back = file.pos();
            if (!file.seek(offset))
                return Default;
            const QByteArray rational = file.read(8);
            file.seek(back);
            const quint32 numerator = readUnsigned(rational, 0, 4, big);
            const quint32 denominator = readUnsigned(rational, 4, 4, big);
            if (denominator != 0)
                resolution[tag - 282] = double(numerator) / denominator;
        }
    }
    if (unit == 2)
        return plausible(resolution[0], resolution[1]);
    if (unit == 3)
        return plausible(resolution[0] * 2.54, resolution[1] * 2.54);
    return Default;
}

// The density of a JPEG: its JFIF segment's when that gives one in inches or centimetres, otherwise the
// resolution in its EXIF segment (a TIFF structure of its own), otherwise 72 dpi. Only the segments before
// the image data are looked at.
QSizeF jpegDensity(QFile &file)
{
    if (file.read(2) != QByteArray("\xff\xd8", 2))
        return Default;
    QByteArray exif;
    for (int segments = 0; segments < 64; ++segments) {
        const QByteArray marker = file.read(4);
        if (marker.size() < 4 || quint8(marker.at(0)) != 0xff)
            break;
        const quint32 type = quint8(marker.at(1));
        const qint64 length = readUnsigned(marker, 2, 2, true);
        if (type == 0xda || type == 0xd9 || length < 2) // the image data, or the end, begins
            break;
        const QByteArray payload = file.read(length - 2);
        if (payload.size() != length - 2)
            break;
        if (type == 0xe0 && payload.size() >= 12 && payload.startsWith(QByteArray("JFIF\0", 5))) {
            const int units = quint8(payload.at(7));
            const double x = readUnsigned(payload, 8, 2, true), y = readUnsigned(payload, 10, 2, true);
            if (units == 1)
                return plausible(x, y);
            if (units == 2)
                return plausible(x * 2.54, y * 2.54);
        } else if (type == 0xe1 && exif.isEmpty() && payload.startsWith(QByteArray("Exif\0\0", 6))) {
            exif = payload.mid(6);
        }
    }
    if (exif.isEmpty())
        return Default;
    QBuffer buffer(&exif);
    buffer.open(QIODevice::ReadOnly);
    return tiffDensity(buffer);
}

} // namespace

QSizeF ImageIOResolution::storedDotsPerInch(const QString &path, Container container)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Default;
    switch (container) {
    case Container::JPEG:
        return jpegDensity(file);
    case Container::BMP:
        return bmpDensity(file);
    case Container::TIFF:
        return tiffDensity(file);
    }
    return Default;
}
