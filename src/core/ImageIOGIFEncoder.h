// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QList>
#include <QString>
#include <QVector>
#include <QtGlobal>

class QIODevice;

// Writes one image as a GIF file with giflib. An image of at most 256 colours keeps them exactly; a richer
// one is quantised to 256 colours with libimagequant (dithered where that helps gradients and photographs,
// edges and text kept sharp). Fully transparent pixels become the GIF's transparent colour; partly
// transparent ones are blended onto white.
class ImageIOGIFEncoder
{
public:
    explicit ImageIOGIFEncoder(const QImage &image);

    // Chooses the palette and maps every pixel to it. False when the image cannot be a GIF (empty, or wider
    // or taller than 65535 pixels) or memory runs out.
    bool quantize(QString *reason);

    // Writes the GIF (quantize() first).
    bool write(QIODevice *device, QString *reason);

    // After quantize(): whether the palette holds the image's colours exactly, and the palette itself (opaque
    // entries; the transparent entry, if any, has alpha 0).
    bool isExact() const { return mExact; }
    const QList<QRgb> &palette() const { return mPalette; }

    // Row y as the GIF shows it, four bytes a pixel in the order red, green, blue, alpha; alpha is 255, or 0
    // for a transparent pixel (whose colour bytes are then 0).
    void fetchRow(int y, uchar *rgba) const;

private:
    bool exactPalette();
    bool quantizedPalette(QString *reason);

    QImage mImage;
    bool mExact = false;
    QList<QRgb> mPalette;
    int mTransparentIndex = -1;
    QVector<uchar> mIndices;
};
