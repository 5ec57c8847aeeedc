// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIORowPipeline.h"
#include "PNGChunks.h"
#include "TestSupport.h"
#include "core/ImageRowWriter.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstring>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Failure = ImageIORowPipeline::Failure;

// Collects what it is given into an image; can fail at begin, at a row or at finish.
class CollectingWriter final : public ImageRowWriter
{
public:
    bool begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch, QString *reason) override
    {
        ++mBegins;
        mDotsPerInch = dotsPerInch;
        mImage = QImage(size, format);
        mRowBytes = size_t(size.width()) * (format == QImage::Format_RGB888 ? 3 : 4);
        return mFailAtRow != -1 || fail(reason);
    }
    bool writeRows(const uchar *pixels, int count, QString *reason) override
    {
        for (int row = 0; row < count; ++row, ++mRows) {
            if (mRows == mFailAtRow)
                return fail(reason);
            std::memcpy(mImage.scanLine(mRows), pixels + size_t(row) * mRowBytes, mRowBytes);
        }
        return true;
    }
    bool finish(QString *reason) override
    {
        ++mFinishes;
        return !mFailAtFinish || fail(reason);
    }

    int mFailAtRow = -2; // -1: at begin
    bool mFailAtFinish = false;
    int mBegins = 0;
    int mFinishes = 0;
    int mRows = 0;
    QSizeF mDotsPerInch;
    QImage mImage;

private:
    static bool fail(QString *reason)
    {
        if (reason)
            *reason = u"the disk is full"_s;
        return false;
    }
    size_t mRowBytes = 0;
};

using pngchunks::noisy;

class ImageIORowPipelineTest : public ::testing::Test
{
protected:
    QString save(const QString &name, const QImage &image)
    {
        return pngchunks::savePNG(mDir.filePath(name), image);
    }

    QTemporaryDir mDir;
};

TEST_F(ImageIORowPipelineTest, EveryRowArrivesInOrder)
{
    // Rows of 2 KB: the image passes in many bands, more than are ever in flight.
    for (const QImage::Format format : {QImage::Format_RGB888, QImage::Format_RGBA8888}) {
        QImage image = noisy(517, 901, format);
        image.setDotsPerMeterX(5669); // 144 dpi
        const QString file = save(u"rows.png"_s, image);
        CollectingWriter writer;
        Failure failure = Failure::Source;
        QString reason;
        ASSERT_TRUE(ImageIORowPipeline::convertPNG(file, 1 << 30, writer, &failure, &reason))
            << reason.toStdString();
        EXPECT_EQ(failure, Failure::None);
        EXPECT_EQ(writer.mBegins, 1);
        EXPECT_EQ(writer.mFinishes, 1);
        EXPECT_EQ(writer.mRows, image.height());
        EXPECT_NEAR(writer.mDotsPerInch.width(), 144, 0.05);
        EXPECT_EQ(writer.mImage, image);
        QFile::remove(file);
    }
}

TEST_F(ImageIORowPipelineTest, UnreadableSourcesAreTheSourcesFailure)
{
    const QString good = save(u"good.png"_s, noisy(300, 400, QImage::Format_RGB888));
    const QByteArray bytes = corvex::test::readFile(good);
    const QString cut = corvex::test::writeFile(mDir.filePath(u"cut.png"_s), bytes.left(bytes.size() / 2));
    for (const QString &path : {mDir.filePath(u"missing.png"_s), cut}) {
        SCOPED_TRACE(path.toStdString());
        CollectingWriter writer;
        Failure failure = Failure::None;
        QString reason;
        EXPECT_FALSE(ImageIORowPipeline::convertPNG(path, 1 << 30, writer, &failure, &reason));
        EXPECT_EQ(failure, Failure::Source);
        EXPECT_FALSE(reason.isEmpty());
        EXPECT_EQ(writer.mFinishes, 0);
    }
    // Too large: refused before the writer hears of it.
    CollectingWriter writer;
    Failure failure = Failure::None;
    QString reason;
    EXPECT_FALSE(ImageIORowPipeline::convertPNG(good, 300 * 400 * 4 - 1, writer, &failure, &reason));
    EXPECT_EQ(failure, Failure::Source);
    EXPECT_TRUE(reason.contains(u"too large"_s)) << reason.toStdString();
    EXPECT_EQ(writer.mBegins, 0);
}

TEST_F(ImageIORowPipelineTest, AFailingWriterStopsTheDecoder)
{
    const QString file = save(u"big.png"_s, noisy(640, 2000, QImage::Format_RGB888));
    // -1: at begin; -3: at finish.
    for (const int failAt : {-1, 0, 1000, 1999, -3}) {
        SCOPED_TRACE(failAt);
        CollectingWriter writer;
        writer.mFailAtRow = failAt;
        writer.mFailAtFinish = failAt == -3;
        Failure failure = Failure::None;
        QString reason;
        EXPECT_FALSE(ImageIORowPipeline::convertPNG(file, 1 << 30, writer, &failure, &reason));
        EXPECT_EQ(failure, Failure::Destination);
        EXPECT_EQ(reason, u"the disk is full"_s);
        EXPECT_EQ(writer.mFinishes, failAt == -3 ? 1 : 0);
    }
}

} // namespace
