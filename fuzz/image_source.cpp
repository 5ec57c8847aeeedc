// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The image readers behind a conversion (PNG, GIF, JPEG, BMP, TIFF and PDF pages), chosen by the file's
// content: the file's header, then the whole picture.
#include "FuzzSupport.h"
#include "core/ImageIOSource.h"

#include <QUrl>

CORVEX_FUZZ_INITIALIZE

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = fuzz::writeInput(QStringLiteral("input"), data, size);
    QSize pixels;
    QSizeF dpi;
    QString reason;
    (void)ImageIOSource::readProperties(path, &pixels, &dpi, &reason);
    const std::unique_ptr<ImageIOSource> source =
        ImageIOSource::createWithURL(QUrl::fromLocalFile(path), &reason);
    if (source)
        (void)source->image().size();
    return 0;
}
