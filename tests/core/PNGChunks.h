// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

// Building PNG files by hand, chunk by chunk, for tests of odd and broken files.
namespace pngchunks {

inline QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    for (int i = 0; i < 4; ++i)
        bytes[i] = char(value >> (24 - 8 * i));
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
