// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_make_screenshots OUTDIR [WIDTHxHEIGHT...]: writes screenshot-like PNG files (window chrome, flat
// areas, lines of text, gradients and a photo-like region) for the conversion benchmark. Deterministic: the
// same arguments always give the same pixels. Default sizes: 2880x1800 and 5120x2880.
#include <QDir>
#include <QFont>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QRandomGenerator>
#include <cmath>
#include <cstdio>

namespace {

// A smooth, detailed pattern standing in for a photograph: sums of sines plus a little grain.
void paintPhoto(QImage &image, const QRect &area, QRandomGenerator &random)
{
    for (int y = area.top(); y <= area.bottom(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = area.left(); x <= area.right(); ++x) {
            const double u = double(x - area.left()) / area.width();
            const double v = double(y - area.top()) / area.height();
            const double a = std::sin(u * 9.0 + std::sin(v * 7.0) * 2.0);
            const double b = std::cos(v * 11.0 - u * 3.0 + std::sin(u * 17.0));
            const int grain = int(random.bounded(17)) - 8;
            const int r = qBound(0, int(120 + 90 * a + 30 * b) + grain, 255);
            const int g = qBound(0, int(110 + 60 * b + 40 * std::sin(u * v * 40.0)) + grain, 255);
            const int bl = qBound(0, int(140 - 70 * a + 50 * std::cos(v * 23.0)) + grain, 255);
            line[x] = qRgb(r, g, bl);
        }
    }
}

QImage makeScreenshot(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    QRandomGenerator random(width * 7919 + height);
    const double s = width / 1440.0; // scale relative to a 1440-point wide desktop
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);

    // Desktop background: a diagonal gradient.
    QLinearGradient background(0, 0, width, height);
    background.setColorAt(0, QColor(32, 64, 120));
    background.setColorAt(1, QColor(150, 80, 140));
    painter.fillRect(image.rect(), background);
    // Menu bar.
    painter.fillRect(QRectF(0, 0, width, 24 * s), QColor(236, 236, 236));

    // A document window full of text on flat white.
    const QRectF window(60 * s, 60 * s, 780 * s, 820 * s);
    painter.fillRect(window, Qt::white);
    painter.fillRect(QRectF(window.left(), window.top(), window.width(), 28 * s), QColor(222, 222, 222));
    painter.setPen(Qt::NoPen);
    const QColor lights[] = {QColor(0xff5f57), QColor(0xfebc2e), QColor(0x28c840)};
    for (int i = 0; i < 3; ++i) {
        painter.setBrush(lights[i]);
        painter.drawEllipse(QPointF(window.left() + (16 + 20 * i) * s, window.top() + 14 * s), 6 * s, 6 * s);
    }
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(qMax(8, int(13 * s)));
    painter.setFont(font);
    painter.setPen(QColor(30, 30, 30));
    const QString words = QStringLiteral(
        "The quick brown fox jumps over the lazy dog while screenshots pile up on the desktop; Corvex "
        "renames "
        "them, converts them and files them where they belong. 0123456789 ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    const double lineHeight = 18 * s;
    int offset = 0;
    for (double y = window.top() + 50 * s; y < window.bottom() - 10 * s; y += lineHeight) {
        const QString text = words.mid(offset % 60) + QLatin1Char(' ') + words;
        painter.drawText(QPointF(window.left() + 16 * s, y), text.left(90));
        offset += 17;
    }

    // A sidebar with flat coloured rows, and a photo-like region beside it.
    const QRectF panel(900 * s, 100 * s, 480 * s, 700 * s);
    painter.fillRect(panel, QColor(246, 246, 246));
    for (int row = 0; row < 12; ++row) {
        const QRectF r(panel.left() + 10 * s, panel.top() + 10 * s + row * 26 * s, 160 * s, 20 * s);
        painter.fillRect(r, row % 3 == 0 ? QColor(0, 122, 255) : QColor(228, 228, 232));
        painter.setPen(row % 3 == 0 ? Qt::white : Qt::black);
        painter.drawText(r.adjusted(6 * s, 0, 0, 0), Qt::AlignVCenter,
                         QStringLiteral("Folder %1").arg(row + 1));
    }
    painter.end();
    const QRect photo = QRectF(panel.left() + 190 * s, panel.top() + 10 * s, 270 * s, 400 * s).toRect();
    paintPhoto(image, photo, random);
    return image;
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty()) {
        std::fprintf(stderr, "usage: bench_make_screenshots OUTDIR [WIDTHxHEIGHT...]\n");
        return 2;
    }
    const QString folder = arguments.takeFirst();
    if (arguments.isEmpty())
        arguments = {QStringLiteral("2880x1800"), QStringLiteral("5120x2880")};
    QDir().mkpath(folder);
    for (const QString &size : arguments) {
        const QStringList parts = size.split(QLatin1Char('x'));
        const int width = parts.value(0).toInt(), height = parts.value(1).toInt();
        if (width <= 0 || height <= 0) {
            std::fprintf(stderr, "bad size %s\n", qPrintable(size));
            return 2;
        }
        const QString path = QStringLiteral("%1/shot-%2.png").arg(folder, size);
        QImageWriter writer(path, "png");
        if (!writer.write(makeScreenshot(width, height).convertToFormat(QImage::Format_RGB888))) {
            std::fprintf(stderr, "cannot write %s: %s\n", qPrintable(path), qPrintable(writer.errorString()));
            return 1;
        }
        std::printf("%s\n", qPrintable(path));
    }
    return 0;
}
