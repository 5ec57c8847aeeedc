// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::runCli;

TEST(RenameCommand, ConvertsAndReportsFailures)
{
    QTemporaryDir dir;
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(qRgb(10, 200, 30));
    const QString source = dir.filePath(u"shot.png"_s);
    ASSERT_TRUE(image.save(source));

    const QString destination = dir.filePath(u"shot.TIF"_s);
    auto result = runCli({u"rename"_s, source, destination});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_EQ(QImage(destination).size(), QSize(30, 20));
    EXPECT_FALSE(QFileInfo::exists(source));

    result = runCli({u"rename"_s, destination, dir.filePath(u"shot.webp"_s)});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.contains("unknown image extension 'webp'")) << result.err.constData();
    EXPECT_TRUE(result.err.contains("gif, jpg, jpeg, jpe, bmp, pdf, png, tiff, tif"));
    EXPECT_TRUE(QFileInfo::exists(destination));

    result = runCli({u"rename"_s, dir.filePath(u"gone.png"_s), dir.filePath(u"gone.jpg"_s)});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.contains("gone.png")) << result.err.constData();

    result = runCli({u"rename"_s, destination});
    EXPECT_NE(result.exitCode, 0);
}

TEST(RenameCommand, AFileInTheWayIsReplacedOnlyWhenAskedTo)
{
    QTemporaryDir dir;
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(qRgb(10, 200, 30));
    const auto contents = [](const QString &path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    for (const QString &target : {u"in the way.jpg"_s, u"in the way.png"_s}) {
        SCOPED_TRACE(target.toStdString());
        const QString source = dir.filePath(u"shot.png"_s), destination = dir.filePath(target);
        ASSERT_TRUE(image.save(source));
        corvex::test::writeFile(destination, "older file");
        auto result = runCli({u"rename"_s, source, destination});
        EXPECT_NE(result.exitCode, 0);
        EXPECT_TRUE(result.err.contains("already exists (give --replace to replace it)"))
            << result.err.constData();
        EXPECT_EQ(contents(destination), "older file");
        EXPECT_TRUE(QFileInfo::exists(source));

        result = runCli({u"rename"_s, u"--replace"_s, source, destination});
        EXPECT_EQ(result.exitCode, 0) << result.err.constData();
        EXPECT_EQ(QImage(destination).size(), QSize(30, 20));
        EXPECT_FALSE(QFileInfo::exists(source));
    }
    // The file a move replaced is in the Trash.
    EXPECT_EQ(contents(corvex::test::home() + u"/.local/share/Trash/files/in the way.png"_s), "older file");
}

TEST(RenameCommand, WithoutThePDFModuleOnlyPDFsFail)
{
    // A copy of the program outside any bundle finds no PDF module.
    QTemporaryDir dir;
    const QString program = dir.filePath(u"corvex"_s);
    ASSERT_TRUE(QFile::copy(QStringLiteral(CORVEX_CLI_PATH), program));
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(qRgb(10, 200, 30));
    ASSERT_TRUE(image.save(dir.filePath(u"a.png"_s)));
    ASSERT_EQ(runCli({u"rename"_s, dir.filePath(u"a.png"_s), dir.filePath(u"b.pdf"_s)}).exitCode, 0);

    const auto result =
        corvex::test::run(program, {u"rename"_s, dir.filePath(u"b.pdf"_s), dir.filePath(u"c.png"_s)});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.contains("PDF support is not installed: there is no libcorvex_pdf.so"))
        << result.err.constData();
    ASSERT_TRUE(image.save(dir.filePath(u"d.png"_s)));
    const auto bitmap =
        corvex::test::run(program, {u"rename"_s, dir.filePath(u"d.png"_s), dir.filePath(u"e.jpg"_s)});
    EXPECT_EQ(bitmap.exitCode, 0) << bitmap.err.constData();
}

TEST(RenameCommand, ConvertsThroughEveryKindOfStep)
{
    // Bitmaps are converted without a GUI application, PDF pages with one; a PDF under a bitmap's name is
    // still rendered as a PDF.
    QTemporaryDir dir;
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(qRgb(10, 200, 30));
    ASSERT_TRUE(image.save(dir.filePath(u"a.png"_s)));
    const QStringList chain{u"a.png"_s,  u"b.gif"_s, u"c.jpg"_s, u"d.bmp"_s,
                            u"e.tiff"_s, u"f.pdf"_s, u"g.png"_s, u"h.pdf"_s};
    for (qsizetype i = 1; i < chain.size(); ++i) {
        SCOPED_TRACE(chain.at(i).toStdString());
        const QString from = dir.filePath(chain.at(i - 1)), to = dir.filePath(chain.at(i));
        const auto result = runCli({u"rename"_s, from, to});
        ASSERT_EQ(result.exitCode, 0) << result.err.constData();
        EXPECT_FALSE(QFileInfo::exists(from));
        if (!to.endsWith(QLatin1String(".pdf"))) {
            const QImage written(to);
            ASSERT_EQ(written.size(), QSize(30, 20));
            EXPECT_NEAR(qGreen(written.pixel(15, 10)), 200, 8);
        }
    }
    const QString disguised = dir.filePath(u"h.png"_s);
    ASSERT_TRUE(QFile::rename(dir.filePath(u"h.pdf"_s), disguised));
    const auto result = runCli({u"rename"_s, disguised, dir.filePath(u"i.jpg"_s)});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_EQ(QImage(dir.filePath(u"i.jpg"_s)).size(), QSize(30, 20));
}

} // namespace
