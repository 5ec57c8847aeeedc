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

using namespace Qt::StringLiterals;

using namespace corvex::test;

namespace {

QString trashedCopy(const QString &name)
{
    return home() + u"/.local/share/Trash/files/"_s + name;
}

} // namespace

class CorvexWindowRenameTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        clearWindowPreferences();
        mFolder = folder(u"Rename%1"_s.arg(++sCount));
        mPath = writeImage(mFolder + u"/Shot.png"_s);
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

    // Chooses the format in the window's format popup, as a user does.
    void chooseFormat(CorvexWindowController &controller, const QString &extension)
    {
        const FileFormat *format = qzFileFormatForExtension(FileFormat::allFileFormats(), extension);
        controller.formatPopupButton()->setCurrentIndex(
            controller.formatPopupButton()->findText(format->description()));
        controller.formatAction();
    }

    static inline int sCount = 0;
    QString mFolder;
    QString mPath;
};

TEST_F(CorvexWindowRenameTest, KeyboardRenameMovesTheFileClosesRemembersTheFolderAndOpensTheFile)
{
    UserDefaults::standardUserDefaults().setBool(true, u"hideExtension"_s);
    const QString target = folder(u"Target"_s);
    auto controller = openWindow(mPath);
    controller->setWhere(target);
    typeAndRename(*controller, u"a/b.png"_s);
    const QString renamed = target + u"/a:b.png"_s;
    EXPECT_TRUE(QFileInfo::exists(renamed)) << "a slash is stored as a colon";
    EXPECT_FALSE(QFileInfo::exists(mPath));
    EXPECT_FALSE(controller->window()->isVisible());
    EXPECT_TRUE(
        FileAttributes::attributesOfItemAtPath(renamed).value(FileAttributes::ExtensionHiddenKey).toBool());
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    EXPECT_EQ(defaults.stringForKey(u"lastSaveDirectory"_s), target);
    EXPECT_EQ(defaults.stringForKey(u"lastFileFormatExtension"_s), u"png"_s);

    // With Open With on and no application stored, the renamed file opens in the desktop's default for its
    // type: here an application that notes the file it was started with.
    defaults.setBool(false, u"hideExtension"_s);
    const QString marker = installRecordingOpener(u"org.example.Noter"_s, "image/png;");
    writeFile(home() + u"/.config/mimeapps.list"_s,
              "[Default Applications]\nimage/png=org.example.Noter.desktop\n");
    AppUserDefaults &shared = AppUserDefaults::sharedCorvexDefaults();
    shared.setBool(true, kOpenWithKey);
    shared.setBool(true, kShowCorvexWindowKey);
    shared.setObject(QVariant(), kOpenWithBundleIdentifierKey);
    shared.synchronize();
    auto next = openWindow(writeImage(mFolder + u"/Second.png"_s));
    typeAndRename(*next, u"Plain.png"_s);
    EXPECT_FALSE(FileAttributes::attributesOfItemAtPath(mFolder + u"/Plain.png"_s)
                     .value(FileAttributes::ExtensionHiddenKey)
                     .toBool());
    ASSERT_TRUE(waitUntil([&] { return !readLines(marker).isEmpty(); }));
    EXPECT_EQ(readLines(marker), QStringList{mFolder + u"/Plain.png"_s});
    shared.setBool(false, kOpenWithKey);
    shared.synchronize();

    // Remembered values that repeat the screenshot settings are removed; the type is compared exactly.
    auto screencapture = AppUserDefaults::userDefaultsWithBundleIdentifier(u"com.apple.screencapture"_s);
    screencapture->setObject(mFolder, u"location"_s);
    screencapture->setObject(u"png"_s, u"type"_s);
    AppUserDefaults::sharedScreencaptureDefaults().synchronize();
    next->saveLastDirectoryAndExtension(mFolder + u"/New.png"_s);
    EXPECT_FALSE(defaults.objectForKey(u"lastSaveDirectory"_s).isValid());
    EXPECT_FALSE(defaults.objectForKey(u"lastFileFormatExtension"_s).isValid());
    next->saveLastDirectoryAndExtension(home() + u"/New.PNG"_s);
    EXPECT_EQ(defaults.stringForKey(u"lastSaveDirectory"_s), home());
    EXPECT_EQ(defaults.stringForKey(u"lastFileFormatExtension"_s), u"PNG"_s);
    screencapture->removeObjectForKey(u"location"_s);
    screencapture->removeObjectForKey(u"type"_s);
}

TEST_F(CorvexWindowRenameTest, ExtensionMismatchAlertAnswers)
{
    auto controller = openWindow(mPath);
    typeAndRename(*controller, u"Shot.jpg"_s);
    QZAlert *sheet = waitForSheet(*controller);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->messageText(),
              QStringLiteral("You cannot save this document with extension “.jpg” at the end of "
                             "the name.  The required extension is “.png”."));
    EXPECT_EQ(sheet->informativeText(),
              u"You can choose to use both, so that your file name ends in “.jpg.png”."_s);
    ASSERT_EQ(sheet->buttons().size(), 3);
    EXPECT_EQ(sheet->buttons().at(0)->text(), u"Use .png"_s);
    EXPECT_EQ(sheet->buttons().at(1)->text(), u"Cancel"_s);
    EXPECT_EQ(sheet->buttons().at(2)->text(), u"Use both"_s);
    answerSheet(sheet, u"Cancel"_s);
    EXPECT_EQ(controller->nameTextField()->selectedText(), u"Shot"_s);
    EXPECT_TRUE(QFileInfo::exists(mPath));

    QTest::keyClick(controller->nameTextField(), Qt::Key_Return);
    answerSheet(waitForSheet(*controller), u"Use both"_s);
    ASSERT_TRUE(waitUntil([&] { return QFileInfo::exists(mFolder + u"/Shot.jpg.png"_s); }));

    const QString second = writeImage(mFolder + u"/Two.png"_s);
    auto other = openWindow(second);
    typeAndRename(*other, u"Other.gif"_s);
    answerSheet(waitForSheet(*other), u"Use .png"_s);
    ASSERT_TRUE(waitUntil([&] { return QFileInfo::exists(mFolder + u"/Other.png"_s); }));
    EXPECT_FALSE(QFileInfo::exists(second));
}

TEST_F(CorvexWindowRenameTest, ExtensionsAreCompletedAndTheFormatPopupConvertsTheFile)
{
    auto controller = openWindow(mPath);
    controller->nameTextField()->setText(u"Shot.final"_s);
    EXPECT_TRUE(controller->ensureExtensionMatchesCurrentFormatExcludingOthers(true));
    EXPECT_EQ(controller->nameTextField()->text(), u"Shot.final.png"_s);
    controller->nameTextField()->setText(u"Shot.PNG"_s);
    EXPECT_TRUE(controller->ensureExtensionMatchesCurrentFormatExcludingOthers(true));
    EXPECT_EQ(controller->nameTextField()->text(), u"Shot.PNG"_s);
    controller->nameTextField()->setText(QString());
    EXPECT_FALSE(controller->ensureExtensionMatchesCurrentFormatExcludingOthers(true));

    controller->nameTextField()->setText(u"Shot.png"_s);
    chooseFormat(*controller, u"jpg"_s);
    EXPECT_EQ(controller->nameTextField()->text(), u"Shot.jpg"_s);
    EXPECT_EQ(controller->nameTextField()->selectedText(), u"Shot"_s);
    EXPECT_TRUE(controller->renameButton()->isEnabled());
    // Renamed with the new format, the file is converted (the conversion itself: RenameItemTest).
    QTest::keyClick(controller->nameTextField(), Qt::Key_Return);
    EXPECT_EQ(QImageReader(mFolder + u"/Shot.jpg"_s).format(), QByteArray("jpeg"));
    EXPECT_FALSE(QFileInfo::exists(mPath));
    EXPECT_FALSE(controller->window()->isVisible());
}

TEST_F(CorvexWindowRenameTest, MissingOrPlainFileDestinationsFallBackToTheCurrentFolder)
{
    const QString vanished = home() + u"/Vanished/Deeper"_s;
    const QString plainFile = writeFile(home() + u"/NotAFolder"_s, "x");
    const QString notAFolder = u"Destination \"%1\" is not a folder."_s;
    struct Case
    {
        QString where;
        QStringList errors; // every error naming a folder
    };
    const Case cases[] = {
        {vanished, {notAFolder.arg(mFolder)}}, // the folder is created again all the same
        {plainFile, {notAFolder.arg(plainFile)}},
        {plainFile + u"/inside"_s,
         {u"Can't create destination folder \"%1/inside\": "_s.arg(plainFile), notAFolder.arg(mFolder)}},
    };
    int number = 0;
    for (const Case &c : cases) {
        SCOPED_TRACE(c.where.toStdString());
        LogCapture log;
        auto controller = openWindow(writeImage(mFolder + u"/Case%1.png"_s.arg(++number)));
        controller->setWhere(c.where);
        typeAndRename(*controller, u"Moved%1.png"_s.arg(number));
        EXPECT_TRUE(QFileInfo::exists(mFolder + u"/Moved%1.png"_s.arg(number)));
        const QStringList errors = log.messages(DDLogFlagError).filter(u"folder"_s);
        ASSERT_EQ(errors.size(), c.errors.size()) << errors.join(u'\n').toStdString();
        for (int i = 0; i < errors.size(); ++i)
            EXPECT_TRUE(errors.at(i).startsWith(c.errors.at(i))) << errors.at(i).toStdString();
    }
    EXPECT_TRUE(QFileInfo(vanished).isDir());
}

TEST_F(CorvexWindowRenameTest, ReplaceConfirmationTakesCtrlRAndReturnOrEscapeCancel)
{
    {
        // Replacing the screenshot with itself keeps it.
        LogCapture log;
        auto self = openWindow(mPath);
        self->rename();
        EXPECT_TRUE(
            log.messages(DDLogFlagError).contains(u" *** can't rename a file to the same name ***"_s));
        answerSheet(waitForSheet(*self), u"Replace"_s);
        ASSERT_TRUE(waitUntil([&] { return !self->window()->isVisible(); }));
        EXPECT_TRUE(QFileInfo::exists(mPath)) << "the screenshot is never deleted to make room for itself";
    }
    const QString existing = writeImage(mFolder + u"/Taken.png"_s, QSize(10, 10), Qt::green);
    auto controller = openWindow(mPath);
    typeAndRename(*controller, u"Taken.png"_s);
    QZAlert *sheet = waitForSheet(*controller);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->messageText(), u"“Taken.png” already exists. Do you want to replace it?"_s);
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

    // On the desktop the question says so.
    const QString desktop = FolderShortcuts::desktopFolder();
    writeImage(desktop + u"/Taken.png"_s);
    auto other = openWindow(writeImage(mFolder + u"/Second.png"_s));
    other->setWhere(desktop);
    typeAndRename(*other, u"Taken.png"_s);
    sheet = waitForSheet(*other);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(
        sheet->informativeText(),
        QStringLiteral("A file or folder with the same name already exists on the %1. Replacing it will "
                       "overwrite its current contents.")
            .arg(QFileInfo(desktop).fileName()));
    answerSheet(sheet, u"Cancel"_s);
}

TEST_F(CorvexWindowRenameTest, AFailedConversionIsPresentedAndClosesTheWindowKeepingTheFile)
{
    const QString text = writeFile(mFolder + u"/Broken.png"_s, "not a picture at all");
    LogCapture log;
    auto controller = openWindow(text);
    chooseFormat(*controller, u"jpg"_s);
    QTest::keyClick(controller->nameTextField(), Qt::Key_Return);
    QZAlert *sheet = waitForSheet(*controller);
    ASSERT_NE(sheet, nullptr);
    EXPECT_FALSE(sheet->messageText().isEmpty());
    EXPECT_EQ(log.messages(DDLogFlagError).filter(u"Could not rename/reformat item.  domain:"_s).size(), 1);
    sheet->buttons().first()->click();
    ASSERT_TRUE(waitUntil([&] { return !controller->window()->isVisible(); }));
    EXPECT_TRUE(
        log.messages().contains(u"Closing the renaming window as there is no recovery from this error."_s));
    EXPECT_TRUE(QFileInfo::exists(text) || QFileInfo::exists(trashedCopy(u"Broken.png"_s)))
        << "the file is never lost";
}

TEST_F(CorvexWindowRenameTest, MoveToTrashTrashesOrPresentsTheError)
{
    auto controller = openWindow(mPath);
    QTest::mouseClick(controller->moveToTrashButton(), Qt::LeftButton);
    EXPECT_FALSE(QFileInfo::exists(mPath));
    EXPECT_TRUE(QFileInfo::exists(trashedCopy(u"Shot.png"_s)) ||
                QFileInfo::exists(trashedCopy(u"Shot.2.png"_s)));
    EXPECT_FALSE(controller->window()->isVisible());

    const QString doomed = writeImage(mFolder + u"/Doomed.png"_s);
    LogCapture log;
    auto other = openWindow(
        ScreenshotInfo::initWithNotificationDictionary({{u"filePath"_s, doomed}, {u"screenNum"_s, 1}}));
    ASSERT_TRUE(QFile::remove(doomed));
    other->moveToTrash();
    QZAlert *sheet = waitForSheet(*other);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(log.messages(DDLogFlagError).filter(u" *** Move to Trash failed with error "_s).size(), 1);
    sheet->buttons().first()->click();
    EXPECT_TRUE(waitUntil([&] { return !other->window()->isVisible(); }));
}
