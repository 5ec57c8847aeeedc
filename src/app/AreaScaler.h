// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>
#include <array>
#include <cstdint>
#include <vector>

// Reduces a picture to a smaller size while its rows arrive, top to bottom, so that the whole picture is
// never held: each target pixel is the average of the source area it covers (partly covered source pixels
// count by the part they cover). Transparent pixels do not darken their neighbours: colours are averaged
// weighted by their alpha.
class AreaScaler
{
public:
    // A scaler from sourceSize to targetSize (each side at least 1 and at most the source's). The source
    // rows are Format_RGB888, Format_RGBA8888 (straight alpha), Format_RGB32, Format_ARGB32 or
    // Format_ARGB32_Premultiplied. isValid() is false for anything else.
    AreaScaler(const QSize &sourceSize, QImage::Format sourceFormat, const QSize &targetSize);

    bool isValid() const { return !mTarget.isNull(); }

    // The target size for a picture of sourceSize fitting into bound: the aspect ratio kept, never enlarged,
    // at least one pixel a side. An empty bound gives the source size.
    static QSize fittingSize(const QSize &sourceSize, const QSize &bound);

    // Takes the next source row (sourceSize.width() pixels in the source format). False once all rows have
    // been taken or when the scaler is not valid.
    bool addRow(const uchar *pixels);

    // The rows taken so far.
    int rowsAdded() const { return mSourceRow; }

    // The reduced picture: Format_RGB32 for an opaque source format, Format_ARGB32_Premultiplied otherwise.
    // Each target row is final as soon as its last source row has been taken; rows not reached yet are black
    // (transparent).
    QImage result() const { return mTarget; }

    // Reduces a whole image in one go (any format: others are converted to 32-bit pixels first); the
    // result's device pixel ratio is 1. A null image for an empty target or one larger than the image.
    static QImage scaled(const QImage &image, const QSize &targetSize);

private:
    struct Span
    {
        int first = 0;           // first source column touched
        int count = 0;           // source columns touched
        quint16 firstWeight = 0; // weight of the first (out of 256 for a whole pixel)
        quint16 lastWeight = 0;  // weight of the last when count > 1
        double scale = 0;        // 1 / the sum of the weights
    };
    struct RowShare
    {
        int target = 0;       // first target row this source row falls into
        quint16 weight = 0;   // its weight there (out of 256)
        quint16 overflow = 0; // its weight in the next target row
    };

    const uchar *premultiplied(const uchar *pixels);
    void finishRow(int targetRow, const std::vector<int32_t> &sums);
    template <int Channels> void finishRowOf(int targetRow, const std::vector<int32_t> &sums);

    QImage mTarget;
    QImage::Format mSourceFormat = QImage::Format_Invalid;
    int mSourceWidth = 0;
    int mSourceHeight = 0;
    int mSourceRow = 0;
    int mChannels = 0; // bytes a source pixel
    bool mAlpha = false;
    std::array<int, 4> mOffsets{}; // of red, green, blue and alpha within a source pixel
    std::vector<Span> mColumns;
    std::vector<RowShare> mRows;
    std::vector<double> mRowScale; // per target row: 1 / the sum of its weights
    // Source rows summed down, weighted, for the target row being gathered and the one after it: one sum a
    // source byte. Straight alpha is premultiplied first (into mPremultiplied).
    std::vector<int32_t> mCurrent, mNext;
    std::vector<uchar> mPremultiplied;
    int mCurrentRow = 0;
};
