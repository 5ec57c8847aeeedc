// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// `corvex name` and `corvex version-compare`, run as the real program.
#include "TestSupport.h"
#include "core/AppUserDefaults.h"

#include <QImage>
#include <gtest/gtest.h>

namespace {

using corvex::test::home;
using corvex::test::ProcessResult;
using corvex::test::runCli;
using corvex::test::writeFile;

AppUserDefaults &defaults()
{
    return AppUserDefaults::sharedCorvexDefaults();
}

TEST(NameCommandTest, PrintsTheNameAndAdvancesTheCounter)
{
    // 600 x 400 pixels at 144 dpi: 300 x 200 points.
    QImage image(600, 400, QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setDotsPerMeterX(5669);
    image.setDotsPerMeterY(5669);
    const QString shot = home() + "/name-shot.png";
    ASSERT_TRUE(image.save(shot));
    defaults().setObject("$Counter3$:_:$Counter1$:_:$Dimensions2$:_:a/b", "autoRenameFormat");
    defaults().setInteger(41, "autoRenameCount");

    ProcessResult result = runCli({"name", shot});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_EQ(result.out, "042_43_300 x 200_a:b\n");
    defaults().synchronize();
    EXPECT_EQ(defaults().integerForKey("autoRenameCount"), 43);

    // The format given decides how the file is measured: as a PDF it cannot be read.
    result = runCli({"name", shot, "PDF"});
    EXPECT_EQ(result.out, "044_45_0 x 0_a:b\n");
}

TEST(NameCommandTest, BadInput)
{
    const QString file = writeFile(home() + "/name-file.xyz", "x");
    defaults().setObject("Shot", "autoRenameFormat");
    ProcessResult result = runCli({"name", file});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_EQ(result.err,
              "corvex: unknown image format extension 'xyz' (known: gif, jpg, jpeg, jpe, bmp, pdf, png, "
              "tiff, tif)\n");
    result = runCli({"name", file, "png"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "Shot\n");
    result = runCli({"name", home() + "/missing.png"});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.out.isEmpty());
    result = runCli({"name"});
    EXPECT_NE(result.exitCode, 0);

    defaults().removeObjectForKey("autoRenameFormat");
    result = runCli({"name", file, "png"});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.contains("no renaming pattern")) << result.err.constData();
}

TEST(VersionCompareCommandTest, PrintsTheOrdering)
{
    EXPECT_EQ(runCli({"version-compare", "1.0", "1.0b"}).out, "1\n");
    EXPECT_EQ(runCli({"version-compare", "2.0.9", "2.0.10"}).out, "-1\n");
    EXPECT_EQ(runCli({"version-compare", "2.0.5", "2.0.5"}).out, "0\n");
    const ProcessResult bad = runCli({"version-compare", "1.0"});
    EXPECT_NE(bad.exitCode, 0);
    EXPECT_TRUE(bad.out.isEmpty());
    EXPECT_TRUE(bad.err.startsWith("corvex: version-compare needs exactly two versions"));
}

} // namespace
