// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// `corvex process`, run as the real program over the shared preferences the test writes.
#include "TestSupport.h"
#include "core/AppUserDefaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::home;
using corvex::test::ProcessResult;
using corvex::test::readFile;
using corvex::test::runCli;
using corvex::test::waitUntil;
using corvex::test::writeFile;

AppUserDefaults &defaults()
{
    return AppUserDefaults::sharedCorvexDefaults();
}

QString trashed(const QString &name)
{
    return home() + "/.local/share/Trash/files/" + name;
}

class ProcessCommandTest : public testing::Test
{
protected:
    // An application that records what it was asked to open.
    static void SetUpTestSuite() { sOpened = corvex::test::installRecordingOpener(u"corvex-test-opener"_s); }

    void SetUp() override
    {
        for (const char *key :
             {"autoRename", "autoRenameFormat", "autoRenameCount", "autoReformat", "autoReformatExtension",
              "autoMove", "autoMoveFolder", "openWith", "openWithBundleIdentifier", "showCorvexWindow"})
            defaults().removeObjectForKey(QString::fromLatin1(key));
        mFolder = home() + u"/shots-%1"_s.arg(++sCount);
        QDir().mkpath(mFolder);
    }

    // A real PNG screenshot of 128 x 96 pixels at 144 dpi: 64 x 48 points.
    QString screenshot(const QString &name)
    {
        QImage image(128, 96, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        image.setDotsPerMeterX(5669);
        image.setDotsPerMeterY(5669);
        const QString path = mFolder + "/" + name;
        EXPECT_TRUE(image.save(path, "PNG"));
        return path;
    }

    // Runs the command; returns the printed path (the last line of its output).
    QString process(const QString &path, int expectedExitCode = 0)
    {
        const ProcessResult result = runCli({"process", path});
        EXPECT_EQ(result.exitCode, expectedExitCode) << result.err.constData();
        mErrors = QString::fromUtf8(result.err);
        defaults().synchronize();
        return QString::fromUtf8(result.out).trimmed();
    }

    static inline QString sOpened;

    QString mFolder;
    QString mErrors;
    static inline int sCount = 0;
};

TEST_F(ProcessCommandTest, NothingOnLeavesTheFileAlone)
{
    const QString shot = screenshot("Screenshot.png");
    const QByteArray before = readFile(shot);
    EXPECT_EQ(process(shot), shot);
    EXPECT_EQ(readFile(shot), before);
    EXPECT_EQ(QDir(mFolder).entryList(QDir::Files | QDir::Hidden), QStringList{"Screenshot.png"});
}

TEST_F(ProcessCommandTest, RenameByPatternInTheSameFolder)
{
    defaults().setBool(true, "autoRename");
    defaults().setObject("Shot :$Counter2$:_:$Dimensions1$", "autoRenameFormat");
    defaults().setInteger(41, "autoRenameCount");
    const QString shot = screenshot("Screenshot.png");
    const QByteArray before = readFile(shot);

    EXPECT_EQ(process(shot), mFolder + "/Shot 42_64x48.png");
    EXPECT_EQ(readFile(mFolder + "/Shot 42_64x48.png"), before);
    EXPECT_FALSE(QFileInfo::exists(shot));
    EXPECT_EQ(defaults().integerForKey("autoRenameCount"), 42);

    // A pattern that gives no name: the step fails, the file stays.
    defaults().setObject("::", "autoRenameFormat");
    const QString third = screenshot("Third.png");
    EXPECT_EQ(process(third, 1), third);
    EXPECT_TRUE(mErrors.contains("rename failed")) << mErrors.toStdString();
    EXPECT_TRUE(QFileInfo::exists(third));
}

TEST_F(ProcessCommandTest, ConvertSendsTheSourceToTheTrash)
{
    defaults().setBool(true, "autoReformat");
    defaults().setObject("jpg", "autoReformatExtension");
    const QString shot = screenshot("Convert me.png");
    writeFile(mFolder + "/Convert me.jpg", "an older file");

    const QString result = process(shot);
    EXPECT_EQ(result, mFolder + "/Convert me 2.jpg");
    EXPECT_TRUE(readFile(result).startsWith("\xff\xd8\xff"));
    EXPECT_EQ(QImage(result).size(), QSize(128, 96));
    EXPECT_EQ(readFile(mFolder + "/Convert me.jpg"), "an older file");
    EXPECT_FALSE(QFileInfo::exists(shot));
    EXPECT_TRUE(QFileInfo::exists(trashed("Convert me.png")));
    // No helper file is left behind.
    EXPECT_EQ(QDir(mFolder).entryList(QDir::Files | QDir::Hidden).size(), 2);

    // Already in the target format: nothing to do.
    EXPECT_EQ(process(result), result);
}

TEST_F(ProcessCommandTest, AFailingStepKeepsTheFileAndFailsTheCommand)
{
    defaults().setBool(true, "autoReformat");
    defaults().setObject("tiff", "autoReformatExtension");
    const QString broken = writeFile(mFolder + "/Broken.png", "not an image at all");
    EXPECT_EQ(process(broken, 1), broken);
    EXPECT_TRUE(mErrors.contains("convert failed")) << mErrors.toStdString();
    EXPECT_EQ(readFile(broken), "not an image at all");
    EXPECT_EQ(QDir(mFolder).entryList(QDir::Files | QDir::Hidden), QStringList{"Broken.png"});

    defaults().setObject("webp", "autoReformatExtension");
    const QString shot = screenshot("Unknown target.png");
    EXPECT_EQ(process(shot, 1), shot);
    EXPECT_TRUE(mErrors.contains("\"webp\" is not the extension of a known image format"))
        << mErrors.toStdString();
    EXPECT_TRUE(QFileInfo::exists(shot));

    // With the window on the application opens the file, not this step; off, a failure to open fails it.
    defaults().setBool(false, "autoReformat");
    defaults().setBool(true, "openWith");
    defaults().setObject("org.example.NotInstalled", "openWithBundleIdentifier");
    defaults().setBool(true, "showCorvexWindow");
    EXPECT_EQ(process(shot), shot);
    defaults().setBool(false, "showCorvexWindow");
    EXPECT_EQ(process(shot, 1), shot);
    EXPECT_TRUE(mErrors.contains("open failed")) << mErrors.toStdString();
}

TEST_F(ProcessCommandTest, MoveIntoTheChosenFolder)
{
    defaults().setBool(true, "autoMove");
    defaults().setObject("~/Pictures/Sorted/2013", "autoMoveFolder");
    const QString shot = screenshot("Moved.png");
    const QByteArray before = readFile(shot);
    const QString destination = home() + "/Pictures/Sorted/2013/Moved.png";
    EXPECT_EQ(process(shot), destination);
    EXPECT_EQ(readFile(destination), before);
    EXPECT_FALSE(QFileInfo::exists(shot));

    const QString again = screenshot("Moved.png");
    EXPECT_EQ(process(again), home() + "/Pictures/Sorted/2013/Moved 2.png");
    EXPECT_EQ(readFile(destination), before);

    defaults().removeObjectForKey("autoMoveFolder");
    const QString stays = screenshot("Stays.png");
    EXPECT_EQ(process(stays, 1), stays);
    EXPECT_TRUE(mErrors.contains("move failed")) << mErrors.toStdString();
}

TEST_F(ProcessCommandTest, AllStepsInOrder)
{
    defaults().setBool(true, "autoRename");
    defaults().setObject("Shot:$Counter3$", "autoRenameFormat");
    defaults().setBool(true, "autoReformat");
    defaults().setObject("jpeg", "autoReformatExtension");
    defaults().setBool(true, "autoMove");
    defaults().setObject(QString(home() + "/All steps"), "autoMoveFolder");
    defaults().setBool(true, "openWith");
    defaults().setObject("corvex-test-opener.desktop", "openWithBundleIdentifier");
    defaults().setBool(false, "showCorvexWindow");

    const QString shot = screenshot("Screenshot.png");
    const QString expected = home() + "/All steps/Shot001.jpeg";
    EXPECT_EQ(process(shot), expected);
    EXPECT_EQ(QImage(expected).size(), QSize(128, 96));
    EXPECT_TRUE(QFileInfo::exists(trashed("Shot001.png"))) << "renamed before it was converted";
    EXPECT_TRUE(QDir(mFolder).isEmpty(QDir::Files | QDir::Hidden));
    EXPECT_EQ(defaults().integerForKey("autoRenameCount"), 1);
    EXPECT_TRUE(waitUntil([&] { return readFile(sOpened).contains((expected + "\n").toUtf8()); }));
    QFile::remove(sOpened);
}

TEST_F(ProcessCommandTest, BadArguments)
{
    ProcessResult result = runCli({"process"});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.err.startsWith("corvex: process needs exactly one file"));
    result = runCli({"process", home() + "/none.png"});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_EQ(result.err, "corvex: " + (home() + "/none.png: no such file\n").toUtf8());
    result = runCli({"process", mFolder});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_TRUE(result.out.isEmpty());
}

} // namespace
