// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "../core/CapturingLogger.h"
#include "WindowTestSupport.h"
#include "app/FolderShortcuts.h"
#include "core/AppUserDefaults.h"
#include "core/FileFormat.h"
#include "foundation/PreferenceKeys.h"
#include "platform/FileAttributes.h"

#include <QComboBox>
#include <QImageReader>
#include <QLineEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>
#include <gtest/gtest.h>

using namespace corvex::test;

namespace {

int formatIndex(const QString &uti)
{
    const auto &formats = FileFormat::allFileFormats();
    for (int i = 0; i < formats.size(); ++i) {
        if (formats.at(i)->uti() == uti)
            return i;
    }
    return -1;
}

QString trashedCopy(const QString &name)
{
    return home() + QStringLiteral("/.local/share/Trash/files/") + name;
}

} // namespace

class CorvexWindowRenameTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        clearWindowPreferences();
        mFolder = folder(QStringLiteral("Rename%1").arg(++sCount));
        mPath = writeImage(mFolder + QStringLiteral("/Shot.png"));
    }
    void TearDown() override { clearWindowPreferences(); }

    // Types the name into the field and presses Return, as a user does.
    void typeAndRename(CorvexWindowController &controller, const QString &name)
    {
        QLineEdit *field = controller.nameTextField();
        field->selectAll();
        QTest::keyClicks(field, name);
        QTest::keyClick(field, Qt::Key_Return);
    }

    static inline int sCount = 0;
    QString mFolder;
    QString mPath;
};

TEST_F(CorvexWindowRenameTest, KeyboardRenameMovesTheFileClosesAndRemembersTheFolder)
{
    UserDefaults::standardUserDefaults().setBool(true, QStringLiteral("hideExtension"));
    const QString target = folder(QStringLiteral("Target"));
    auto controller = openWindow(mPath);
    controller->setWhere(target);
    typeAndRename(*controller, QStringLiteral("a/b.png"));
    const QString renamed = target + QStringLiteral("/a:b.png");
    EXPECT_TRUE(QFileInfo::exists(renamed)) << "a slash is stored as a colon";
    EXPECT_FALSE(QFileInfo::exists(mPath));
    EXPECT_FALSE(controller->window()->isVisible());
    EXPECT_TRUE(
        FileAttributes::attributesOfItemAtPath(renamed).value(FileAttributes::ExtensionHiddenKey).toBool());
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("lastSaveDirectory")), target);
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("lastFileFormatExtension")), QStringLiteral("png"));

    defaults.setBool(false, QStringLiteral("hideExtension"));
    const QString second = writeImage(mFolder + QStringLiteral("/Second.png"));
    auto next = openWindow(second);
    typeAndRename(*next, QStringLiteral("Plain.png"));
    EXPECT_FALSE(FileAttributes::attributesOfItemAtPath(mFolder + QStringLiteral("/Plain.png"))
                     .value(FileAttributes::ExtensionHiddenKey)
                     .toBool());
}

TEST_F(CorvexWindowRenameTest, ExtensionMismatchAlertAnswers)
{
    auto controller = openWindow(mPath);
    typeAndRename(*controller, QStringLiteral("Shot.jpg"));
    QZAlert *sheet = waitForSheet(*controller);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->messageText(),
              QStringLiteral("You cannot save this document with extension “.jpg” at the end of "
                             "the name.  The required extension is “.png”."));
    EXPECT_EQ(sheet->informativeText(),
              QStringLiteral("You can choose to use both, so that your file name ends in “.jpg.png”."));
    ASSERT_EQ(sheet->buttons().size(), 3);
    EXPECT_EQ(sheet->buttons().at(0)->text(), QStringLiteral("Use .png"));
    EXPECT_EQ(sheet->buttons().at(1)->text(), QStringLiteral("Cancel"));
    EXPECT_EQ(sheet->buttons().at(2)->text(), QStringLiteral("Use both"));
    answerSheet(sheet, QStringLiteral("Cancel"));
    EXPECT_EQ(controller->nameTextField()->selectedText(), QStringLiteral("Shot"));
    EXPECT_TRUE(QFileInfo::exists(mPath));

    QTest::keyClick(controller->nameTextField(), Qt::Key_Return);
    answerSheet(waitForSheet(*controller), QStringLiteral("Use both"));
    ASSERT_TRUE(waitUntil([&] { return QFileInfo::exists(mFolder + QStringLiteral("/Shot.jpg.png")); }));

    const QString second = writeImage(mFolder + QStringLiteral("/Two.png"));
    auto other = openWindow(second);
    typeAndRename(*other, QStringLiteral("Other.gif"));
    answerSheet(waitForSheet(*other), QStringLiteral("Use .png"));
    ASSERT_TRUE(waitUntil([&] { return QFileInfo::exists(mFolder + QStringLiteral("/Other.png")); }));
    EXPECT_FALSE(QFileInfo::exists(second));
}

TEST_F(CorvexWindowRenameTest, ReplacingTheFileWithItselfKeepsIt)
{
    LogCapture log;
    auto controller = openWindow(mPath);
    controller->rename();
    EXPECT_TRUE(log.messages(DDLogFlagError)
                    .contains(QStringLiteral(" *** can't rename a file to the same name ***")));
    QZAlert *sheet = waitForSheet(*controller);
    ASSERT_NE(sheet, nullptr);
    answerSheet(sheet, QStringLiteral("Replace"));
    ASSERT_TRUE(waitUntil([&] { return !controller->window()->isVisible(); }));
    EXPECT_TRUE(QFileInfo::exists(mPath)) << "the screenshot is never deleted to make room for itself";
}

TEST_F(CorvexWindowRenameTest, ExtensionsAreCompletedAndTheFormatPopupRewritesThem)
{
    auto controller = openWindow(mPath);
    controller->nameTextField()->setText(QStringLiteral("Shot.final"));
    EXPECT_TRUE(controller->ensureExtensionMatchesCurrentFormatExcludingOthers(true));
    EXPECT_EQ(controller->nameTextField()->text(), QStringLiteral("Shot.final.png"));
    controller->nameTextField()->setText(QStringLiteral("Shot.PNG"));
    EXPECT_TRUE(controller->ensureExtensionMatchesCurrentFormatExcludingOthers(true));
    EXPECT_EQ(controller->nameTextField()->text(), QStringLiteral("Shot.PNG"));
    controller->nameTextField()->setText(QString());
    EXPECT_FALSE(controller->ensureExtensionMatchesCurrentFormatExcludingOthers(true));

    controller->nameTextField()->setText(QStringLiteral("Shot.png"));
    controller->formatPopupButton()->setCurrentIndex(formatIndex(FileFormat::JPEGType));
    controller->formatAction();
    EXPECT_EQ(controller->nameTextField()->text(), QStringLiteral("Shot.jpg"));
    EXPECT_EQ(controller->nameTextField()->selectedText(), QStringLiteral("Shot"));
    EXPECT_TRUE(controller->renameButton()->isEnabled());
}

TEST_F(CorvexWindowRenameTest, ConvertingToAnotherFormatTrashesTheOriginal)
{
    auto controller = openWindow(mPath);
    controller->formatPopupButton()->setCurrentIndex(formatIndex(FileFormat::JPEGType));
    controller->formatAction();
    QTest::keyClick(controller->nameTextField(), Qt::Key_Return);
    const QString converted = mFolder + QStringLiteral("/Shot.jpg");
    ASSERT_TRUE(QFileInfo::exists(converted));
    EXPECT_EQ(QImageReader(converted).format(), QByteArray("jpeg"));
    EXPECT_EQ(QImageReader(converted).size(), QSize(200, 100));
    EXPECT_FALSE(QFileInfo::exists(mPath));
    EXPECT_TRUE(QFileInfo::exists(trashedCopy(QStringLiteral("Shot.png")))) << "the original is in the Trash";
    EXPECT_FALSE(controller->window()->isVisible());
}

TEST_F(CorvexWindowRenameTest, MissingOrPlainFileDestinationsFallBackToTheCurrentFolder)
{
    LogCapture log;
    const QString vanished = home() + QStringLiteral("/Vanished/Deeper");
    auto controller = openWindow(mPath);
    controller->setWhere(vanished);
    typeAndRename(*controller, QStringLiteral("Fallback.png"));
    EXPECT_TRUE(QFileInfo::exists(mFolder + QStringLiteral("/Fallback.png")));
    EXPECT_TRUE(QFileInfo(vanished).isDir()) << "the folder is created again";
    const QStringList errors = log.messages(DDLogFlagError);
    EXPECT_TRUE(errors.contains(QStringLiteral("Destination \"%1\" is not a folder.").arg(mFolder)));
    EXPECT_TRUE(errors.filter(QStringLiteral("Can't create destination folder")).isEmpty());

    log.clear();
    const QString plainFile = writeFile(home() + QStringLiteral("/NotAFolder"), "x");
    const QString second = writeImage(mFolder + QStringLiteral("/Second.png"));
    auto next = openWindow(second);
    next->setWhere(plainFile);
    typeAndRename(*next, QStringLiteral("Beside.png"));
    EXPECT_TRUE(QFileInfo::exists(mFolder + QStringLiteral("/Beside.png")));
    EXPECT_EQ(log.messages(DDLogFlagError).filter(QStringLiteral("is not a folder")).size(), 1);

    log.clear();
    const QString third = writeImage(mFolder + QStringLiteral("/Third.png"));
    auto last = openWindow(third);
    last->setWhere(plainFile + QStringLiteral("/inside"));
    typeAndRename(*last, QStringLiteral("Third renamed.png"));
    EXPECT_TRUE(QFileInfo::exists(mFolder + QStringLiteral("/Third renamed.png")));
    EXPECT_EQ(log.messages(DDLogFlagError)
                  .filter(QStringLiteral("Can't create destination folder \"") + plainFile +
                          QStringLiteral("/inside\": "))
                  .size(),
              1);
    EXPECT_EQ(log.messages(DDLogFlagError).filter(QStringLiteral("is not a folder")).size(), 1);
}

TEST_F(CorvexWindowRenameTest, ReplaceConfirmationTakesCtrlRAndReturnOrEscapeCancel)
{
    const QString existing = writeImage(mFolder + QStringLiteral("/Taken.png"), QSize(10, 10), Qt::green);
    auto controller = openWindow(mPath);
    typeAndRename(*controller, QStringLiteral("Taken.png"));
    QZAlert *sheet = waitForSheet(*controller);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->messageText(), QStringLiteral("“Taken.png” already exists. Do you want to replace it?"));
    EXPECT_EQ(sheet->informativeText(),
              QStringLiteral(
                  "A file or folder with the same name already exists in the folder %1. Replacing it will "
                  "overwrite its current contents.")
                  .arg(QFileInfo(mFolder).fileName()));
    EXPECT_EQ(sheet->icon(), QMessageBox::Warning) << "a question, not an error";
    QTest::keyClick(sheet->buttons().at(0), Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return QZAlert::sheetOfWindow(controller->window()) == nullptr; }));
    EXPECT_EQ(QImageReader(existing).size(), QSize(10, 10)) << "Return cancels";

    QTest::keyClick(controller->nameTextField(), Qt::Key_Return);
    sheet = waitForSheet(*controller);
    QTest::keyClick(sheet->buttons().at(0), Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return QZAlert::sheetOfWindow(controller->window()) == nullptr; }));
    QTest::keyClick(controller->nameTextField(), Qt::Key_Return);
    sheet = waitForSheet(*controller);
    QTest::keyClick(sheet->buttons().at(1), Qt::Key_Period, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return QZAlert::sheetOfWindow(controller->window()) == nullptr; }));
    EXPECT_TRUE(QFileInfo::exists(mPath));

    QTest::keyClick(controller->nameTextField(), Qt::Key_Return);
    sheet = waitForSheet(*controller);
    QTest::keyClick(sheet->buttons().at(1), Qt::Key_R, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return !QFileInfo::exists(mPath); }));
    EXPECT_EQ(QImageReader(existing).size(), QSize(200, 100)) << "replaced by the screenshot";
    EXPECT_FALSE(controller->window()->isVisible());
}

TEST_F(CorvexWindowRenameTest, ReplacingOnTheDesktopSaysSo)
{
    const QString desktop = FolderShortcuts::desktopFolder();
    QDir().mkpath(desktop);
    writeImage(desktop + QStringLiteral("/Taken.png"));
    auto controller = openWindow(mPath);
    controller->setWhere(desktop);
    typeAndRename(*controller, QStringLiteral("Taken.png"));
    QZAlert *sheet = waitForSheet(*controller);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(
        sheet->informativeText(),
        QStringLiteral("A file or folder with the same name already exists on the %1. Replacing it will "
                       "overwrite its current contents.")
            .arg(QFileInfo(desktop).fileName()));
    answerSheet(sheet, QStringLiteral("Cancel"));
}

TEST_F(CorvexWindowRenameTest, AFailedConversionIsPresentedAndClosesTheWindowKeepingTheFile)
{
    const QString text = writeFile(mFolder + QStringLiteral("/Broken.png"), "not a picture at all");
    LogCapture log;
    auto controller = openWindow(text);
    controller->formatPopupButton()->setCurrentIndex(formatIndex(FileFormat::JPEGType));
    controller->formatAction();
    QTest::keyClick(controller->nameTextField(), Qt::Key_Return);
    QZAlert *sheet = waitForSheet(*controller);
    ASSERT_NE(sheet, nullptr);
    EXPECT_FALSE(sheet->messageText().isEmpty());
    EXPECT_EQ(log.messages(DDLogFlagError)
                  .filter(QStringLiteral("Could not rename/reformat item.  domain:"))
                  .size(),
              1);
    sheet->buttons().first()->click();
    ASSERT_TRUE(waitUntil([&] { return !controller->window()->isVisible(); }));
    EXPECT_TRUE(log.messages().contains(
        QStringLiteral("Closing the renaming window as there is no recovery from this error.")));
    EXPECT_TRUE(QFileInfo::exists(text) || QFileInfo::exists(trashedCopy(QStringLiteral("Broken.png"))))
        << "the file is never lost";
}

TEST_F(CorvexWindowRenameTest, RememberedValuesThatRepeatTheScreenshotSettingsAreRemoved)
{
    auto screencapture =
        AppUserDefaults::userDefaultsWithBundleIdentifier(QStringLiteral("com.apple.screencapture"));
    screencapture->setObject(mFolder, QStringLiteral("location"));
    screencapture->setObject(QStringLiteral("png"), QStringLiteral("type"));
    AppUserDefaults::sharedScreencaptureDefaults().synchronize();
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setObject(QStringLiteral("/old"), QStringLiteral("lastSaveDirectory"));
    defaults.setObject(QStringLiteral("gif"), QStringLiteral("lastFileFormatExtension"));
    auto controller = openWindow(mPath);
    controller->saveLastDirectoryAndExtension(mFolder + QStringLiteral("/New.png"));
    EXPECT_FALSE(defaults.objectForKey(QStringLiteral("lastSaveDirectory")).isValid());
    EXPECT_FALSE(defaults.objectForKey(QStringLiteral("lastFileFormatExtension")).isValid());
    controller->saveLastDirectoryAndExtension(home() + QStringLiteral("/New.PNG"));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("lastSaveDirectory")), home());
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("lastFileFormatExtension")), QStringLiteral("PNG"))
        << "the type is compared exactly";
    screencapture->removeObjectForKey(QStringLiteral("location"));
    screencapture->removeObjectForKey(QStringLiteral("type"));
}

TEST_F(CorvexWindowRenameTest, MoveToTrashTrashesOrPresentsTheError)
{
    auto controller = openWindow(mPath);
    QTest::mouseClick(controller->moveToTrashButton(), Qt::LeftButton);
    EXPECT_FALSE(QFileInfo::exists(mPath));
    EXPECT_TRUE(QFileInfo::exists(trashedCopy(QStringLiteral("Shot.png"))) ||
                QFileInfo::exists(trashedCopy(QStringLiteral("Shot.2.png"))));
    EXPECT_FALSE(controller->window()->isVisible());

    const QString doomed = writeImage(mFolder + QStringLiteral("/Doomed.png"));
    LogCapture log;
    auto other = openWindow(ScreenshotInfo::initWithNotificationDictionary(
        {{QStringLiteral("filePath"), doomed}, {QStringLiteral("screenNum"), 1}}));
    ASSERT_TRUE(QFile::remove(doomed));
    spin(std::chrono::milliseconds(100));
    other->moveToTrash();
    QZAlert *sheet = waitForSheet(*other);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(
        log.messages(DDLogFlagError).filter(QStringLiteral(" *** Move to Trash failed with error ")).size(),
        1);
    sheet->buttons().first()->click();
    EXPECT_TRUE(waitUntil([&] { return !other->window()->isVisible(); }));
}

TEST_F(CorvexWindowRenameTest, OpenWithNoStoredApplicationUsesTheDesktopDefaultForTheType)
{
    // A desktop application that notes the file it was started with, the default for PNG pictures.
    const QString marker = home() + QStringLiteral("/opened.txt");
    writeFile(home() + QStringLiteral("/.local/share/applications/org.example.Noter.desktop"),
              QStringLiteral("[Desktop Entry]\nType=Application\nName=Noter\nMimeType=image/png;\n"
                             "Exec=sh -c 'printf %%s \"$1\" > \"%1\"' sh %f\n")
                  .arg(marker)
                  .toUtf8());
    writeFile(home() + QStringLiteral("/.config/mimeapps.list"),
              "[Default Applications]\nimage/png=org.example.Noter.desktop\n");
    AppUserDefaults &shared = AppUserDefaults::sharedCorvexDefaults();
    shared.setBool(true, kOpenWithKey);
    shared.setBool(true, kShowCorvexWindowKey);
    shared.setObject(QVariant(), kOpenWithBundleIdentifierKey);
    shared.synchronize();

    auto controller = openWindow(mPath);
    typeAndRename(*controller, QStringLiteral("Opened.png"));
    const QString renamed = mFolder + QStringLiteral("/Opened.png");
    ASSERT_TRUE(waitUntil([&] { return QFileInfo::exists(marker) && QFileInfo(marker).size() > 0; }));
    QFile noted(marker);
    ASSERT_TRUE(noted.open(QIODevice::ReadOnly));
    EXPECT_EQ(QString::fromUtf8(noted.readAll()), renamed);
    shared.setBool(false, kOpenWithKey);
    shared.synchronize();
}
