// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The PNG row reader behind conversions made row by row: every row handed over must be whole.
#include "FuzzSupport.h"
#include "core/ImageIOPNG.h"

#include <cstdlib>
#include <cstring>

CORVEX_FUZZ_INITIALIZE

namespace {

struct Checker : PNGRowReader
{
    QSize size;
    int bytesPerPixel = 0;
    int nextRow = 0;
    bool begin(const QSize &pixels, QImage::Format format, const QSizeF &) override
    {
        size = pixels;
        bytesPerPixel = format == QImage::Format_RGB888 ? 3 : 4;
        return true;
    }
    bool row(int y, const uchar *pixels) override
    {
        if (y != nextRow++ || y >= size.height())
            std::abort();
        // Touch every byte of the row, so that a short row shows up under the address sanitizer.
        volatile unsigned sum = 0;
        for (qsizetype i = 0; i < qsizetype(size.width()) * bytesPerPixel; ++i)
            sum = sum + pixels[i];
        return true;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = fuzz::writeInput(QStringLiteral("input.png"), data, size);
    Checker checker;
    QString reason;
    (void)ImageIOPNG::readRows(path, 64 << 20, checker, &reason);
    return 0;
}
