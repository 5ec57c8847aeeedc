// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AreaScaler.h"

#include <QtEndian>
#include <algorithm>
#include <cmath>

namespace {

// Byte positions of red, green, blue and alpha in a 32-bit QRgb pixel as it lies in memory.
constexpr int RgbRed = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 2 : 1;
constexpr int RgbGreen = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 1 : 2;
constexpr int RgbBlue = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 0 : 3;
constexpr int RgbAlpha = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? 3 : 0;

constexpr int WholeWeight = 256;

quint16 weightOf(qint64 overlap, qint64 whole)
{
    return quint16((overlap * WholeWeight + whole / 2) / whole);
}

} // namespace

AreaScaler::AreaScaler(const QSize &sourceSize, QImage::Format sourceFormat, const QSize &targetSize)
{
    switch (sourceFormat) {
    case QImage::Format_RGB888:
    case QImage::Format_RGB32:
        break;
    case QImage::Format_RGBA8888:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        mAlpha = true;
        break;
    default:
        return;
    }
    if (sourceSize.isEmpty() || targetSize.isEmpty() || targetSize.width() > sourceSize.width() ||
        targetSize.height() > sourceSize.height())
        return;
    mTarget = QImage(targetSize, mAlpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    if (mTarget.isNull())
        return;
    mTarget.fill(0);
    mSourceFormat = sourceFormat;
    // Where red, green, blue and alpha lie within a pixel: byte-ordered formats keep R, G, B, A; QRgb words
    // keep the machine's order.
    if (sourceFormat == QImage::Format_RGB888 || sourceFormat == QImage::Format_RGBA8888)
        mOffsets = {0, 1, 2, 3};
    else
        mOffsets = {RgbRed, RgbGreen, RgbBlue, RgbAlpha};
    mSourceWidth = sourceSize.width();
    mSourceHeight = sourceSize.height();

    // Positions are counted in units of 1/target of a source pixel, so that every boundary is a whole number:
    // target column j covers [j * source, (j + 1) * source), source pixel i covers [i * target, (i + 1) *
    // target).
    const qint64 width = targetSize.width(), sourceWidth = mSourceWidth;
    mColumns.resize(size_t(width));
    for (qint64 j = 0; j < width; ++j) {
        const qint64 start = j * sourceWidth, end = (j + 1) * sourceWidth;
        Span &span = mColumns[size_t(j)];
        span.first = int(start / width);
        const int last = int((end - 1) / width);
        span.count = last - span.first + 1;
        span.firstWeight = weightOf(std::min(end, (span.first + 1) * width) - start, width);
        span.lastWeight = span.count > 1 ? weightOf(end - last * width, width) : 0;
        const int total = span.firstWeight + span.lastWeight + std::max(0, span.count - 2) * WholeWeight;
        span.scale = total > 0 ? 1.0 / total : 0.0;
    }

    const qint64 height = targetSize.height(), sourceHeight = mSourceHeight;
    mRows.resize(size_t(sourceHeight));
    std::vector<int> rowTotals(size_t(height), 0);
    for (qint64 y = 0; y < sourceHeight; ++y) {
        const qint64 start = y * height, end = (y + 1) * height;
        RowShare &share = mRows[size_t(y)];
        share.target = int(start / sourceHeight);
        const qint64 boundary = (share.target + 1) * sourceHeight;
        if (end > boundary) {
            share.weight = weightOf(boundary - start, height);
            share.overflow = quint16(WholeWeight - share.weight);
            rowTotals[size_t(share.target + 1)] += share.overflow;
        } else {
            share.weight = WholeWeight;
        }
        rowTotals[size_t(share.target)] += share.weight;
    }
    mRowScale.resize(size_t(height));
    for (size_t r = 0; r < rowTotals.size(); ++r)
        mRowScale[r] = rowTotals[r] > 0 ? 1.0 / rowTotals[r] : 0.0;

    mChannels = sourceFormat == QImage::Format_RGB888 ? 3 : 4;
    mCurrent.assign(size_t(mSourceWidth) * size_t(mChannels), 0);
    mNext.assign(mCurrent.size(), 0);
    if (sourceFormat == QImage::Format_RGBA8888 || sourceFormat == QImage::Format_ARGB32)
        mPremultiplied.resize(mCurrent.size());
}

QSize AreaScaler::fittingSize(const QSize &sourceSize, const QSize &bound)
{
    if (sourceSize.isEmpty() || bound.isEmpty())
        return sourceSize;
    QSize size = sourceSize.scaled(bound, Qt::KeepAspectRatio).boundedTo(sourceSize);
    return size.expandedTo(QSize(1, 1));
}

const uchar *AreaScaler::premultiplied(const uchar *pixels)
{
    if (mPremultiplied.empty())
        return pixels;
    const int alpha = mOffsets[3];
    uchar *out = mPremultiplied.data();
    for (int x = 0; x < mSourceWidth; ++x, pixels += 4, out += 4) {
        const uint32_t a = pixels[alpha];
        for (int c = 0; c < 4; ++c) {
            // c × a / 255, rounded, without a division.
            const uint32_t t = pixels[c] * a + 128;
            out[c] = uchar((t + (t >> 8)) >> 8);
        }
        out[alpha] = uchar(a);
    }
    return mPremultiplied.data();
}

namespace {

// sums[i] += bytes[i] × weight over a whole row; in blocks of a fixed length the compiler turns into vector
// instructions.
// A byte times a weight of at most 256 fits into 16 bits, which the vector unit multiplies fastest.
void addWeighted(int32_t *__restrict sums, const uchar *__restrict bytes, size_t count, int32_t weight)
{
    constexpr size_t Block = 32;
    const auto weight16 = uint16_t(weight);
    size_t i = 0;
    for (; i + Block <= count; i += Block)
        for (size_t k = 0; k < Block; ++k)
            sums[i + k] += int32_t(uint16_t(uint16_t(bytes[i + k]) * weight16));
    for (; i < count; ++i)
        sums[i] += int32_t(bytes[i]) * weight;
}

} // namespace

void AreaScaler::finishRow(int targetRow, const std::vector<int32_t> &sums)
{
    if (mChannels == 3)
        finishRowOf<3>(targetRow, sums);
    else
        finishRowOf<4>(targetRow, sums);
}

template <int Channels> void AreaScaler::finishRowOf(int targetRow, const std::vector<int32_t> &sums)
{
    // Each target pixel: the source columns it covers, weighted, over the weights of its columns and rows.
    const double rowScale = mRowScale[size_t(targetRow)];
    auto *line = reinterpret_cast<QRgb *>(mTarget.scanLine(targetRow));
    const int32_t *row = sums.data();
    const int red = mOffsets[0], green = mOffsets[1], blue = mOffsets[2], alpha = mOffsets[3];
    for (const Span &span : mColumns) {
        const int32_t *p = row + size_t(span.first) * Channels;
        int64_t total[Channels];
        for (int c = 0; c < Channels; ++c)
            total[c] = int64_t(p[c]) * span.firstWeight;
        if (span.count > 1) {
            int64_t inner[Channels] = {};
            const int32_t *last = p + size_t(span.count - 1) * Channels;
            for (const int32_t *q = p + Channels; q < last; q += Channels)
                for (int c = 0; c < Channels; ++c)
                    inner[c] += q[c];
            for (int c = 0; c < Channels; ++c)
                total[c] += inner[c] * WholeWeight + int64_t(last[c]) * span.lastWeight;
        }
        // Weighted means of bytes: never below 0, at most 255 and a rounding error.
        const float scale = float(span.scale * rowScale);
        const auto byte = [&](int c) { return std::min(int(float(total[c]) * scale + 0.5f), 255); };
        if (mAlpha) {
            const int a = byte(alpha);
            *line++ = qRgba(std::min(byte(red), a), std::min(byte(green), a), std::min(byte(blue), a), a);
        } else {
            *line++ = qRgb(byte(red), byte(green), byte(blue));
        }
    }
}

bool AreaScaler::addRow(const uchar *pixels)
{
    if (!isValid() || mSourceRow >= mSourceHeight)
        return false;
    const RowShare &share = mRows[size_t(mSourceRow)];
    const uchar *bytes = premultiplied(pixels);
    addWeighted(mCurrent.data(), bytes, mCurrent.size(), share.weight);
    if (share.overflow)
        addWeighted(mNext.data(), bytes, mNext.size(), share.overflow);
    // A target row is finished as soon as its last source row is in.
    ++mSourceRow;
    if (mSourceRow == mSourceHeight || mRows[size_t(mSourceRow)].target > mCurrentRow) {
        finishRow(mCurrentRow, mCurrent);
        std::swap(mCurrent, mNext);
        std::fill(mNext.begin(), mNext.end(), 0);
        ++mCurrentRow;
    }
    return true;
}

QImage AreaScaler::scaled(const QImage &image, const QSize &targetSize)
{
    if (image.isNull() || targetSize.isEmpty())
        return {};
    QImage source = image;
    switch (source.format()) {
    case QImage::Format_RGB888:
    case QImage::Format_RGBA8888:
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        break;
    default:
        source.convertTo(source.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                  : QImage::Format_RGB32);
        break;
    }
    AreaScaler scaler(source.size(), source.format(), targetSize);
    if (!scaler.isValid())
        return {};
    for (int y = 0; y < source.height(); ++y)
        scaler.addRow(source.constScanLine(y));
    return scaler.result();
}
