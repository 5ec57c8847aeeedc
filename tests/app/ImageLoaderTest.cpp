// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ImageLoader.h"
#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <QPainter>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace corvex::test;

namespace {

constexpr int DotsPerMeter72 = 2835;
constexpr int DotsPerMeter144 = 5669;

// A picture whose left half is red and right half blue (with alpha: the right half half-transparent).
QImage halves(const QSize &size, bool alpha = false, int dotsPerMeter = DotsPerMeter72)
{
    QImage image(size, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    image.fill(QColor(255, 0, 0));
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(size.width() / 2, 0, size.width() - size.width() / 2, size.height()),
                     alpha ? QColor(0, 0, 255, 128) : QColor(0, 0, 255));
    painter.end();
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    return image;
}

QString save(const QImage &image, const QString &name, const QByteArray &format = {})
{
    const QString path = home() + u"/pictures/"_s + name;
    QDir().mkpath(QFileInfo(path).path());
    QImageWriter writer(path, format);
    writer.setQuality(95);
    EXPECT_TRUE(writer.write(image)) << writer.errorString().toStdString();
    return path;
}

bool near(QRgb a, QRgb b, int tolerance)
{
    return qAbs(qRed(a) - qRed(b)) <= tolerance && qAbs(qGreen(a) - qGreen(b)) <= tolerance &&
           qAbs(qBlue(a) - qBlue(b)) <= tolerance && qAbs(qAlpha(a) - qAlpha(b)) <= tolerance;
}

} // namespace

TEST(ImageLoaderTest, ALargePNGIsDecodedStraightToTheDisplaySizeKeepingTransparency)
{
    const QString path = save(halves(QSize(1200, 800)), u"Large.png"_s);
    const ImageLoader::Result result = ImageLoader::load(path, QSize(300, 300));
    ASSERT_EQ(result.status, ImageLoader::Status::Loaded);
    EXPECT_TRUE(result.image.isNull()) << "the full picture is not kept";
    EXPECT_EQ(result.pixelSize, QSize(1200, 800));
    ASSERT_EQ(result.display.size(), QSize(300, 200));
    EXPECT_EQ(result.display.format(), QImage::Format_RGB32);
    EXPECT_EQ(result.display.deviceIndependentSize(), QSizeF(1200, 800)) << "72 dpi: shown at its pixel size";
    EXPECT_EQ(result.display.pixel(10, 100), qRgb(255, 0, 0));
    EXPECT_EQ(result.display.pixel(290, 100), qRgb(0, 0, 255));
    EXPECT_EQ(result.display.pixel(149, 100), qRgb(255, 0, 0)) << "the edge falls between target pixels";
    EXPECT_EQ(result.display.pixel(150, 100), qRgb(0, 0, 255));

    const ImageLoader::Result full = ImageLoader::loadFullImage(path);
    ASSERT_EQ(full.status, ImageLoader::Status::Loaded);
    EXPECT_EQ(full.image.size(), QSize(1200, 800));
    EXPECT_EQ(full.image.devicePixelRatio(), 1.0);
    EXPECT_EQ(full.image.pixel(1199, 0), qRgb(0, 0, 255));

    // Transparency is kept.
    const ImageLoader::Result alpha =
        ImageLoader::load(save(halves(QSize(400, 100), true), u"Alpha.png"_s), QSize(100, 100));
    ASSERT_EQ(alpha.display.size(), QSize(100, 25));
    EXPECT_EQ(alpha.display.format(), QImage::Format_ARGB32_Premultiplied);
    EXPECT_EQ(alpha.display.pixel(10, 10), qRgba(255, 0, 0, 255));
    EXPECT_TRUE(near(alpha.display.pixel(90, 10), qRgba(0, 0, 128, 128), 1)) // premultiplied
        << std::hex << alpha.display.pixel(90, 10);
}

TEST(ImageLoaderTest, AHighDensityScreenshotIsShownAtItsSizeInPoints)
{
    const QString path = save(halves(QSize(800, 400), false, DotsPerMeter144), u"Retina.png"_s);
    EXPECT_EQ(ImageLoader::imageSizeOfFile(path), QSizeF(400, 200));

    const ImageLoader::Result reduced = ImageLoader::load(path, QSize(200, 200));
    ASSERT_EQ(reduced.display.size(), QSize(200, 100));
    EXPECT_NEAR(reduced.display.deviceIndependentSize().width(), 400, 0.01);
    EXPECT_NEAR(reduced.display.deviceIndependentSize().height(), 200, 0.01);

    const ImageLoader::Result whole = ImageLoader::load(path, QSize(1000, 1000));
    ASSERT_EQ(whole.display.size(), QSize(800, 400));
    EXPECT_EQ(whole.display.devicePixelRatio(), 2.0);
    EXPECT_EQ(whole.image.cacheKey(), whole.display.cacheKey()) << "it fits: the full picture is the copy";

    const ImageLoader::Result full = ImageLoader::loadFullImage(path);
    EXPECT_EQ(full.image.size(), QSize(800, 400));
    EXPECT_EQ(full.image.devicePixelRatio(), 2.0);
}

TEST(ImageLoaderTest, OtherFormatsAreReducedTooAJPEGTurnedUprightFirst)
{
    const QImage picture = halves(QSize(640, 480));
    for (const char *format : {"jpg", "bmp", "tif"}) {
        const QString path = save(picture, u"Picture."_s + QLatin1String(format));
        const ImageLoader::Result result = ImageLoader::load(path, QSize(160, 160));
        ASSERT_EQ(result.status, ImageLoader::Status::Loaded) << format;
        EXPECT_EQ(result.pixelSize, QSize(640, 480)) << format;
        ASSERT_EQ(result.display.size(), QSize(160, 120)) << format;
        EXPECT_TRUE(result.display.format() == QImage::Format_RGB32 ||
                    result.display.format() == QImage::Format_ARGB32_Premultiplied)
            << format;
        EXPECT_TRUE(near(result.display.pixel(20, 60), qRgb(255, 0, 0), 12)) << format;
        EXPECT_TRUE(near(result.display.pixel(140, 60), qRgb(0, 0, 255), 12)) << format;
        EXPECT_EQ(ImageLoader::loadFullImage(path).image.size(), QSize(640, 480)) << format;
    }

    // A JPEG is turned upright before it is fitted.
    const QString path = home() + u"/pictures/Turned.jpg"_s;
    QDir().mkpath(QFileInfo(path).path());
    QImageWriter writer(path, "jpeg");
    writer.setTransformation(QImageIOHandler::TransformationRotate90);
    ASSERT_TRUE(writer.write(halves(QSize(800, 400))));
    const ImageLoader::Result turned = ImageLoader::load(path, QSize(100, 100));
    ASSERT_EQ(turned.status, ImageLoader::Status::Loaded);
    EXPECT_EQ(turned.pixelSize, QSize(400, 800)) << "upright";
    EXPECT_EQ(turned.display.size(), QSize(50, 100));
    // Turned a quarter clockwise, the red left half is on top.
    EXPECT_TRUE(near(turned.display.pixel(25, 10), qRgb(255, 0, 0), 16));
    EXPECT_TRUE(near(turned.display.pixel(25, 90), qRgb(0, 0, 255), 16));
}

TEST(ImageLoaderTest, FailuresSayWhetherTheFileCouldBeRead)
{
    const QString missing = home() + u"/pictures/Missing.png"_s;
    EXPECT_EQ(ImageLoader::load(missing, QSize(100, 100)).status, ImageLoader::Status::ReadFailed);
    EXPECT_EQ(ImageLoader::loadFullImage(missing).status, ImageLoader::Status::ReadFailed);

    const QString text = writeFile(home() + u"/pictures/Text.png"_s, "not a picture at all");
    EXPECT_EQ(ImageLoader::load(text, QSize(100, 100)).status, ImageLoader::Status::DecodeFailed);
    EXPECT_EQ(ImageLoader::loadFullImage(text).status, ImageLoader::Status::DecodeFailed);

    // A PNG cut off halfway shows nothing rather than half a picture.
    QFile whole(save(halves(QSize(300, 300)), u"Whole.png"_s));
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll();
    const QString cut = writeFile(home() + u"/pictures/Cut.png"_s, bytes.left(bytes.size() / 2));
    const ImageLoader::Result result = ImageLoader::load(cut, QSize(100, 100));
    EXPECT_EQ(result.status, ImageLoader::Status::DecodeFailed);
    EXPECT_TRUE(result.display.isNull());
}

TEST(ImageLoaderTest, ScaledToFitAveragesDownAndLeavesFittingImagesAlone)
{
    const QImage picture = halves(QSize(400, 200));
    const QImage reduced = ImageLoader::scaledToFit(picture, QSize(100, 100));
    EXPECT_EQ(reduced.size(), QSize(100, 50));
    EXPECT_EQ(reduced.pixel(10, 10), qRgb(255, 0, 0));
    EXPECT_EQ(ImageLoader::scaledToFit(picture, QSize(500, 500)).cacheKey(), picture.cacheKey());
    EXPECT_EQ(ImageLoader::scaledToFit(picture, QSize()).cacheKey(), picture.cacheKey());
}
