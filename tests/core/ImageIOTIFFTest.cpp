// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOTIFF.h"
#include "PNGChunks.h"
#include "TestSupport.h"
#include "core/ImageIOResolution.h"

#include <QBuffer>
#include <QImageReader>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using pngchunks::noisy;

class ImageIOTIFFTest : public ::testing::Test
{
protected:
    // Encodes the image into a file and reads it back with Qt's reader.
    QImage roundTrip(const QImage &image, QString *file = nullptr)
    {
        QBuffer buffer;
        buffer.open(QIODevice::ReadWrite);
        QString reason;
        EXPECT_TRUE(ImageIOTIFF::write(image, &buffer, &reason)) << reason.toStdString();
        const QString path = corvex::test::writeFile(mDir.filePath(u"out.tif"_s), buffer.data());
        if (file)
            *file = path;
        mBytes = buffer.size();
        QImageReader reader(path, "tiff");
        return reader.read();
    }

    QTemporaryDir mDir;
    qint64 mBytes = 0;
};

TEST_F(ImageIOTIFFTest, PixelsComeBackExactlyWithAndWithoutAlpha)
{
    // 301 by 1000 rows of 903 bytes make several strips and a short last one.
    const QImage opaque = noisy(301, 1000, QImage::Format_RGB888);
    QImage back = roundTrip(opaque);
    ASSERT_EQ(back.size(), opaque.size());
    EXPECT_FALSE(back.hasAlphaChannel());
    EXPECT_EQ(back.convertToFormat(QImage::Format_RGB888), opaque);

    const QImage translucent = noisy(33, 21, QImage::Format_RGBA8888);
    back = roundTrip(translucent);
    ASSERT_TRUE(back.hasAlphaChannel());
    const QImage straight = back.convertToFormat(QImage::Format_RGBA8888);
    for (const QPoint p : {QPoint(0, 0), QPoint(17, 9), QPoint(32, 20)}) {
        const QRgb want = translucent.pixel(p), got = straight.pixel(p);
        EXPECT_EQ(qAlpha(got), qAlpha(want));
        // Colours of nearly transparent pixels lose precision in readers that premultiply.
        if (qAlpha(want) > 64) {
            EXPECT_NEAR(qRed(got), qRed(want), 2);
        }
    }
}

TEST_F(ImageIOTIFFTest, ResolutionIsStoredAndFlatAreasCompress)
{
    QImage image(800, 600, QImage::Format_RGB888);
    image.fill(QColor(240, 240, 240));
    image.setDotsPerMeterX(2835); // 72 dpi as whole pixels per metre
    image.setDotsPerMeterY(5669); // 144 dpi
    QString file;
    ASSERT_EQ(roundTrip(image, &file).size(), image.size());
    EXPECT_EQ(ImageIOResolution::storedDotsPerInch(file, ImageIOResolution::Container::TIFF),
              QSizeF(72, 144));
    EXPECT_LT(mBytes, 800 * 600 * 3 / 20);
}

TEST_F(ImageIOTIFFTest, RowsMustMatchTheSizeAndWriteErrorsAreReported)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    QString reason;
    ImageIOTIFF encoder(&buffer);
    EXPECT_FALSE(encoder.writeRows(nullptr, 1, &reason));
    ASSERT_TRUE(encoder.begin(QSize(5, 4), QImage::Format_RGBA8888, QSizeF(72, 72), &reason));
    const QByteArray rows(5 * 4 * 4, '\x7f');
    ASSERT_TRUE(encoder.writeRows(reinterpret_cast<const uchar *>(rows.constData()), 3, &reason));
    EXPECT_FALSE(encoder.writeRows(reinterpret_cast<const uchar *>(rows.constData()), 2, &reason));
    reason.clear();
    EXPECT_FALSE(encoder.finish(&reason));
    EXPECT_TRUE(reason.contains(u"3 of its 4 rows"_s)) << reason.toStdString();

    QBuffer closed; // takes no bytes
    reason.clear();
    EXPECT_FALSE(ImageIOTIFF::write(noisy(400, 400, QImage::Format_RGB888), &closed, &reason));
    EXPECT_FALSE(reason.isEmpty());
}

} // namespace
