// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageRowWriter.h"

#include <algorithm>

namespace {

constexpr double InchesPerMeter = 0.0254;
// Rows converted at a time when the image's own format is not one the writers take.
constexpr int RowsPerBand = 32;

} // namespace

bool ImageRowWriter::writeImage(const QImage &image, ImageRowWriter &writer, QString *reason)
{
    if (image.isNull()) {
        if (reason)
            *reason = QStringLiteral("no image was added");
        return false;
    }
    const QImage::Format format = image.hasAlphaChannel() ? QImage::Format_RGBA8888 : QImage::Format_RGB888;
    const QSizeF dotsPerInch(image.dotsPerMeterX() > 0 ? image.dotsPerMeterX() * InchesPerMeter : 72.0,
                             image.dotsPerMeterY() > 0 ? image.dotsPerMeterY() * InchesPerMeter : 72.0);
    if (!writer.begin(image.size(), format, dotsPerInch, reason))
        return false;
    const size_t rowBytes = size_t(image.width()) * (format == QImage::Format_RGB888 ? 3 : 4);
    for (int y = 0; y < image.height(); y += RowsPerBand) {
        const int count = std::min(RowsPerBand, image.height() - y);
        // Rows of another format are converted a band at a time: only these rows are ever held twice.
        const QImage band = image.format() == format
                                ? QImage()
                                : image.copy(0, y, image.width(), count).convertToFormat(format);
        const QImage &rows = band.isNull() ? image : band;
        const int first = band.isNull() ? y : 0;
        if (size_t(rows.bytesPerLine()) == rowBytes) {
            // Packed rows (no padding at their ends) go in one call.
            if (!writer.writeRows(rows.constScanLine(first), count, reason))
                return false;
            continue;
        }
        for (int row = 0; row < count; ++row)
            if (!writer.writeRows(rows.constScanLine(first + row), 1, reason))
                return false;
    }
    return writer.finish(reason);
}
