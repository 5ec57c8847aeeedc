// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"

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

} // namespace
