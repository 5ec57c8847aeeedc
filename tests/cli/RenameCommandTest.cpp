// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

using corvex::test::runCli;

TEST(RenameCommand, ConvertsAndReportsFailures)
{
    QTemporaryDir dir;
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(qRgb(10, 200, 30));
    const QString source = dir.filePath(QStringLiteral("shot.png"));
    ASSERT_TRUE(image.save(source));

    const QString destination = dir.filePath(QStringLiteral("shot.TIF"));
    auto result = runCli({QStringLiteral("rename"), source, destination});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_EQ(QImage(destination).size(), QSize(30, 20));
    EXPECT_FALSE(QFileInfo::exists(source));

    result = runCli({QStringLiteral("rename"), destination, dir.filePath(QStringLiteral("shot.webp"))});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.contains("unknown image extension 'webp'")) << result.err.constData();
    EXPECT_TRUE(result.err.contains("gif, jpg, jpeg, jpe, bmp, pdf, png, tiff, tif"));
    EXPECT_TRUE(QFileInfo::exists(destination));

    result = runCli({QStringLiteral("rename"), dir.filePath(QStringLiteral("gone.png")),
                     dir.filePath(QStringLiteral("gone.jpg"))});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.contains("gone.png")) << result.err.constData();

    result = runCli({QStringLiteral("rename"), destination});
    EXPECT_NE(result.exitCode, 0);
}

TEST(RenameCommand, ConvertsThroughEveryKindOfStep)
{
    // Bitmaps are converted without a GUI application, PDF pages with one; a PDF under a bitmap's name is
    // still rendered as a PDF.
    QTemporaryDir dir;
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(qRgb(10, 200, 30));
    ASSERT_TRUE(image.save(dir.filePath(QStringLiteral("a.png"))));
    const QStringList chain{QStringLiteral("a.png"), QStringLiteral("b.gif"),  QStringLiteral("c.jpg"),
                            QStringLiteral("d.bmp"), QStringLiteral("e.tiff"), QStringLiteral("f.pdf"),
                            QStringLiteral("g.png"), QStringLiteral("h.pdf")};
    for (qsizetype i = 1; i < chain.size(); ++i) {
        SCOPED_TRACE(chain.at(i).toStdString());
        const QString from = dir.filePath(chain.at(i - 1)), to = dir.filePath(chain.at(i));
        const auto result = runCli({QStringLiteral("rename"), from, to});
        ASSERT_EQ(result.exitCode, 0) << result.err.constData();
        EXPECT_FALSE(QFileInfo::exists(from));
        if (!to.endsWith(QLatin1String(".pdf"))) {
            const QImage written(to);
            ASSERT_EQ(written.size(), QSize(30, 20));
            EXPECT_NEAR(qGreen(written.pixel(15, 10)), 200, 8);
        }
    }
    const QString disguised = dir.filePath(QStringLiteral("h.png"));
    ASSERT_TRUE(QFile::rename(dir.filePath(QStringLiteral("h.pdf")), disguised));
    const auto result = runCli({QStringLiteral("rename"), disguised, dir.filePath(QStringLiteral("i.jpg"))});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_EQ(QImage(dir.filePath(QStringLiteral("i.jpg"))).size(), QSize(30, 20));
}

} // namespace
