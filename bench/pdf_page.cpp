// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Helper of the PDF memory benchmark.
//   bench_pdf_page make PICTURE PDF   writes the picture as a one-page PDF at one pixel per point, the way
//                                     Corvex writes PDFs: the page is the picture's size in points.
//   bench_pdf_page exact PICTURE PDF DPI
//                                     writes the picture (opaque) as a one-page PDF at DPI whose media box is
//                                     the picture's exact size in points, fractions of a point kept (Corvex's
//                                     writer rounds the page to whole points: 1366 pixels at 96 dpi make a
//                                     1025-point page with the picture 1024.5 points wide on it, this one a
//                                     1024.5-point page).
//   bench_pdf_page compare PDF        renders page 1 both ways and prints "decoded identical" when the page's
//                                     image was decoded row by row into the page with the same pixels as
//                                     poppler's renderer draws, "drawn" when the page is drawn; exits with 1
//                                     when the decoded pixels differ from the drawn ones or the page cannot
//                                     be read.
#include "HandWrittenPDF.h"
#include "core/ImageIOPDF.h"

#include <QByteArray>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QList>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// The picture's RGB samples in a Flate stream, on a page of its size at dpi, written by hand.
QByteArray exactPage(const QImage &picture, double dpi)
{
    const QImage rgb = picture.convertToFormat(QImage::Format_RGB888);
    QByteArray samples;
    samples.reserve(qsizetype(rgb.width()) * rgb.height() * 3);
    for (int y = 0; y < rgb.height(); ++y)
        samples.append(reinterpret_cast<const char *>(rgb.constScanLine(y)), qsizetype(rgb.width()) * 3);
    const QByteArray compressed = qCompress(samples).mid(4); // a zlib stream without Qt's length prefix
    const QByteArray width = QByteArray::number(rgb.width() * 72.0 / dpi, 'g', 12),
                     height = QByteArray::number(rgb.height() * 72.0 / dpi, 'g', 12);
    const QByteArray content = "q " + width + " 0 0 " + height + " 0 0 cm /Im Do Q";
    const QList<QByteArray> objects{
        "<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
        "<</Type /Page /Parent 2 0 R /MediaBox [0 0 " + width + " " + height +
            "] /Contents 4 0 R /Resources <</XObject <</Im 5 0 R>>>>>>",
        "<</Length " + QByteArray::number(content.size()) + ">> stream\n" + content + "\nendstream",
        "<</Type /XObject /Subtype /Image /Width " + QByteArray::number(rgb.width()) + " /Height " +
            QByteArray::number(rgb.height()) +
            " /BitsPerComponent 8 /ColorSpace /DeviceRGB /Filter /FlateDecode /Length " +
            QByteArray::number(compressed.size()) + ">> stream\n" + compressed + "\nendstream"};
    return corvex::test::handWrittenPDF(objects);
}

} // namespace

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
    if (argc == 5 && std::strcmp(argv[1], "exact") == 0) {
        const QImage picture(QString::fromLocal8Bit(argv[2]));
        const double dpi = std::atof(argv[4]);
        QFile file(QString::fromLocal8Bit(argv[3]));
        const QByteArray pdf = picture.isNull() || dpi <= 0 ? QByteArray() : exactPage(picture, dpi);
        if (pdf.isEmpty() || !file.open(QIODevice::WriteOnly) || file.write(pdf) != pdf.size() ||
            !file.flush()) {
            std::fprintf(stderr, "could not write %s\n", argv[3]);
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
    std::fprintf(stderr, "usage: bench_pdf_page make PICTURE PDF | exact PICTURE PDF DPI | compare PDF\n");
    return 2;
}
