// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_psnr REFERENCE IMAGE: prints the peak signal-to-noise ratio of IMAGE against REFERENCE in decibels
// (RGB over white, 99 for identical pixels). Both are read with Corvex's own readers (page 1 of a PDF).
#include "core/ImageIOSource.h"

#include <QGuiApplication>
#include <QPainter>
#include <cmath>
#include <cstdio>

namespace {

QImage load(const QString &path)
{
    QString reason;
    auto source = ImageIOSource::createWithURL(QUrl::fromLocalFile(path), &reason);
    if (!source) {
        std::fprintf(stderr, "bench_psnr: %s: %s\n", qPrintable(path), qPrintable(reason));
        return {};
    }
    QImage flat(source->image().size(), QImage::Format_RGB32);
    flat.fill(Qt::white);
    QPainter painter(&flat);
    painter.drawImage(0, 0, source->image());
    return flat;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: bench_psnr REFERENCE IMAGE\n");
        return 2;
    }
    const QImage a = load(QString::fromLocal8Bit(argv[1])), b = load(QString::fromLocal8Bit(argv[2]));
    if (a.isNull() || b.isNull())
        return 1;
    if (a.size() != b.size()) {
        std::fprintf(stderr, "bench_psnr: sizes differ\n");
        return 1;
    }
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        const auto *p = reinterpret_cast<const QRgb *>(a.constScanLine(y));
        const auto *q = reinterpret_cast<const QRgb *>(b.constScanLine(y));
        for (int x = 0; x < a.width(); ++x) {
            const int dr = qRed(p[x]) - qRed(q[x]), dg = qGreen(p[x]) - qGreen(q[x]),
                      db = qBlue(p[x]) - qBlue(q[x]);
            sum += double(dr * dr + dg * dg + db * db);
        }
    }
    const double mse = sum / (3.0 * a.width() * a.height());
    std::printf("%.2f\n", mse == 0 ? 99.0 : 10.0 * std::log10(255.0 * 255.0 / mse));
    return 0;
}
