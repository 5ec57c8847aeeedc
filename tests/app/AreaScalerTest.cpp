// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AreaScaler.h"

#include <QPainter>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// A picture with hard edges and fine detail: text and one-pixel stripes, where a poor reduction aliases.
QImage detailed(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (int x = 0; x < size.width() / 2; x += 2)
        painter.fillRect(QRect(x, 0, 1, size.height() / 2), QColor(20, 40, 200));
    QFont font = painter.font();
    font.setPixelSize(size.height() / 8);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(QRect(0, size.height() / 2, size.width(), size.height() / 2), Qt::AlignCenter,
                     u"Quick brown fox 0123"_s);
    painter.end();
    return image;
}

// Channel c (0 blue, 1 green, 2 red, 3 alpha) of a pixel.
int channel(QRgb pixel, int c)
{
    return int((pixel >> (8 * c)) & 0xff);
}

// How far the reduced stripes (the top-left quarter of detailed()) swing between light and dark.
int stripeContrast(const QImage &reduced)
{
    int lightest = 0, darkest = 255;
    for (int x = 1; x < reduced.width() / 2 - 2; ++x) {
        lightest = std::max(lightest, qRed(reduced.pixel(x, 2)));
        darkest = std::min(darkest, qRed(reduced.pixel(x, 2)));
    }
    return lightest - darkest;
}

QImage feed(const QImage &source, const QSize &target)
{
    AreaScaler scaler(source.size(), source.format(), target);
    EXPECT_TRUE(scaler.isValid());
    for (int y = 0; y < source.height(); ++y)
        EXPECT_TRUE(scaler.addRow(source.constScanLine(y)));
    EXPECT_FALSE(scaler.addRow(source.constScanLine(0))) << "every row has been taken";
    EXPECT_EQ(scaler.rowsAdded(), source.height());
    return scaler.result();
}

} // namespace

TEST(AreaScalerTest, AFlatColourStaysExactAtAnyFactorInEveryFormatWithoutOverflow)
{
    const QColor colour(37, 148, 251);
    for (const QImage::Format format : {QImage::Format_RGB888, QImage::Format_RGBA8888, QImage::Format_RGB32,
                                        QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied}) {
        QImage source(101, 37, format);
        source.fill(colour);
        for (const QSize target :
             {QSize(13, 7), QSize(100, 36), QSize(101, 37), QSize(1, 1), QSize(50, 37)}) {
            const QImage result = feed(source, target);
            ASSERT_EQ(result.size(), target);
            const bool alpha = format != QImage::Format_RGB888 && format != QImage::Format_RGB32;
            EXPECT_EQ(result.format(), alpha ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
            for (int y = 0; y < target.height(); ++y)
                for (int x = 0; x < target.width(); ++x)
                    ASSERT_EQ(result.pixel(x, y), colour.rgb())
                        << "format " << format << " to " << target.width() << "x" << target.height() << " at "
                        << x << "," << y;
        }
    }
    // Great reductions do not overflow.
    QImage wide(20000, 3, QImage::Format_RGB888);
    wide.fill(QColor(255, 255, 255));
    EXPECT_EQ(feed(wide, QSize(1, 1)).pixel(0, 0), qRgb(255, 255, 255));
    QImage tall(2, 30000, QImage::Format_RGBA8888);
    tall.fill(QColor(255, 128, 0, 255));
    EXPECT_EQ(feed(tall, QSize(1, 1)).pixel(0, 0), qRgb(255, 128, 0));
}

TEST(AreaScalerTest, EachPixelAveragesTheAreaItCoversAndTransparentPixelsLendNoColour)
{
    // Two by two blocks become their mean.
    QImage blocks(4, 2, QImage::Format_RGB888);
    const QRgb values[2][4] = {{qRgb(0, 0, 0), qRgb(200, 0, 0), qRgb(10, 20, 30), qRgb(10, 20, 30)},
                               {qRgb(100, 0, 0), qRgb(100, 100, 0), qRgb(30, 40, 50), qRgb(30, 40, 50)}};
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 4; ++x)
            blocks.setPixel(x, y, values[y][x]);
    const QImage halved = feed(blocks, QSize(2, 1));
    EXPECT_EQ(halved.pixel(0, 0), qRgb(100, 25, 0));
    EXPECT_EQ(halved.pixel(1, 0), qRgb(20, 30, 40));

    // Three pixels into two: the middle one is shared half and half.
    QImage three(3, 3, QImage::Format_RGB32);
    for (int y = 0; y < 3; ++y) {
        three.setPixel(0, y, qRgb(90, 0, 0));
        three.setPixel(1, y, qRgb(0, 90, 0));
        three.setPixel(2, y, qRgb(0, 0, 90));
    }
    const QImage two = feed(three, QSize(2, 2));
    for (int y = 0; y < 2; ++y) {
        EXPECT_EQ(two.pixel(0, y), qRgb(60, 30, 0)) << y;
        EXPECT_EQ(two.pixel(1, y), qRgb(0, 30, 60)) << y;
    }

    // The same across rows.
    const QImage rows = feed(three.transformed(QTransform().rotate(90)), QSize(2, 2));
    EXPECT_EQ(rows.pixel(0, 0), qRgb(60, 30, 0));
    EXPECT_EQ(rows.pixel(0, 1), qRgb(0, 30, 60));

    // Transparent pixels do not lend their colour.
    QImage source(2, 1, QImage::Format_RGBA8888);
    source.setPixelColor(0, 0, QColor(255, 0, 0, 255));
    source.setPixelColor(1, 0, QColor(0, 255, 0, 0)); // green, but invisible
    const QImage result = feed(source, QSize(1, 1));
    ASSERT_EQ(result.format(), QImage::Format_ARGB32_Premultiplied);
    const QRgb pixel = result.pixel(0, 0); // premultiplied
    EXPECT_EQ(qAlpha(pixel), 128);
    EXPECT_EQ(qRed(pixel), 128);
    EXPECT_EQ(qGreen(pixel), 0) << "no green from the transparent pixel";

    // Half-transparent straight colours average to the same picture as premultiplied ones do.
    QImage straight(6, 4, QImage::Format_ARGB32);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x)
            straight.setPixel(x, y, qRgba(40 * x, 60 * y, 200, 30 + 40 * x));
    const QImage fromStraight = feed(straight, QSize(4, 3));
    const QImage fromPremultiplied =
        feed(straight.convertToFormat(QImage::Format_ARGB32_Premultiplied), QSize(4, 3));
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            for (int c = 0; c < 4; ++c)
                EXPECT_LE(
                    qAbs(channel(fromStraight.pixel(x, y), c) - channel(fromPremultiplied.pixel(x, y), c)),
                    1);
}

TEST(AreaScalerTest, LooksLikeQtsSmoothScaling)
{
    const QImage source = detailed(QSize(1280, 720));
    for (const QSize target : {QSize(320, 180), QSize(500, 281), QSize(97, 55)}) {
        const QImage ours = AreaScaler::scaled(source, target);
        const QImage qt = source.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        ASSERT_EQ(ours.size(), target);
        double difference = 0;
        int worst = 0;
        for (int y = 0; y < target.height(); ++y)
            for (int x = 0; x < target.width(); ++x)
                for (int c = 0; c < 3; ++c) {
                    const int d = qAbs(channel(ours.pixel(x, y), c) - channel(qt.pixel(x, y), c));
                    difference += d;
                    worst = std::max(worst, d);
                }
        difference /= 3.0 * target.width() * target.height();
        EXPECT_LT(difference, 2.0) << target.width() << "x" << target.height();
        // The stripes become a tint, with no stronger beat of light and dark columns than Qt's.
        EXPECT_LE(stripeContrast(ours), stripeContrast(qt) + 4) << target.width() << "x" << target.height();
        if (source.width() % target.width() == 0) {
            EXPECT_LE(stripeContrast(ours), 2) << "whole periods average out";
        }
    }
}

TEST(AreaScalerTest, RowsNotYetTakenStayEmptyBadRequestsAreRefusedAndFittingNeverEnlarges)
{
    QImage source(8, 8, QImage::Format_RGB32);
    source.fill(Qt::white);
    AreaScaler scaler(source.size(), source.format(), QSize(2, 2));
    for (int y = 0; y < 4; ++y)
        scaler.addRow(source.constScanLine(y));
    EXPECT_EQ(scaler.result().pixel(1, 0), qRgb(255, 255, 255)) << "the top half is complete";
    EXPECT_EQ(scaler.result().pixel(1, 1), qRgb(0, 0, 0)) << "the bottom half is not there yet";

    EXPECT_FALSE(AreaScaler(QSize(8, 8), QImage::Format_Indexed8, QSize(2, 2)).isValid());
    EXPECT_FALSE(AreaScaler(QSize(8, 8), QImage::Format_RGB32, QSize(9, 2)).isValid()) << "never enlarges";
    EXPECT_FALSE(AreaScaler(QSize(8, 8), QImage::Format_RGB32, QSize(0, 2)).isValid());
    AreaScaler invalid(QSize(0, 0), QImage::Format_RGB32, QSize(1, 1));
    EXPECT_FALSE(invalid.addRow(source.constScanLine(0)));
    EXPECT_TRUE(AreaScaler::scaled(QImage(), QSize(2, 2)).isNull());

    // Other formats are converted first.
    QImage indexed = source.convertToFormat(QImage::Format_Indexed8);
    EXPECT_EQ(AreaScaler::scaled(indexed, QSize(3, 3)).pixel(2, 2), qRgb(255, 255, 255));

    // The fitting size keeps the aspect and never enlarges either.
    EXPECT_EQ(AreaScaler::fittingSize(QSize(5120, 2880), QSize(1600, 1600)), QSize(1600, 900));
    EXPECT_EQ(AreaScaler::fittingSize(QSize(5120, 2880), QSize(800, 300)), QSize(533, 300));
    EXPECT_EQ(AreaScaler::fittingSize(QSize(200, 100), QSize(800, 600)), QSize(200, 100));
    EXPECT_EQ(AreaScaler::fittingSize(QSize(10000, 1), QSize(100, 100)), QSize(100, 1));
    EXPECT_EQ(AreaScaler::fittingSize(QSize(200, 100), QSize()), QSize(200, 100));
}
