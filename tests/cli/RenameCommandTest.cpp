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

using corvex::test::readFile;
using corvex::test::runCli;

class RenameCommandTest : public testing::Test
{
protected:
    // A green picture of 30 x 20 pixels saved under the name.
    QString picture(const QString &name)
    {
        QImage image(30, 20, QImage::Format_RGB32);
        image.fill(qRgb(10, 200, 30));
        EXPECT_TRUE(image.save(path(name)));
        return path(name);
    }
    QString path(const QString &name) const { return mDir.filePath(name); }

    QTemporaryDir mDir;
};

TEST_F(RenameCommandTest, ConvertsAndReportsFailures)
{
    const QString source = picture(u"shot.png"_s);
    const QString destination = path(u"shot.TIF"_s);
    auto result = runCli({u"rename"_s, source, destination});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_EQ(QImage(destination).size(), QSize(30, 20));
    EXPECT_FALSE(QFileInfo::exists(source));

    result = runCli({u"rename"_s, destination, path(u"shot.webp"_s)});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.contains("unknown image extension 'webp'")) << result.err.constData();
    EXPECT_TRUE(result.err.contains("gif, jpg, jpeg, jpe, bmp, pdf, png, tiff, tif"));
    EXPECT_TRUE(QFileInfo::exists(destination));

    result = runCli({u"rename"_s, path(u"gone.png"_s), path(u"gone.jpg"_s)});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.contains("gone.png")) << result.err.constData();

    result = runCli({u"rename"_s, destination});
    EXPECT_NE(result.exitCode, 0);
}

TEST_F(RenameCommandTest, AFileInTheWayIsReplacedOnlyWhenAskedTo)
{
    for (const QString &target : {u"in the way.jpg"_s, u"in the way.png"_s}) {
        SCOPED_TRACE(target.toStdString());
        const QString source = picture(u"shot.png"_s), destination = path(target);
        corvex::test::writeFile(destination, "older file");
        auto result = runCli({u"rename"_s, source, destination});
        EXPECT_NE(result.exitCode, 0);
        EXPECT_TRUE(result.err.contains("already exists (give --replace to replace it)"))
            << result.err.constData();
        EXPECT_EQ(readFile(destination), "older file");
        EXPECT_TRUE(QFileInfo::exists(source));

        result = runCli({u"rename"_s, u"--replace"_s, source, destination});
        EXPECT_EQ(result.exitCode, 0) << result.err.constData();
        EXPECT_EQ(QImage(destination).size(), QSize(30, 20));
        EXPECT_FALSE(QFileInfo::exists(source));
    }
    // The file a move replaced is in the Trash.
    EXPECT_EQ(readFile(corvex::test::home() + u"/.local/share/Trash/files/in the way.png"_s), "older file");
}

// Bitmaps are converted without a GUI application, PDF pages with one and with the PDF module; a PDF under a
// bitmap's name is still rendered as a PDF.
TEST_F(RenameCommandTest, PDFsNeedTheirModuleAndBitmapsDoNot)
{
    const QString pdf = path(u"b.pdf"_s);
    auto result = runCli({u"rename"_s, picture(u"a.png"_s), pdf});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    const QString disguised = path(u"disguised.png"_s), spare = path(u"spare.pdf"_s);
    ASSERT_TRUE(QFile::copy(pdf, disguised));
    ASSERT_TRUE(QFile::copy(pdf, spare));

    // A copy of the program outside any bundle compares versions, but has no other command without that
    // command's module; with it and without the PDF module, only PDFs fail.
    const QString program = path(u"bin/corvex"_s);
    ASSERT_TRUE(QDir().mkpath(path(u"bin"_s)) && QDir().mkpath(path(u"PlugIns"_s)));
    ASSERT_TRUE(QFile::copy(QStringLiteral(CORVEX_CLI_PATH), program));
    result = corvex::test::run(program, {u"version-compare"_s, u"1.0b"_s, u"1.0"_s});
    EXPECT_EQ(result.out, "-1\n");
    result = corvex::test::run(program, {u"rename"_s, u"--help"_s});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.out.startsWith("usage: corvex rename [--replace] SOURCE DESTINATION\n"));
    result = corvex::test::run(program, {u"rename"_s, picture(u"g.png"_s), path(u"never.jpg"_s)});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "corvex: the rename command is not installed: there is no libcorvex_command_rename.so "
              "in the PlugIns folder of Corvex.app\n");
    ASSERT_TRUE(QFile::copy(QStringLiteral(CORVEX_BUNDLE_DIR "/Contents/PlugIns/libcorvex_command_rename.so"),
                            path(u"PlugIns/libcorvex_command_rename.so"_s)));
    result = corvex::test::run(program, {u"rename"_s, spare, path(u"never.png"_s)});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.contains("PDF support is not installed: there is no libcorvex_pdf.so"))
        << result.err.constData();
    result = corvex::test::run(program, {u"rename"_s, picture(u"d.png"_s), path(u"e.jpg"_s)});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();

    for (const auto &[from, to] :
         {std::pair{pdf, path(u"c.png"_s)}, std::pair{disguised, path(u"f.jpg"_s)}}) {
        SCOPED_TRACE(to.toStdString());
        result = runCli({u"rename"_s, from, to});
        ASSERT_EQ(result.exitCode, 0) << result.err.constData();
        const QImage written(to); // as large as the page is in points
        ASSERT_FALSE(written.isNull());
        EXPECT_NEAR(qGreen(written.pixel(written.width() / 2, written.height() / 2)), 200, 8);
    }
}

} // namespace
