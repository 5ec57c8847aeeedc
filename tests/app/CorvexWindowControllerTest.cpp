// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "../core/CapturingLogger.h"
#include "WindowTestSupport.h"
#include "app/FolderShortcuts.h"
#include "app/ImageView.h"
#include "app/WhereItemDelegate.h"
#include "app/WhereMenu.h"
#include "core/FileFormat.h"
#include "core/UserDefaultBookmarks.h"
#include "foundation/PreferenceKeys.h"
#include "platform/Bookmark.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace corvex::test;

class CorvexWindowControllerTest : public ::testing::Test
{
protected:
    void SetUp() override { clearWindowPreferences(); }
    void TearDown() override { clearWindowPreferences(); }
};

TEST_F(CorvexWindowControllerTest, ProposesTheFilesOwnNameFolderAndFormatOrTheTargetOrRememberedOnes)
{
    const QString shots = folder(u"Shots1"_s);
    const QString path = writeImage(shots + u"/Screenshot 1.png"_s);
    auto controller = openWindow(path);
    QWidget *window = controller->window();

    EXPECT_EQ(window->windowTitle(), u"Screenshot 1.png"_s);
    for (const char *outlet : {"mImageView", "mNameTextField", "mWherePopupButton", "mFormatPopupButton",
                               "mMoveToTrashButton", "mCancelButton", "mRenameButton"})
        EXPECT_NE(window->findChild<QWidget *>(QString::fromLatin1(outlet)), nullptr) << outlet;
    EXPECT_EQ(controller->nameTextField()->text(), u"Screenshot 1.png"_s);
    EXPECT_EQ(controller->nameTextField()->selectedText(), u"Screenshot 1"_s);
    EXPECT_TRUE(controller->nameTextField()->hasFocus());
    EXPECT_EQ(controller->whereFolderPath(), shots);
    EXPECT_EQ(controller->wherePopupButton()->itemText(0), u"Shots1"_s);
    ASSERT_EQ(controller->formatPopupButton()->count(), FileFormat::allFileFormats().size());
    for (int i = 0; i < controller->formatPopupButton()->count(); ++i)
        EXPECT_EQ(controller->formatPopupButton()->itemText(i),
                  FileFormat::allFileFormats().at(i)->description());
    EXPECT_EQ(controller->selectedFileFormat()->uti(), FileFormat::PNGType);
    EXPECT_FALSE(controller->renameButton()->isEnabled()) << "nothing differs yet";
    EXPECT_EQ(controller->image().size(), QSize(200, 100));

    // Rename is enabled exactly when the name or the folder differs.
    QLineEdit *name = controller->nameTextField();
    name->setText(u"Other.png"_s);
    EXPECT_TRUE(controller->renameButton()->isEnabled());
    name->setText(u"Screenshot 1.png"_s);
    EXPECT_FALSE(controller->renameButton()->isEnabled());
    name->setText(u"screenshot 1.png"_s);
    EXPECT_TRUE(controller->renameButton()->isEnabled()) << "letter case counts";
    name->setText(u"Screenshot 1.png"_s);
    controller->whereAction(0);
    controller->setWhere(folder(u"Else"_s));
    controller->updateUI();
    EXPECT_TRUE(controller->renameButton()->isEnabled());

    // Cancel closes the window and leaves the file.
    QSignalSpy closed(controller.get(), &CorvexWindowController::windowClosedByController);
    QTest::mouseClick(controller->cancelButton(), Qt::LeftButton);
    EXPECT_EQ(closed.count(), 1);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(QFileInfo::exists(path));

    // A target path and remembered values shape the proposal.
    const QString shot = writeImage(folder(u"Shots2"_s) + u"/Shot.png"_s);
    const QString elsewhere = folder(u"Elsewhere"_s);
    ScreenshotInfo info(shot, 1);
    info.setTargetFilePath(elsewhere + u"/Renamed.png"_s);
    {
        auto proposed = openWindow(info);
        EXPECT_EQ(proposed->window()->windowTitle(), u"Shot.png"_s);
        EXPECT_EQ(proposed->nameTextField()->text(), u"Renamed.png"_s);
        EXPECT_EQ(proposed->whereFolderPath(), elsewhere);
        EXPECT_TRUE(proposed->renameButton()->isEnabled());
    }

    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setBool(true, u"useLastDirectoryAndExtensionValues"_s);
    defaults.setObject(elsewhere, u"lastSaveDirectory"_s);
    defaults.setObject(u"JPG"_s, u"lastFileFormatExtension"_s);
    {
        auto proposed = openWindow(shot);
        EXPECT_EQ(proposed->nameTextField()->text(), u"Shot.JPG"_s) << "kept as stored";
        EXPECT_EQ(proposed->selectedFileFormat()->uti(), FileFormat::JPEGType);
        EXPECT_EQ(proposed->whereFolderPath(), elsewhere);
    }
    defaults.setObject(QString(elsewhere + u"/gone"_s), u"lastSaveDirectory"_s);
    defaults.setObject(u"xyz"_s, u"lastFileFormatExtension"_s);
    {
        auto proposed = openWindow(shot);
        EXPECT_EQ(proposed->nameTextField()->text(), u"Shot.png"_s);
        EXPECT_EQ(proposed->whereFolderPath(), QFileInfo(shot).path()) << "a missing folder is ignored";
    }
    defaults.setBool(false, u"useLastDirectoryAndExtensionValues"_s);
    {
        auto proposed = openWindow(shot);
        EXPECT_EQ(proposed->whereFolderPath(), QFileInfo(shot).path()) << "remembered values are off";
    }
}

TEST_F(CorvexWindowControllerTest, WindowFramesGrowForLargePicturesOnlyCascadeAndStayOnScreen)
{
    const QString path = writeImage(folder(u"Shots4"_s) + u"/Small.png"_s, QSize(100, 50));
    auto controller = openWindow(path);
    QWidget *window = controller->window();
    const QSize designed = window->size();
    const QSize view = controller->imageView()->size();
    EXPECT_EQ(controller->calculateWindowFrameWithImageSize(100, 50).size(), designed);
    EXPECT_EQ(controller->calculateWindowFrameWithImageSize(view.width() - 16, view.height() - 16).size(),
              designed)
        << "differences of 0 change nothing";
    const QRect grown = controller->calculateWindowFrameWithImageSize(view.width() + 10, 20);
    EXPECT_EQ(grown.size(), QSize(designed.width() + 26, designed.height()));
    const QRect both = controller->calculateWindowFrameWithImageSize(view.width(), view.height());
    EXPECT_EQ(both.size(), designed + QSize(16, 16));
    const QRect available = window->screen()->availableGeometry();
    const QRect huge = controller->calculateWindowFrameWithImageSize(5120, 2880);
    EXPECT_LE(huge.width(), available.width());
    EXPECT_LE(huge.height(), available.height());
    EXPECT_TRUE(available.contains(huge));

    // New windows cascade from the last and stay on the screen.
    const QString shots = folder(u"Cascade"_s);
    std::vector<std::unique_ptr<CorvexWindowController>> controllers;
    for (int i = 0; i < 3; ++i)
        controllers.push_back(openWindow(writeImage(shots + u"/Shot%1.png"_s.arg(i))));
    for (size_t i = 1; i < controllers.size(); ++i) {
        const QWidget *previous = controllers.at(i - 1)->window();
        const QWidget *next = controllers.at(i)->window();
        EXPECT_NE(next->pos(), previous->pos()) << "window " << i;
        EXPECT_TRUE(available.contains(next->geometry())) << "window " << i;
    }
}

TEST_F(CorvexWindowControllerTest, WherePopupOffersTheScreenshotsFolderAnotherFolderAndFavouritesAndAddsOne)
{
    const QString shots = folder(u"Shots5"_s);
    const QString path = writeImage(shots + u"/Shot.png"_s);
    QVariantList favourites;
    QStringList favouritePaths;
    for (int i = 0; i < 10; ++i) {
        favouritePaths.append(folder(u"Fav%1"_s.arg(i)));
        favourites.append(Bookmark::create(favouritePaths.last()));
    }
    UserDefaults::standardUserDefaults().setObject(favourites, u"favoriteFolderBookmarks"_s);
    auto controller = openWindow(path);
    QComboBox *where = controller->wherePopupButton();
    ASSERT_EQ(controller->favoriteFolderURLs().size(), 10);

    QList<int> tags;
    for (int i = 0; i < where->count(); ++i)
        tags.append(where->itemData(i, Qt::UserRole + 1).toInt());
    EXPECT_TRUE(tags.contains(WhereMenu::ScreenshotFolderTag));
    EXPECT_TRUE(tags.contains(WhereMenu::OtherFolderTag));
    const int first = int(tags.indexOf(500));
    ASSERT_GE(first, 0);
    EXPECT_EQ(tags.mid(first), (QList<int>{500, 501, 502, 503, 504, 505, 506, 507, 508, 509}));
    EXPECT_EQ(where->itemText(first), u"Fav0"_s);
    EXPECT_EQ(where->itemData(first, Qt::UserRole + 3).value<QKeySequence>(),
              QKeySequence(Qt::CTRL | Qt::Key_1));
    EXPECT_TRUE(where->itemData(first + 9, Qt::UserRole + 3).value<QKeySequence>().isEmpty())
        << "no key for the tenth";
    // The favourites' folder icons are in place when the list opens.
    where->showPopup();
    for (int i = first; i < where->count(); ++i)
        EXPECT_FALSE(where->itemIcon(i).isNull()) << "favourite " << i - first;
    where->hidePopup();

    controller->whereAction(503);
    EXPECT_EQ(controller->whereFolderPath(), favouritePaths.at(3));
    EXPECT_EQ(where->currentIndex(), 0);
    EXPECT_EQ(where->itemText(0), u"Fav3"_s);
    QTest::keyClick(controller->nameTextField(), Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(controller->whereFolderPath(), favouritePaths.at(1));
    controller->whereAction(WhereMenu::ScreenshotFolderTag);
    EXPECT_EQ(controller->whereFolderPath(), shots);

    const QString other = folder(u"Other"_s);
    controller->whereAction(WhereMenu::OtherFolderTag);
    QFileDialog *panel = controller->window()->findChild<QFileDialog *>();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->windowModality(), Qt::WindowModal);
    EXPECT_EQ(panel->fileMode(), QFileDialog::Directory);
    panel->selectFile(other);
    QMetaObject::invokeMethod(panel, "accept");
    ASSERT_TRUE(waitUntil([&] { return controller->whereFolderPath() == other; }));
    controller->whereAction(WhereMenu::OtherFolderTag);
    panel = controller->window()->findChild<QFileDialog *>();
    ASSERT_NE(panel, nullptr);
    panel->reject();
    EXPECT_EQ(controller->whereFolderPath(), other) << "cancelling keeps the folder";
    EXPECT_EQ(where->currentIndex(), 0);

    // The shown folder is added to the favourites once; editing them is asked of the application.
    QTest::keyClick(controller->nameTextField(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_EQ(controller->favoriteFolderURLs().size(), 11);
    EXPECT_EQ(controller->favoriteFolderURLs().last(), QUrl::fromLocalFile(other));
    EXPECT_EQ(controller->nameTextField()->text(), u"Shot.png"_s) << "the name field is untouched";
    EXPECT_EQ(UserDefaultBookmarks(kFavoriteFolderBookmarksKey).count(), 11);
    EXPECT_EQ(where->itemData(where->count() - 1, WhereItemDelegate::TagRole).toInt(),
              WhereMenu::FirstFavoriteTag + 10);
    where->showPopup();
    EXPECT_FALSE(where->itemIcon(where->count() - 1).isNull()) << "the added favourite's icon";
    where->hidePopup();
    controller->whereAction(WhereMenu::AddToFavoritesTag);
    EXPECT_EQ(UserDefaultBookmarks(kFavoriteFolderBookmarksKey).count(), 11) << "no folder twice";
    QSignalSpy edit(controller.get(), &CorvexWindowController::favoritesEditingRequested);
    controller->whereAction(WhereMenu::EditFavoritesTag);
    EXPECT_EQ(edit.count(), 1);
    EXPECT_EQ(controller->whereFolderPath(), other);
}

TEST_F(CorvexWindowControllerTest, KeysSetTheFolderAndLeaveTheNameFieldsEditingKeysAlone)
{
    const QString path = writeImage(folder(u"Shots6"_s) + u"/Shot.png"_s);
    auto controller = openWindow(path);
    const auto press = [&](int key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        return controller->performKeyEquivalent(&event);
    };
    const Qt::KeyboardModifiers ctrlShift = Qt::ControlModifier | Qt::ShiftModifier;
    EXPECT_TRUE(press(Qt::Key_H, ctrlShift));
    EXPECT_EQ(controller->whereFolderPath(), QDir::homePath());
    EXPECT_TRUE(press(Qt::Key_C, ctrlShift));
    EXPECT_EQ(controller->whereFolderPath(), u"/"_s);
    EXPECT_TRUE(press(Qt::Key_D, Qt::ControlModifier));
    EXPECT_EQ(controller->whereFolderPath(), FolderShortcuts::desktopFolder());
    EXPECT_TRUE(press(Qt::Key_O, ctrlShift));
    EXPECT_EQ(controller->whereFolderPath(), FolderShortcuts::documentsFolder());
    EXPECT_EQ(press(Qt::Key_U, ctrlShift), !FolderShortcuts::utilitiesFolder().isEmpty());
    EXPECT_FALSE(press(Qt::Key_H, Qt::ControlModifier)) << "the modifiers must match exactly";
    EXPECT_FALSE(press(Qt::Key_X, ctrlShift));
    EXPECT_FALSE(press(Qt::Key_1, Qt::ControlModifier)) << "no favourites, no digit shortcuts";

    // Typed into the name field, the shortcut changes the folder and leaves the text alone.
    controller->nameTextField()->setText(u"Typed.png"_s);
    QTest::keyClick(controller->nameTextField(), Qt::Key_H, ctrlShift);
    EXPECT_EQ(controller->whereFolderPath(), QDir::homePath());
    EXPECT_EQ(controller->nameTextField()->text(), u"Typed.png"_s);

    // Every key a text field edits with on this platform.
    QList<QKeySequence> editingKeys;
    for (int key = QKeySequence::UnknownKey + 1; key <= QKeySequence::Cancel; ++key)
        if (key != QKeySequence::Print && key != QKeySequence::Close && key != QKeySequence::Quit)
            editingKeys += QKeySequence::keyBindings(QKeySequence::StandardKey(key));
    editingKeys += {QKeySequence(Qt::Key_Backspace), QKeySequence(Qt::CTRL | Qt::Key_Backspace),
                    QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Left), QKeySequence(Qt::Key_Up)};
    QList<QKeySequence> windowKeys{WhereMenu::addToFavoritesShortcut()};
    for (QAction *action : controller->windowActions())
        windowKeys += action->shortcuts();
    for (const QKeySequence &keys : std::as_const(windowKeys))
        EXPECT_FALSE(editingKeys.contains(keys) && keys != QKeySequence(Qt::Key_Escape))
            << keys.toString().toStdString();

    // Ctrl+Backspace deletes the word before the cursor, and the file stays where it is.
    QLineEdit *name = controller->nameTextField();
    name->setText(u"My Shot.png"_s);
    name->setCursorPosition(7);
    QTest::keyClick(name, Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(name->text(), u"My .png"_s);
    EXPECT_TRUE(QFileInfo::exists(path));
    EXPECT_TRUE(controller->window()->isVisible());
}

TEST_F(CorvexWindowControllerTest, FollowsItsFileAndShowsASubstituteForOneThatCannotBeRead)
{
    const QString shots = folder(u"Shots7"_s);
    const QString path = writeImage(shots + u"/Shot.png"_s);
    auto controller = openWindow(path);
    const QString moved = shots + u"/Moved by hand.png"_s;
    ASSERT_TRUE(QFile::rename(path, moved));
    ASSERT_TRUE(waitUntil([&] { return controller->screenshotInfo().filePath() == moved; }));
    controller->nameTextField()->setText(u"Moved by hand.png"_s);
    EXPECT_FALSE(controller->renameButton()->isEnabled()) << "the button follows the new path";

    LogCapture log;
    ASSERT_TRUE(QFile::remove(moved));
    ASSERT_TRUE(
        waitUntil([&] { return log.messages().filter(u"Error resolving bookmark data"_s).size() == 1; }));
    const QString line = log.messages().filter(u"Error resolving bookmark data"_s).first();
    EXPECT_TRUE(line.endsWith(u"bytes) of "_s + moved)) << line.toStdString();
    EXPECT_TRUE(controller->window()->isVisible()) << "the window stays";
    EXPECT_EQ(controller->screenshotInfo().filePath(), moved);

    controller->fileWatcherRename(u"/some/other/file.png"_s);
    EXPECT_EQ(log.messages().filter(u"Error resolving bookmark data"_s).size(), 1)
        << "a notification for another path is ignored";

    // Files that cannot be read get the substitute image.
    const QString notImage = writeFile(shots + u"/Text.png"_s, "this is not a picture");
    log.clear();
    auto unreadable = openWindow(notImage);
    EXPECT_TRUE(log.messages().contains(u"Could not create image with data from "_s + notImage));
    EXPECT_EQ(unreadable->image().size(), QSize(128, 128));
    EXPECT_TRUE(unreadable->window()->isVisible());

    const QString missing = shots + u"/Missing.jpg"_s;
    auto gone = openWindow(
        ScreenshotInfo::initWithNotificationDictionary({{u"filePath"_s, missing}, {u"screenNum"_s, 1}}));
    EXPECT_TRUE(log.messages().contains(u"Could not load image data from "_s + missing));
    EXPECT_EQ(gone->image().size(), QSize(128, 128));
    EXPECT_EQ(gone->selectedFileFormat()->uti(), FileFormat::JPEGType);

    const QImage substitute = CorvexWindowController::fileNotFoundImageForFileType(u"png"_s);
    EXPECT_EQ(substitute.size(), QSize(128, 128));
    EXPECT_NE(substitute.pixel(96, 96), substitute.pixel(0, 0))
        << "the type icon sits in the bottom-right quarter";
}

TEST_F(CorvexWindowControllerTest, EscapeClosesAnOpenPopupOnlyWindowKeysWaitForItAndRowsAreWhole)
{
    const QString path = writeImage(folder(u"Popup"_s) + u"/Shot.png"_s);
    auto controller = openWindow(path);
    QSignalSpy closed(controller.get(), &CorvexWindowController::windowClosedByController);
    for (QComboBox *popup : {controller->wherePopupButton(), controller->formatPopupButton()}) {
        popup->showPopup();
        ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
        QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), Qt::Key_Escape);
        ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() == nullptr; }));
        EXPECT_TRUE(controller->window()->isVisible());
        EXPECT_EQ(closed.count(), 0);
    }
    // A window key pressed while a popup is open does nothing to the window.
    const QString before = controller->whereFolderPath();
    controller->wherePopupButton()->showPopup();
    ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() != nullptr; }));
    QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), Qt::Key_H,
                    Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(controller->whereFolderPath(), before);
    // The open popup's rows have room for their text, and the last is not clipped.
    QComboBox *where = controller->wherePopupButton();
    QAbstractItemView *view = where->view();
    for (int row = 0; row < where->count(); ++row) {
        const QModelIndex index = where->model()->index(row, 0);
        const QRect rect = view->visualRect(index);
        if (!WhereItemDelegate::isSeparator(index)) {
            EXPECT_GE(rect.height(), view->fontMetrics().height() + 2 * WhereItemDelegate::RowPadding)
                << "row " << row;
        }
        EXPECT_TRUE(view->viewport()->rect().contains(rect)) << "row " << row << " is clipped";
    }
    controller->wherePopupButton()->hidePopup();
    ASSERT_TRUE(waitUntil([] { return QApplication::activePopupWidget() == nullptr; }));
    EXPECT_EQ(closed.count(), 0);
}
