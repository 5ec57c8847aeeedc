// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Processor.h"
#include "../core/CapturingLogger.h"
#include "TestSupport.h"
#include "core/AppUserDefaults.h"
#include "core/FileFormat.h"
#include "core/ImageIODestination.h"
#include "core/ScreenshotInfo.h"
#include "platform/PreferenceStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::home;
using corvex::test::waitUntil;
using corvex::test::writeFile;

const QString kWillPresent = u"Will present screenshot in Corvex window because no other options are on"_s;

AppUserDefaults &defaults()
{
    return AppUserDefaults::sharedCorvexDefaults();
}

Processor &processor()
{
    return Processor::sharedProcessor();
}

const FileFormat *format(const char *extension)
{
    return qzFileFormatForExtension(FileFormat::allFileFormats(), QString::fromLatin1(extension));
}

void clearSettings()
{
    for (const char *key : {"autoRename", "autoRenameFormat", "autoRenameCount", "autoReformat", "autoMove",
                            "openWith", "openWithBundleIdentifier", "showCorvexWindow"})
        defaults().removeObjectForKey(QString::fromLatin1(key));
}

// One row of the decision table: the switches and what the four predicates answer.
struct Row
{
    const char *label;
    bool showWindow, rename, reformat, move, openWith;
    const char *identifier; // nullptr: never stored
    bool needs, show, app, agent, logged;
};

class ProcessorDecisionTest : public testing::TestWithParam<Row>
{
protected:
    void SetUp() override { clearSettings(); }
};

TEST_P(ProcessorDecisionTest, Predicates)
{
    const Row &row = GetParam();
    defaults().setBool(row.showWindow, "showCorvexWindow");
    defaults().setBool(row.rename, "autoRename");
    defaults().setBool(row.reformat, "autoReformat");
    defaults().setBool(row.move, "autoMove");
    defaults().setBool(row.openWith, "openWith");
    if (row.identifier)
        defaults().setObject(QString::fromLatin1(row.identifier), "openWithBundleIdentifier");

    LogCapture capture;
    EXPECT_EQ(processor().needsAutomaticProcessing(), row.needs);
    EXPECT_EQ(processor().appHandlesOpenWith(), row.app);
    EXPECT_EQ(processor().agentHandlesOpenWith(), row.agent);
    EXPECT_EQ(processor().shouldShowCorvexWindow(), row.show);
    EXPECT_EQ(processor().shouldShowCorvexWindow(), row.show);
    // The information line comes once per call of shouldShowCorvexWindow, only when nothing else is on.
    EXPECT_EQ(capture.messages(DDLogFlagInfo).count(kWillPresent), row.logged ? 2 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    DecisionTable, ProcessorDecisionTest,
    testing::Values(
        // W, R, F, M, O, identifier -> needs, show, app, agent, logged
        Row{"WindowRenameOpen", true, true, false, false, true, "org.gnome.Loupe", true, true, true, false,
            false},
        Row{"WindowOpenOnly", true, false, false, false, true, "org.gnome.Loupe", false, true, true, false,
            false},
        Row{"WindowReformat", true, false, true, false, false, nullptr, true, true, false, false, false},
        Row{"WindowOnly", true, false, false, false, false, nullptr, false, true, false, false, false},
        Row{"MoveAndOpen", false, false, false, true, true, "org.gnome.Loupe", true, false, false, true,
            false},
        Row{"RenameAndOpenInTextEdit", false, true, false, false, true, "com.apple.TextEdit", true, false,
            false, false, false},
        Row{"RenameOnly", false, true, false, false, false, nullptr, true, false, false, false, false},
        Row{"OpenOnly", false, false, false, false, true, "com.apple.Preview", true, false, false, true,
            false},
        Row{"OpenOnlyNoIdentifier", false, false, false, false, true, nullptr, true, false, false, true,
            false},
        // Left untouched and not shown, on purpose.
        Row{"OpenOnlyInTextEdit", false, false, false, false, true, "com.apple.TextEdit", false, false, false,
            false, false},
        Row{"OpenOnlyInCorvex", false, false, false, false, true, "com.ostrel.Corvex", false, false, false,
            false, false},
        Row{"NothingOn", false, false, false, false, false, "com.apple.Preview", false, true, false, false,
            true}),
    [](const testing::TestParamInfo<Row> &param) { return std::string(param.param.label); });

class ProcessorTest : public testing::Test
{
protected:
    void SetUp() override { clearSettings(); }
};

TEST_F(ProcessorTest, NeedsAutomaticProcessingSeesAnotherProcessesWrite)
{
    EXPECT_FALSE(processor().needsAutomaticProcessing());
    // Another process: its own view of the same files.
    PreferenceStore otherStore(PreferenceStore::defaultDirectory());
    AppUserDefaults other(kCorvexDomain, otherStore);
    other.setBool(true, "autoMove");
    EXPECT_TRUE(processor().needsAutomaticProcessing());
    other.setBool(false, "autoMove");
    EXPECT_FALSE(processor().needsAutomaticProcessing());
}

ScreenshotInfo infoCreatedAt(const QString &path, const QDateTime &created)
{
    return ScreenshotInfo::initWithNotificationDictionary(
        {{"filePath", path},
         {"screenNum", 1},
         {"fileAttributes", QVariantMap{{"NSFileCreationDate", created}}}});
}

TEST_F(ProcessorTest, NamesFromTheStoredPattern)
{
    const ScreenshotInfo info =
        infoCreatedAt(home() + "/shot.png", QDateTime(QDate(2013, 3, 5), QTime(9, 7, 3)));
    defaults().setObject("Shot:$DateYYYY$:-:$DateMM$:-:$DateDD$", "autoRenameFormat");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(info, format("png")), "Shot2013-03-05");
    // A record without attributes is named from the current date.
    const ScreenshotInfo bare(home() + "/does-not-exist.png", 1);
    ASSERT_FALSE(bare.fileAttributes());
    defaults().setObject("Shot :$DateYYYY$", "autoRenameFormat");
    const int year = QDate::currentDate().year();
    const QString name = processor().fileNameByAutomaticRenamingFromInfo(bare, format("png"));
    EXPECT_TRUE(name == u"Shot %1"_s.arg(year) || name == u"Shot %1"_s.arg(year + 1)) << name.toStdString();
    defaults().removeObjectForKey("autoRenameFormat");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(info, format("png")), "");
}

TEST_F(ProcessorTest, CounterIsStoredAndSynchronisedAtOnce)
{
    const ScreenshotInfo info = infoCreatedAt(home() + "/shot.png", QDateTime::currentDateTime());
    defaults().setObject("$Counter3$:_:$Counter1$", "autoRenameFormat");
    defaults().setInteger(41, "autoRenameCount");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(info, format("png")), "042_43");
    EXPECT_EQ(defaults().integerForKey("autoRenameCount"), 43);

    // Already on disk for another process.
    PreferenceStore otherStore(PreferenceStore::defaultDirectory());
    AppUserDefaults other(kCorvexDomain, otherStore);
    EXPECT_EQ(other.integerForKey("autoRenameCount"), 43);

    // The other process's counter value is the one advanced next.
    other.setInteger(99, "autoRenameCount");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(info, format("png")), "100_101");

    defaults().setObject("$Counter2$", "autoRenameFormat");
    // A stored count below zero restarts at 1, right at the bound too (-1 + 1 is still below 1).
    for (const int stored : {-5, -1}) {
        defaults().setInteger(stored, "autoRenameCount");
        EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(info, format("png")), "01") << stored;
        EXPECT_EQ(defaults().integerForKey("autoRenameCount"), 1);
    }
    defaults().setInteger(0, "autoRenameCount");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(info, format("png")), "01");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(info, format("png")), "02");
    defaults().removeObjectForKey("autoRenameCount");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(info, format("png")), "01");
    other.synchronize();
    EXPECT_EQ(other.integerForKey("autoRenameCount"), 1);
}

TEST_F(ProcessorTest, DimensionTokens)
{
    // A page of 612 by 792 points: a picture of as many pixels at 72 dpi, written as a PDF.
    QImage letter(612, 792, QImage::Format_RGB32);
    letter.fill(Qt::white);
    letter.setDotsPerMeterX(2835);
    letter.setDotsPerMeterY(2835);
    const QString pdf = home() + "/dims/letter.pdf";
    QDir().mkpath(home() + "/dims");
    auto destination = ImageIODestination::createWithURL(QUrl::fromLocalFile(pdf), FileFormat::PDFType);
    ASSERT_NE(destination, nullptr);
    destination->addImage(letter);
    ASSERT_TRUE(destination->finalize());
    defaults().setObject("$Dimensions2$", "autoRenameFormat");
    const ScreenshotInfo pdfInfo(pdf, 1);
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(pdfInfo, format("pdf")), "612 x 792");

    // A bitmap's size in points: its pixel size scaled by 72 over its stored resolution, truncated.
    QImage image(1440, 900, QImage::Format_RGB32);
    image.fill(Qt::white);
    // Each axis by its own resolution.
    image.setDotsPerMeterX(5669); // 144 dpi
    image.setDotsPerMeterY(3780); // 96.012 dpi: 674.9 points, truncated
    const QString png = home() + "/dims/144.png";
    ASSERT_TRUE(image.save(png));
    defaults().setObject("$Dimensions1$:_:$Dimensions2$", "autoRenameFormat");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(ScreenshotInfo(png, 1), format("png")),
              "720x674_720 x 674");

    // A file that cannot be read as an image measures 0 by 0.
    const QString broken = writeFile(home() + "/dims/broken.png", "not an image");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(ScreenshotInfo(broken, 1), format("png")),
              "0x0_0 x 0");
    LogCapture capture;
    const QString brokenPdf = writeFile(home() + "/dims/broken.pdf", "not a pdf");
    EXPECT_EQ(processor().fileNameByAutomaticRenamingFromInfo(ScreenshotInfo(brokenPdf, 1), format("pdf")),
              "0x0_0 x 0");
    EXPECT_EQ(capture.messages(DDLogFlagError),
              (QStringList{"Could not open PDF document " + brokenPdf,
                           "Could not get first page of PDF " + brokenPdf,
                           "Could not open PDF document " + brokenPdf,
                           "Could not get first page of PDF " + brokenPdf}));
}

// Opening files: desktop entries whose program records what it was asked to open.
class ProcessorOpenTest : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        // Made before GIO first reads the application folders.
        for (const char *name : {"viewer", "editor", "pdfviewer", "other"})
            corvex::test::installRecordingOpener(u"corvex-test-"_s + QLatin1String(name),
                                                 "image/png;text/plain;application/pdf;");
        writeFile(home() + "/.config/mimeapps.list", "[Default Applications]\n"
                                                     "image/png=corvex-test-viewer.desktop\n"
                                                     "text/plain=corvex-test-editor.desktop\n"
                                                     "application/pdf=corvex-test-pdfviewer.desktop\n");
    }

    // The files the application was asked to open.
    static QStringList opened(const char *name)
    {
        return corvex::test::readLines(home() + u"/opened-corvex-test-"_s + QLatin1String(name) + u".txt"_s);
    }

    // Waits for the launched program to record the file.
    static bool waitForOpened(const char *name, const QString &file)
    {
        return waitUntil([&] { return opened(name).contains(file); });
    }
};

TEST_F(ProcessorOpenTest, OpensWithADesktopFileId)
{
    const QString file = writeFile(home() + "/open/one.png", "png");
    LogCapture capture;
    EXPECT_TRUE(processor().openURL(QUrl::fromLocalFile(file), "corvex-test-other"));
    EXPECT_TRUE(waitForOpened("other", file));
    EXPECT_TRUE(processor().openURL(QUrl::fromLocalFile(file), "corvex-test-other.desktop"));
    EXPECT_EQ(capture.messages(DDLogFlagInfo),
              (QStringList{"Opened " + file + " with app identifier corvex-test-other",
                           "Opened " + file + " with app identifier corvex-test-other.desktop"}));
    EXPECT_TRUE(waitUntil([&] { return opened("other").count(file) == 2; }));
}

TEST_F(ProcessorOpenTest, PlatformIdentifiersStandForTheDesktopDefaults)
{
    const QString png = writeFile(home() + "/open/two.png", QByteArray::fromHex("89504e470d0a1a0a"));
    const QString pdf = writeFile(home() + "/open/two.pdf", "%PDF-1.4\n");
    EXPECT_TRUE(processor().openURL(QUrl::fromLocalFile(png), "com.apple.Preview"));
    EXPECT_TRUE(waitForOpened("viewer", png));
    EXPECT_TRUE(processor().openURL(QUrl::fromLocalFile(pdf), "com.apple.Preview"));
    EXPECT_TRUE(waitForOpened("pdfviewer", pdf));
    EXPECT_TRUE(processor().openURL(QUrl::fromLocalFile(png), "com.apple.TextEdit"));
    EXPECT_TRUE(waitForOpened("editor", png));
}

TEST_F(ProcessorOpenTest, FailuresAreLogged)
{
    const QString file = writeFile(home() + "/open/three.png", "png");
    LogCapture capture;
    EXPECT_FALSE(processor().openURL(QUrl::fromLocalFile(file), "org.example.NotInstalled"));
    EXPECT_FALSE(processor().openURL(QUrl::fromLocalFile(home() + "/open/missing.png"), "corvex-test-other"));
    EXPECT_FALSE(processor().openURL(QUrl::fromLocalFile(file), QString()));
    EXPECT_EQ(capture.messages(DDLogFlagError),
              (QStringList{"Could not find app for org.example.NotInstalled or launch it with the file",
                           "Could not find app for corvex-test-other or launch it with the file",
                           "Could not find app for  or launch it with the file"}));
    EXPECT_TRUE(capture.messages(DDLogFlagInfo).isEmpty());
}

} // namespace
