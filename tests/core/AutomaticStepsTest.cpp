// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AutomaticSteps.h"
#include "../core/CapturingLogger.h"
#include "TestSupport.h"
#include "core/AppUserDefaults.h"
#include "core/FileFormat.h"
#include "core/ScreenshotInfo.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::home;
using corvex::test::writeFile;

class AutomaticStepsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        for (const char *key :
             {"autoRename", "autoRenameFormat", "autoRenameCount", "autoReformat", "autoReformatExtension",
              "autoMove", "autoMoveFolder", "openWith", "openWithBundleIdentifier", "showCorvexWindow"})
            AppUserDefaults::sharedCorvexDefaults().removeObjectForKey(QString::fromLatin1(key));
        mFolder = home() + u"/steps-%1"_s.arg(++sCount);
        QDir().mkpath(mFolder);
    }

    QString mFolder;
    static inline int sCount = 0;
};

TEST_F(AutomaticStepsTest, AvailablePathNumbersTakenNames)
{
    EXPECT_EQ(AutomaticSteps::availablePath(mFolder, "Shot", "png"), mFolder + "/Shot.png");
    writeFile(mFolder + "/Shot.png", "1");
    EXPECT_EQ(AutomaticSteps::availablePath(mFolder, "Shot", "png"), mFolder + "/Shot 2.png");
    writeFile(mFolder + "/Shot 2.png", "2");
    EXPECT_EQ(AutomaticSteps::availablePath(mFolder, "Shot", "png"), mFolder + "/Shot 3.png");
    // The file's own name counts as free.
    EXPECT_EQ(AutomaticSteps::availablePath(mFolder, "Shot", "png", mFolder + "/Shot.png"),
              mFolder + "/Shot.png");
    // A dangling symbolic link takes its name too.
    QFile::link(mFolder + "/nowhere", mFolder + "/Link.png");
    EXPECT_EQ(AutomaticSteps::availablePath(mFolder, "Link", "png"), mFolder + "/Link 2.png");
    // Without an extension no "." is added; a folder takes its name as well.
    QDir().mkpath(mFolder + "/Plain");
    EXPECT_EQ(AutomaticSteps::availablePath(mFolder, "Plain", QString()), mFolder + "/Plain 2");
}

TEST_F(AutomaticStepsTest, ReportAndRecordFollowTheFile)
{
    AppUserDefaults &defaults = AppUserDefaults::sharedCorvexDefaults();
    defaults.setBool(true, "autoRename");
    defaults.setObject("Renamed", "autoRenameFormat");
    defaults.setBool(true, "autoMove");
    defaults.setObject("~/steps-moved", "autoMoveFolder");
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(mFolder + "/Screenshot.png"));

    LogCapture capture;
    ScreenshotInfo info(mFolder + "/Screenshot.png", 2);
    const AutomaticStepsReport report = AutomaticSteps::applyToScreenshotInfo(info);
    const QString expected = home() + "/steps-moved/Renamed.png";
    EXPECT_EQ(report.filePath, expected);
    EXPECT_EQ(info.filePath(), expected);
    EXPECT_TRUE(report.renamed);
    EXPECT_FALSE(report.converted);
    EXPECT_TRUE(report.moved);
    EXPECT_FALSE(report.opened);
    EXPECT_TRUE(report.failedSteps.isEmpty());
    EXPECT_EQ(capture.messages(DDLogFlagInfo),
              (QStringList{"Renamed " + mFolder + "/Screenshot.png to " + mFolder + "/Renamed.png",
                           "Moved " + mFolder + "/Renamed.png to " + expected}));
}

TEST_F(AutomaticStepsTest, AMissingFileIsReported)
{
    AppUserDefaults::sharedCorvexDefaults().setBool(true, "autoRename");
    LogCapture capture;
    ScreenshotInfo info = ScreenshotInfo::initWithNotificationDictionary(
        QVariantMap{{"filePath", QString(mFolder + "/gone.png")}});
    const AutomaticStepsReport report = AutomaticSteps::applyToScreenshotInfo(info);
    EXPECT_TRUE(report.filePath.isNull());
    EXPECT_EQ(info.filePath(), mFolder + "/gone.png");
    EXPECT_TRUE(capture.messages(DDLogFlagError)
                    .contains("Could not process " + mFolder + "/gone.png because file does not exist"));
    EXPECT_EQ(AppUserDefaults::sharedCorvexDefaults().integerForKey("autoRenameCount"), 0)
        << "no counter is used up for a missing file";
}

} // namespace
