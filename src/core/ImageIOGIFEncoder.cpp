// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOGIFEncoder.h"

#include <QIODevice>
#include <array>
#include <cstring>
#include <gif_lib.h>
#include <libimagequant.h>
#include <memory>

namespace {

constexpr int MaximumColors = 256;
constexpr int MaximumGIFSide = 65535;

// The quantiser's speed (1 slowest … 10 fastest) and how strongly it dithers. On screenshots the fastest
// setting loses little: flat areas and text hold few colours, and a light, edge-aware dithering keeps
// gradients and photographs from banding while adding little noise (a higher PSNR than full dithering).
constexpr int QuantizerSpeed = 10;
constexpr float DitheringLevel = 0.3f;

struct AttrDeleter
{
    void operator()(liq_attr *attr) const { liq_attr_destroy(attr); }
};
struct ImageDeleter
{
    void operator()(liq_image *image) const { liq_image_destroy(image); }
};
struct ResultDeleter
{
    void operator()(liq_result *result) const { liq_result_destroy(result); }
};

int writeToDevice(GifFileType *gif, const GifByteType *data, int length)
{
    auto *device = static_cast<QIODevice *>(gif->UserData);
    return int(device->write(reinterpret_cast<const char *>(data), length));
}

void fetchForQuantizer(liq_color rowOut[], int row, int, void *user)
{
    static_assert(sizeof(liq_color) == 4);
    static_cast<const ImageIOGIFEncoder *>(user)->fetchRow(row, reinterpret_cast<uchar *>(rowOut));
}

// Blends a partly transparent channel value onto white.
inline uchar ontoWhite(int value, int alpha)
{
    return uchar((value * alpha + 255 * (255 - alpha) + 127) / 255);
}

// A small open-addressing table from colour to palette index, for at most 256 colours.
class ColorTable
{
public:
    ColorTable() { mUsed.fill(false); }
    // The colour's index, adding it when new; -1 once a 257th colour turns up.
    int indexOf(quint32 color, QList<QRgb> *palette)
    {
        quint32 slot = (color * 2654435761u) >> (32 - Bits);
        while (mUsed[slot]) {
            if (mKeys[slot] == color)
                return mValues[slot];
            slot = (slot + 1) & (Size - 1);
        }
        if (palette->size() == MaximumColors)
            return -1;
        mUsed[slot] = true;
        mKeys[slot] = color;
        mValues[slot] = int(palette->size());
        palette->append(color);
        return mValues[slot];
    }

private:
    static constexpr int Bits = 10;
    static constexpr quint32 Size = 1u << Bits;
    std::array<bool, Size> mUsed;
    std::array<quint32, Size> mKeys{};
    std::array<int, Size> mValues{};
};

} // namespace

ImageIOGIFEncoder::ImageIOGIFEncoder(const QImage &image) : mImage(image)
{
    switch (mImage.format()) {
    case QImage::Format_RGB888:
    case QImage::Format_RGBA8888:
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
        break;
    default:
        mImage.convertTo(mImage.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
        break;
    }
}

void ImageIOGIFEncoder::fetchRow(int y, uchar *rgba) const
{
    const uchar *line = mImage.constScanLine(y);
    const int width = mImage.width();
    switch (mImage.format()) {
    case QImage::Format_RGB888:
        for (int x = 0; x < width; ++x, line += 3, rgba += 4) {
            rgba[0] = line[0], rgba[1] = line[1], rgba[2] = line[2], rgba[3] = 255;
        }
        return;
    case QImage::Format_RGB32: {
        const auto *pixels = reinterpret_cast<const QRgb *>(line);
        for (int x = 0; x < width; ++x, rgba += 4) {
            rgba[0] = uchar(qRed(pixels[x])), rgba[1] = uchar(qGreen(pixels[x])),
            rgba[2] = uchar(qBlue(pixels[x]));
            rgba[3] = 255;
        }
        return;
    }
    default:
        break;
    }
    const bool bytes = mImage.format() == QImage::Format_RGBA8888;
    const auto *pixels = reinterpret_cast<const QRgb *>(line);
    for (int x = 0; x < width; ++x, rgba += 4) {
        int r, g, b, a;
        if (bytes) {
            r = line[4 * x], g = line[4 * x + 1], b = line[4 * x + 2], a = line[4 * x + 3];
        } else {
            r = qRed(pixels[x]), g = qGreen(pixels[x]), b = qBlue(pixels[x]), a = qAlpha(pixels[x]);
        }
        if (a == 0) {
            std::memset(rgba, 0, 4);
        } else if (a == 255) {
            rgba[0] = uchar(r), rgba[1] = uchar(g), rgba[2] = uchar(b), rgba[3] = 255;
        } else {
            rgba[0] = ontoWhite(r, a), rgba[1] = ontoWhite(g, a), rgba[2] = ontoWhite(b, a), rgba[3] = 255;
        }
    }
}

bool ImageIOGIFEncoder::quantize(QString *reason)
{
    if (mImage.isNull() || mImage.width() > MaximumGIFSide || mImage.height() > MaximumGIFSide) {
        if (reason)
            *reason = QStringLiteral("a GIF image must be between 1 and 65535 pixels wide and high");
        return false;
    }
    mIndices.resize(qsizetype(mImage.width()) * mImage.height());
    if (exactPalette())
        return true;
    return quantizedPalette(reason);
}

bool ImageIOGIFEncoder::exactPalette()
{
    mPalette.clear();
    mTransparentIndex = -1;
    ColorTable table;
    const int width = mImage.width();
    std::vector<uchar> row(size_t(width) * 4);
    quint32 lastColor = 0;
    int lastIndex = -1;
    for (int y = 0; y < mImage.height(); ++y) {
        fetchRow(y, row.data());
        uchar *indices = mIndices.data() + qsizetype(y) * width;
        for (int x = 0; x < width; ++x) {
            const uchar *p = row.data() + 4 * x;
            // Stored as a QRgb: transparent pixels are all zero, opaque ones carry alpha 255.
            const quint32 color = p[3] ? qRgb(p[0], p[1], p[2]) : 0u;
            if (color != lastColor || lastIndex < 0) {
                lastIndex = table.indexOf(color, &mPalette);
                if (lastIndex < 0)
                    return false;
                lastColor = color;
            }
            indices[x] = uchar(lastIndex);
        }
    }
    mTransparentIndex = int(mPalette.indexOf(0u));
    mExact = true;
    return true;
}

bool ImageIOGIFEncoder::quantizedPalette(QString *reason)
{
    mExact = false;
    mPalette.clear();
    mTransparentIndex = -1;
    std::unique_ptr<liq_attr, AttrDeleter> attr(liq_attr_create());
    if (!attr) {
        if (reason)
            *reason = QStringLiteral("the quantiser could not be created");
        return false;
    }
    liq_set_max_colors(attr.get(), MaximumColors);
    liq_set_speed(attr.get(), QuantizerSpeed);
    std::unique_ptr<liq_image, ImageDeleter> image(
        liq_image_create_custom(attr.get(), fetchForQuantizer, this, mImage.width(), mImage.height(), 0));
    liq_result *rawResult = nullptr;
    if (!image || liq_image_quantize(image.get(), attr.get(), &rawResult) != LIQ_OK || !rawResult) {
        if (reason)
            *reason = QStringLiteral("the image could not be quantised");
        return false;
    }
    std::unique_ptr<liq_result, ResultDeleter> result(rawResult);
    liq_set_dithering_level(result.get(), DitheringLevel);
    if (liq_write_remapped_image(result.get(), image.get(), mIndices.data(), size_t(mIndices.size())) !=
        LIQ_OK) {
        if (reason)
            *reason = QStringLiteral("the image could not be remapped");
        return false;
    }
    const liq_palette *palette = liq_get_palette(result.get());
    for (unsigned i = 0; i < palette->count; ++i) {
        const liq_color &c = palette->entries[i];
        if (c.a < 128 && mTransparentIndex < 0)
            mTransparentIndex = int(i);
        mPalette.append(c.a < 128 ? 0u : qRgb(c.r, c.g, c.b));
    }
    return true;
}

bool ImageIOGIFEncoder::write(QIODevice *device, QString *reason)
{
    int error = 0;
    GifFileType *gif = EGifOpen(device, writeToDevice, &error);
    if (!gif) {
        if (reason)
            *reason = QString::fromUtf8(GifErrorString(error));
        return false;
    }
    int tableSize = 2;
    while (tableSize < mPalette.size())
        tableSize *= 2;
    ColorMapObject *map = GifMakeMapObject(tableSize, nullptr);
    bool ok = map != nullptr;
    if (ok) {
        for (int i = 0; i < tableSize; ++i) {
            const QRgb c = mPalette.value(i, 0u);
            map->Colors[i] =
                GifColorType{GifByteType(qRed(c)), GifByteType(qGreen(c)), GifByteType(qBlue(c))};
        }
        EGifSetGifVersion(gif, mTransparentIndex >= 0);
        ok = EGifPutScreenDesc(gif, mImage.width(), mImage.height(), 8, 0, map) == GIF_OK;
    }
    if (ok && mTransparentIndex >= 0) {
        GraphicsControlBlock control{};
        control.DisposalMode = DISPOSAL_UNSPECIFIED;
        control.DelayTime = 0;
        control.TransparentColor = mTransparentIndex;
        GifByteType extension[4];
        const size_t length = EGifGCBToExtension(&control, extension);
        ok = EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, int(length), extension) == GIF_OK;
    }
    if (ok)
        ok = EGifPutImageDesc(gif, 0, 0, mImage.width(), mImage.height(), false, nullptr) == GIF_OK;
    for (int y = 0; ok && y < mImage.height(); ++y)
        ok = EGifPutLine(gif, mIndices.data() + qsizetype(y) * mImage.width(), mImage.width()) == GIF_OK;
    if (!ok && reason)
        *reason = QString::fromUtf8(GifErrorString(gif->Error));
    if (map)
        GifFreeMapObject(map);
    if (EGifCloseFile(gif, &error) != GIF_OK) {
        if (ok && reason)
            *reason = QString::fromUtf8(GifErrorString(error));
        ok = false;
    }
    return ok;
}
