// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Helper of the PDF memory benchmark.
//   bench_pdf_page make PICTURE PDF   writes the picture as a one-page PDF at one pixel per point, the way
//                                     Corvex writes PDFs: the page is the picture's size in points.
//   bench_pdf_page compare PDF        renders page 1 both ways and prints "decoded identical" when the page's
//                                     image was decoded row by row into the page with the same pixels as
//                                     poppler's renderer draws, "drawn" when the page is drawn; exits with 1
//                                     when the decoded pixels differ from the drawn ones or the page cannot
//                                     be read.
#include "core/ImageIOPDF.h"

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <cstdio>
#include <cstring>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    constexpr qint64 MaximumBytes = qint64(1) << 31;
    if (argc == 4 && std::strcmp(argv[1], "make") == 0) {
        QImage picture(QString::fromLocal8Bit(argv[2]));
        picture.setDotsPerMeterX(2835);
        picture.setDotsPerMeterY(2835);
        QFile file(QString::fromLocal8Bit(argv[3]));
        QString reason;
        if (picture.isNull() || !file.open(QIODevice::WriteOnly) ||
            !ImageIOPDF::write(picture, &file, &reason)) {
            std::fprintf(stderr, "could not write %s: %s\n", argv[3], qPrintable(reason));
            return 1;
        }
        return 0;
    }
    if (argc == 3 && std::strcmp(argv[1], "compare") == 0) {
        const QString path = QString::fromLocal8Bit(argv[2]);
        using Route = ImageIOPDF::Route;
        Route taken = Route::Drawn, reference = Route::Decoded;
        const QImage page = ImageIOPDF::renderFirstPageBy(Route::Decoded, path, MaximumBytes, &taken);
        const QImage drawn = ImageIOPDF::renderFirstPageBy(Route::Drawn, path, MaximumBytes, &reference);
        if (page.isNull() || drawn.isNull() || reference != Route::Drawn) {
            std::fprintf(stderr, "could not render %s\n", argv[2]);
            return 1;
        }
        if (taken == Route::Drawn) {
            std::printf("drawn\n");
            return 0;
        }
        std::printf("decoded %s\n", page == drawn ? "identical" : "DIFFERENT");
        return page == drawn ? 0 : 1;
    }
    std::fprintf(stderr, "usage: bench_pdf_page make PICTURE PDF | compare PDF\n");
    return 2;
}
