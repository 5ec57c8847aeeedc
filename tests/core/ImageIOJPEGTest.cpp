// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOJPEG.h"
#include "PNGChunks.h"
#include "TestSupport.h"
#include "core/ImageIOResolution.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QTemporaryDir>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::psnr;

// White with a one-pixel red line and blue text: what 4:2:0 chroma smears.
QImage screenshotLike(int width = 123, int height = 45)
{
    QImage image(width, height, QImage::Format_RGB888);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(QColor(255, 0, 0));
    painter.drawLine(0, 10, width - 1, 10);
    painter.setPen(QColor(0, 0, 255));
    painter.drawText(QRect(0, 15, width, height - 15), Qt::AlignCenter, u"Corvex 42"_s);
    painter.end();
    return image;
}

QByteArray encode(const QImage &image, bool *ok = nullptr, QString *reason = nullptr)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    const bool written = ImageIOJPEG::write(image, &buffer, reason);
    if (ok)
        *ok = written;
    return buffer.data();
}

QImage decode(const QByteArray &bytes)
{
    return QImage::fromData(bytes, "jpeg").convertToFormat(QImage::Format_RGB888);
}

// The sampling factors of each component in the start-of-frame segment.
QList<int> samplingFactors(const QByteArray &jpeg)
{
    for (qsizetype at = 2; at + 4 < jpeg.size();) {
        if (quint8(jpeg[at]) != 0xff)
            return {};
        const quint8 marker = quint8(jpeg[at + 1]);
        const int length = quint8(jpeg[at + 2]) << 8 | quint8(jpeg[at + 3]);
        if (marker == 0xc0 || marker == 0xc1 || marker == 0xc2) {
            QList<int> factors;
            const int components = quint8(jpeg[at + 9]);
            for (int c = 0; c < components; ++c)
                factors += quint8(jpeg[at + 10 + c * 3 + 1]);
            return factors;
        }
        at += 2 + length;
    }
    return {};
}

TEST(ImageIOJPEGTest, TextStaysCrispWithFullResolutionColourAndTheResolutionInDotsPerInch)
{
    QImage image = screenshotLike();
    image.setDotsPerMeterX(5669); // 144 dpi
    image.setDotsPerMeterY(3780); // 96 dpi
    bool ok = false;
    const QByteArray jpeg = encode(image, &ok);
    ASSERT_TRUE(ok);
    QTemporaryDir dir;
    const QString file = corvex::test::writeFile(dir.filePath(u"dpi.jpg"_s), jpeg);
    EXPECT_EQ(ImageIOResolution::storedDotsPerInch(file, ImageIOResolution::Container::JPEG),
              QSizeF(144, 96));
    EXPECT_EQ(samplingFactors(jpeg), (QList<int>{0x11, 0x11, 0x11}));
    const QImage back = decode(jpeg);
    ASSERT_EQ(back.size(), image.size());
    EXPECT_GT(psnr(image, back), 38.0);
    // The one-pixel red line keeps its colour; the rows next to it stay white.
    const QRgb line = back.pixel(60, 10), above = back.pixel(60, 8);
    EXPECT_GT(qRed(line), 200);
    EXPECT_LT(qGreen(line), 60);
    EXPECT_GT(qGreen(above), 230);
}

TEST(ImageIOJPEGTest, TransparencyIsLaidOverWhiteAndOtherFormatsAreConverted)
{
    QImage translucent(37, 9, QImage::Format_ARGB32);
    translucent.fill(Qt::transparent);
    for (int x = 20; x < 37; ++x)
        for (int y = 0; y < 9; ++y)
            translucent.setPixel(x, y, qRgba(0, 0, 0, 128));
    const QImage back = decode(encode(translucent));
    EXPECT_GT(qGray(back.pixel(5, 4)), 250);
    EXPECT_NEAR(qGray(back.pixel(30, 4)), 127, 4);

    QImage grey(31, 70, QImage::Format_Grayscale8); // many bands, odd width
    for (int y = 0; y < grey.height(); ++y)
        std::memset(grey.scanLine(y), y * 3, size_t(grey.width()));
    const QImage greyBack = decode(encode(grey));
    ASSERT_EQ(greyBack.size(), grey.size());
    for (const int y : {0, 33, 69})
        EXPECT_NEAR(qGray(greyBack.pixel(15, y)), y * 3, 3) << y;
}

TEST(ImageIOJPEGTest, RowsMustMatchTheSizeAndWriteErrorsAreReported)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QString reason;
    {
        ImageIOJPEG encoder(&buffer);
        EXPECT_FALSE(encoder.begin(QSize(0, 5), QImage::Format_RGB888, QSizeF(72, 72), &reason));
        EXPECT_FALSE(reason.isEmpty());
    }
    ImageIOJPEG encoder(&buffer);
    ASSERT_TRUE(encoder.begin(QSize(4, 3), QImage::Format_RGB888, QSizeF(72, 72), &reason));
    const QByteArray rows(4 * 3 * 4, '\x40');
    ASSERT_TRUE(encoder.writeRows(reinterpret_cast<const uchar *>(rows.constData()), 2, &reason));
    reason.clear();
    EXPECT_FALSE(encoder.finish(&reason));
    EXPECT_TRUE(reason.contains(u"2 of its 3 rows"_s)) << reason.toStdString();
    EXPECT_FALSE(encoder.writeRows(reinterpret_cast<const uchar *>(rows.constData()), 2, &reason));

    // A device that takes nothing: the encoder fails with a reason instead of crashing.
    QBuffer closed;
    ImageIOJPEG failing(&closed);
    const QImage big = screenshotLike(1200, 900);
    reason.clear();
    EXPECT_FALSE(ImageRowWriter::writeImage(big, failing, &reason));
    EXPECT_FALSE(reason.isEmpty());
}

} // namespace

TEST(ImageIOJPEGTest, ResolutionComesFromEXIFWhenJFIFGivesNone)
{
    // An EXIF segment (little-endian TIFF) with XResolution 300/1, YResolution 600/2, unit inches.
    const auto le = pngchunks::littleEndian;
    const auto entry = [&](int tag, int type, quint32 value) -> QByteArray {
        return le(tag, 2) + le(type, 2) + le(1, 4) + le(value, 4);
    };
    QByteArray tiff = "II" + le(42, 2) + le(8, 4) + le(3, 2);
    tiff += entry(282, 5, 50) + entry(283, 5, 58) + entry(296, 3, 2) + le(0, 4);
    tiff += le(300, 4) + le(1, 4) + le(600, 4) + le(2, 4);
    const QByteArray exifPayload = QByteArray("Exif\0\0", 6) + tiff;
    QByteArray app1("\xff\xe1", 2);
    app1.append(char((exifPayload.size() + 2) >> 8))
        .append(char((exifPayload.size() + 2) & 0xff))
        .append(exifPayload);

    QImage image = screenshotLike();
    image.setDotsPerMeterX(3780); // 96 dpi
    image.setDotsPerMeterY(3780);
    const QByteArray jpeg = encode(image);
    ASSERT_EQ(jpeg.mid(2, 2), QByteArray("\xff\xe0", 2));
    const qsizetype app0Length = (quint8(jpeg.at(4)) << 8 | quint8(jpeg.at(5))) + 2;
    QByteArray app0 = jpeg.mid(2, app0Length);
    const QByteArray rest = jpeg.mid(2 + app0Length);
    QByteArray aspectOnly = app0;
    aspectOnly[11] = 0; // units: none, the densities only give the aspect ratio
    aspectOnly[12] = 0, aspectOnly[13] = 1, aspectOnly[14] = 0, aspectOnly[15] = 1;

    const struct
    {
        const char *name;
        QByteArray segments;
        QSizeF dpi;
    } cases[] = {
        {"EXIF only", app1, QSizeF(300, 300)},
        {"JFIF without units, then EXIF", aspectOnly + app1, QSizeF(300, 300)},
        {"JFIF density wins", app0 + app1, QSizeF(96, 96)},
        {"neither", QByteArray(), QSizeF(72, 72)},
    };
    QTemporaryDir dir;
    for (const auto &c : cases) {
        const QString file = corvex::test::writeFile(dir.filePath(QString::fromLatin1(c.name)),
                                                     jpeg.left(2) + c.segments + rest);
        EXPECT_EQ(ImageIOResolution::storedDotsPerInch(file, ImageIOResolution::Container::JPEG), c.dpi)
            << c.name;
    }
}
