// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOPNG.h"
#include "PNGChunks.h"
#include "TestSupport.h"

#include <QFile>
#include <QPainter>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using namespace pngchunks;

// The image as an Adam7-interlaced 8-bit RGB PNG, every row unfiltered.
QByteArray interlacedPNG(const QImage &image)
{
    struct Pass
    {
        int x, y, dx, dy;
    };
    constexpr Pass passes[] = {{0, 0, 8, 8}, {4, 0, 8, 8}, {0, 4, 4, 8}, {2, 0, 4, 4},
                               {0, 2, 2, 4}, {1, 0, 2, 2}, {0, 1, 1, 2}};
    QByteArray raw;
    for (const Pass &pass : passes) {
        if (pass.x >= image.width())
            continue;
        for (int y = pass.y; y < image.height(); y += pass.dy) {
            raw += '\0';
            for (int x = pass.x; x < image.width(); x += pass.dx) {
                const QRgb p = image.pixel(x, y);
                raw += char(qRed(p));
                raw += char(qGreen(p));
                raw += char(qBlue(p));
            }
        }
    }
    const QByteArray header = bigEndian(quint32(image.width())) + bigEndian(quint32(image.height())) +
                              QByteArray("\x08\x02\x00\x00\x01", 5);
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk("IHDR", header) + chunk("IDAT", qCompress(raw).mid(4)) +
           chunk("IEND", QByteArray());
}

// Records what the decoder hands over; can stop at a given point.
struct Recorder : PNGRowReader
{
    bool begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch) override
    {
        ++begins;
        mSize = size;
        mFormat = format;
        mDotsPerInch = dotsPerInch;
        return stopAt != -1;
    }
    bool row(int y, const uchar *pixels) override
    {
        ys.push_back(y);
        const int bytes = mSize.width() * (mFormat == QImage::Format_RGB888 ? 3 : 4);
        rows.emplace_back(reinterpret_cast<const char *>(pixels), bytes);
        return y != stopAt;
    }
    int stopAt = -2; // -1: refuse at begin; -2: never stop
    int begins = 0;
    QSize mSize;
    QImage::Format mFormat = QImage::Format_Invalid;
    QSizeF mDotsPerInch;
    std::vector<int> ys;
    std::vector<QByteArray> rows;
};

class ImageIOPNGTest : public ::testing::Test
{
protected:
    QString save(const QString &name, const QImage &image) { return savePNG(mDir.filePath(name), image); }

    // Every row, in order, equals the image's row bytes.
    static void expectRows(const Recorder &recorder, const QImage &image)
    {
        ASSERT_EQ(recorder.rows.size(), size_t(image.height()));
        const int bytes = image.width() * (image.format() == QImage::Format_RGB888 ? 3 : 4);
        for (int y = 0; y < image.height(); ++y) {
            EXPECT_EQ(recorder.ys[size_t(y)], y);
            EXPECT_EQ(recorder.rows[size_t(y)],
                      QByteArray(reinterpret_cast<const char *>(image.constScanLine(y)), bytes))
                << "row " << y;
        }
    }

    QTemporaryDir mDir;
};

TEST_F(ImageIOPNGTest, RowsArriveInOrderWithSizeFormatAndResolution)
{
    QImage opaque = noisy(67, 23);
    opaque.setDotsPerMeterX(5669); // 144 dpi
    opaque.setDotsPerMeterY(3780); // 96 dpi
    const QImage translucent = noisy(31, 17, QImage::Format_RGBA8888);
    for (const QImage &image : {opaque, translucent}) {
        Recorder recorder;
        QString reason;
        ASSERT_TRUE(ImageIOPNG::readRows(save(u"rows.png"_s, image), 1 << 20, recorder, &reason))
            << reason.toStdString();
        EXPECT_EQ(recorder.begins, 1);
        EXPECT_EQ(recorder.mSize, image.size());
        EXPECT_EQ(recorder.mFormat, image.format());
        EXPECT_NEAR(recorder.mDotsPerInch.width(), image.dotsPerMeterX() * 0.0254, 0.05);
        EXPECT_NEAR(recorder.mDotsPerInch.height(), image.dotsPerMeterY() * 0.0254, 0.05);
        expectRows(recorder, image);
        // read() gives the same pixels, with the resolution as dots per meter.
        const QImage whole = ImageIOPNG::read(mDir.filePath(u"rows.png"_s), 1 << 20, &reason);
        EXPECT_EQ(whole, image);
        EXPECT_EQ(whole.dotsPerMeterX(), image.dotsPerMeterX() > 0 ? image.dotsPerMeterX() : 2835);
        QFile::remove(mDir.filePath(u"rows.png"_s));
    }
}

TEST_F(ImageIOPNGTest, OnlyAResolutionPerMetreCounts)
{
    // 5669 by 3780 pixels per unit: 144 by 96 dpi when the unit is the metre; with the unit "unknown" it
    // gives only the aspect ratio, and the picture has the standard 72 dpi.
    for (const char unit : {'\x01', '\x00'}) {
        const QByteArray header = bigEndian(1) + bigEndian(1) + QByteArray("\x08\x02\x00\x00\x00", 5);
        const QByteArray png = QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk("IHDR", header) +
                               chunk("pHYs", bigEndian(5669) + bigEndian(3780) + QByteArray(1, unit)) +
                               chunk("IDAT", qCompress(QByteArray(4, '\0')).mid(4)) +
                               chunk("IEND", QByteArray());
        QSizeF dpi;
        ASSERT_TRUE(ImageIOPNG::readProperties(corvex::test::writeFile(mDir.filePath(u"phys.png"_s), png),
                                               nullptr, &dpi, nullptr));
        EXPECT_EQ(dpi.toSize(), unit ? QSize(144, 96) : QSize(72, 72)) << int(unit);
    }
}

TEST_F(ImageIOPNGTest, InterlacedFilesAreHandedOverRowByRow)
{
    for (const QSize size : {QSize(37, 29), QSize(1, 1), QSize(3, 9)}) {
        SCOPED_TRACE(size.width());
        const QImage image = noisy(size.width(), size.height());
        const QString file = corvex::test::writeFile(mDir.filePath(u"adam7.png"_s), interlacedPNG(image));
        Recorder recorder;
        QString reason;
        ASSERT_TRUE(ImageIOPNG::readRows(file, 1 << 20, recorder, &reason)) << reason.toStdString();
        EXPECT_EQ(recorder.mFormat, QImage::Format_RGB888);
        EXPECT_EQ(recorder.mDotsPerInch, QSizeF(72, 72));
        expectRows(recorder, image);
        EXPECT_EQ(ImageIOPNG::read(file, 1 << 20, nullptr), image);
    }
}

TEST_F(ImageIOPNGTest, TheReaderCanStopDecoding)
{
    const QString file = save(u"stop.png"_s, noisy(20, 12));
    Recorder refusing;
    refusing.stopAt = -1;
    QString reason;
    EXPECT_FALSE(ImageIOPNG::readRows(file, 1 << 20, refusing, &reason));
    EXPECT_TRUE(reason.isEmpty()) << reason.toStdString();
    EXPECT_TRUE(refusing.rows.empty());

    Recorder stopping;
    stopping.stopAt = 4;
    EXPECT_FALSE(ImageIOPNG::readRows(file, 1 << 20, stopping, &reason));
    EXPECT_TRUE(reason.isEmpty()) << reason.toStdString();
    EXPECT_EQ(stopping.ys, (std::vector<int>{0, 1, 2, 3, 4}));

    // Stopping at the very last row is still a stop.
    Recorder last;
    last.stopAt = 11;
    EXPECT_FALSE(ImageIOPNG::readRows(file, 1 << 20, last, &reason));
    EXPECT_EQ(last.rows.size(), 12u);
}

TEST_F(ImageIOPNGTest, LimitsAndDamageFailWithAReason)
{
    const QImage image = noisy(200, 150);
    const QString file = save(u"big.png"_s, image);
    // 200 x 150 x 4 bytes is the limit: one byte less refuses before anything is handed over.
    Recorder refused;
    QString reason;
    EXPECT_FALSE(ImageIOPNG::readRows(file, 200 * 150 * 4 - 1, refused, &reason));
    EXPECT_TRUE(reason.contains(u"too large"_s)) << reason.toStdString();
    EXPECT_EQ(refused.begins, 0);
    Recorder accepted;
    EXPECT_TRUE(ImageIOPNG::readRows(file, 200 * 150 * 4, accepted, nullptr));

    // A cut file hands over the rows it holds, then fails with the decoder's reason.
    const QByteArray bytes = corvex::test::readFile(file);
    const QString cut = corvex::test::writeFile(mDir.filePath(u"cut.png"_s), bytes.left(bytes.size() / 2));
    Recorder partial;
    reason.clear();
    EXPECT_FALSE(ImageIOPNG::readRows(cut, 1 << 20, partial, &reason));
    EXPECT_FALSE(reason.isEmpty());
    EXPECT_LT(partial.rows.size(), size_t(image.height()));
    EXPECT_EQ(ImageIOPNG::read(cut, 1 << 20, &reason), QImage());

    reason.clear();
    EXPECT_FALSE(ImageIOPNG::readRows(mDir.filePath(u"none.png"_s), 1 << 20, partial, &reason));
    EXPECT_FALSE(reason.isEmpty());
}

TEST_F(ImageIOPNGTest, FlatPicturesStayCompact)
{
    // Flat screenshot-like content must compress well: far below the raw size.
    QImage image(800, 600, QImage::Format_RGB888);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.fillRect(QRect(50, 50, 300, 200), QColor(0, 122, 255));
    painter.drawText(QRect(400, 300, 300, 100), Qt::AlignCenter, u"Corvex"_s);
    painter.end();
    const QByteArray bytes = corvex::test::readFile(save(u"flat.png"_s, image));
    EXPECT_LT(bytes.size(), 20000);
    EXPECT_EQ(QImage::fromData(bytes, "png").convertToFormat(QImage::Format_RGB888), image);
}

TEST_F(ImageIOPNGTest, ThirtyTwoBitImagesAreStoredAsRGBOrWithStraightAlpha)
{
    // A rendered PDF page arrives as 32-bit pixels: opaque ones are stored as RGB, others keep straight
    // alpha.
    QImage opaque(9, 5, QImage::Format_ARGB32);
    opaque.fill(qRgb(10, 20, 30));
    QImage translucent(9, 5, QImage::Format_ARGB32_Premultiplied);
    translucent.fill(qPremultiply(qRgba(200, 100, 50, 128)));
    for (const QImage &image : {opaque, translucent}) {
        const QImage back = ImageIOPNG::read(save(u"packed.png"_s, image), 1 << 20, nullptr);
        EXPECT_EQ(back.format(),
                  image.format() == QImage::Format_ARGB32 ? QImage::Format_RGB888 : QImage::Format_RGBA8888);
        const QRgb want = qUnpremultiply(image.pixel(4, 2)), got = back.pixel(4, 2);
        EXPECT_LE(qAbs(qRed(got) - qRed(want)), 1);
        EXPECT_LE(qAbs(qBlue(got) - qBlue(want)), 1);
        EXPECT_EQ(qAlpha(got), qAlpha(want));
    }
}

} // namespace
