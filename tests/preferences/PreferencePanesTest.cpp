// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The application's three panes, loaded from their bundles as the application loads them: every control
// writes its preference at once and shows changes made elsewhere; the favourite folders reach
// "favoriteFolderBookmarks"; the pattern preview; applications and folders that are gone.
#include "TestSupport.h"
#include "core/AppUserDefaults.h"
#include "core/FactoryDefaults.h"
#include "core/Processor.h"
#include "core/RenamePattern.h"
#include "core/UserDefaultBookmarks.h"
#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"
#include "preferences/SS_PreferencePaneProtocol.h"
#include "preferences/SS_PrefsController.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

using corvex::test::waitUntil;

namespace {

const QString kPanes = QStringLiteral(CORVEX_BUNDLE_DIR "/Contents/Resources");

class PreferencePanesTest : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        UserDefaults::standardUserDefaults().registerDefaults(factoryDefaults());
        sController = new SS_PrefsController(kPanes);
        sController->setAlwaysShowsToolbar(true);
        sController->setPanesOrder({u"General"_s, u"Advanced"_s, u"Updates"_s});
    }
    static void TearDownTestSuite()
    {
        // Released with the window first, while the panes' plugins are still loaded.
        sController->destroyPreferencesWindow();
        delete sController;
        sController = nullptr;
    }

    // The view of the named pane, shown in the window.
    static QWidget *show(const QString &pane)
    {
        if (!sController->showPane(pane))
            return nullptr;
        return sController->currentPane()->paneView();
    }

    static UserDefaults &defaults() { return UserDefaults::standardUserDefaults(); }

    static SS_PrefsController *sController;
};

SS_PrefsController *PreferencePanesTest::sController = nullptr;

TEST_F(PreferencePanesTest, TheThreeBundlesLoadInTheirOrderAndEveryCheckBoxWritesItsKeyForTheAgent)
{
    const QList<QPair<QString, QStringList>> panes{
        {u"General"_s,
         {kShowCorvexWindowKey, kUseLastDirectoryAndExtensionValuesKey, kHideExtensionKey,
          kQuitAppAfterLastWindowClosedKey, kStartAtLogInKey, kAllowAgentToRunInBackgroundKey,
          kShowMenuIconKey, kGrayscaleMenuIconKey}},
        {u"Advanced"_s,
         {kAutoRenameKey, kAutoReformatKey, kAutoMoveKey, kOpenWithKey, kUseLenientTimeParserKey}},
        {u"Updates"_s, {kCheckForUpdatesKey}},
    };
    EXPECT_EQ(sController->panesOrder(), (QStringList{u"General"_s, u"Advanced"_s, u"Updates"_s}));
    for (const auto &[pane, keys] : panes) {
        QWidget *view = show(pane);
        ASSERT_NE(view, nullptr) << qPrintable(pane);
        EXPECT_EQ(sController->preferencesWindow()->windowTitle(), pane);
        EXPECT_FALSE(sController->currentPane()->paneIcon().isNull()) << qPrintable(pane);
        // Every control can be told apart by a screen reader.
        for (QWidget *control : view->findChildren<QWidget *>()) {
            if (auto *button = qobject_cast<QAbstractButton *>(control)) {
                EXPECT_FALSE(button->text().isEmpty() && button->accessibleName().isEmpty())
                    << qPrintable(pane) << " " << control->metaObject()->className();
            } else if (qobject_cast<QComboBox *>(control) || qobject_cast<QListWidget *>(control) ||
                       (qobject_cast<QLineEdit *>(control) &&
                        !qobject_cast<QComboBox *>(control->parent()))) {
                EXPECT_FALSE(control->accessibleName().isEmpty())
                    << qPrintable(pane) << " " << qPrintable(control->objectName());
            }
        }
        for (const QString &key : keys) {
            auto *box = view->findChild<QCheckBox *>(key);
            ASSERT_NE(box, nullptr) << qPrintable(key);
            defaults().setBool(true, kShowMenuIconKey); // the grey icon's box is enabled only with the icon
            const bool before = defaults().boolForKey(key);
            EXPECT_EQ(box->isChecked(), before) << qPrintable(key);
            box->click();
            EXPECT_EQ(defaults().boolForKey(key), !before) << qPrintable(key);
            EXPECT_TRUE(AppUserDefaults::sharedCorvexDefaults().objectForKey(key).isValid())
                << qPrintable(key);
            defaults().setBool(before, key);
            EXPECT_EQ(box->isChecked(), before) << qPrintable(key);
        }
    }

    // A changed step reaches the agent's decision: the agent reads the shared domain as stored, through its
    // own store.
    for (const QString &key : {kAutoRenameKey, kAutoReformatKey, kAutoMoveKey, kOpenWithKey})
        defaults().setBool(false, key);
    AppUserDefaults::sharedCorvexDefaults().synchronize();
    EXPECT_FALSE(Processor::sharedProcessor().needsAutomaticProcessing());
    show(u"Advanced"_s)->findChild<QCheckBox *>(kAutoRenameKey)->click();
    EXPECT_TRUE(Processor::sharedProcessor().needsAutomaticProcessing());
    defaults().setBool(false, kAutoRenameKey);
}

TEST_F(PreferencePanesTest, PatternEditorStoresPiecesOffersEveryTokenAndPreviewsWithoutAdvancingTheCounter)
{
    QWidget *view = show(u"Advanced"_s);
    ASSERT_NE(view, nullptr);
    defaults().setBool(true, kAutoRenameKey);
    defaults().setBool(false, kAutoReformatKey);
    defaults().setInteger(41, kAutoRenameCountKey);
    auto *edit = view->findChild<QLineEdit *>(u"renamePattern"_s);
    auto *preview = view->findChild<QLabel *>(u"renamePreview"_s);
    ASSERT_TRUE(edit && preview);

    struct Case
    {
        QString typed;
        QString stored;
    };
    for (const Case &c : {Case{u"Shot $Counter3$_$Counter1$"_s, u"Shot :$Counter3$:_:$Counter1$"_s},
                          Case{u"$DateYYYY$-$Nope$"_s, u"$DateYYYY$:-$Nope$"_s}, Case{u"a:b"_s, u"ab"_s}}) {
        edit->clear();
        edit->setFocus();
        QTest::keyClicks(edit, c.typed);
        EXPECT_EQ(defaults().stringForKey(kAutoRenameFormatKey), c.stored) << qPrintable(c.typed);
    }

    defaults().setObject(u"Shot :$Counter3$:_:$Counter1$:/:$Unknown$"_s, kAutoRenameFormatKey);
    EXPECT_EQ(edit->text(), u"Shot $Counter3$_$Counter1$/$Unknown$"_s);
    EXPECT_TRUE(preview->text().endsWith(u"Shot 042_43:$Unknown$.png"_s)) << qPrintable(preview->text());
    EXPECT_EQ(defaults().integerForKey(kAutoRenameCountKey), 41);

    view->findChild<QPushButton *>(u"resetCounter"_s)->click();
    EXPECT_EQ(defaults().integerForKey(kAutoRenameCountKey), 0);
    EXPECT_TRUE(waitUntil([&] { return preview->text().endsWith(u"Shot 001_2:$Unknown$.png"_s); }))
        << qPrintable(preview->text());
    EXPECT_TRUE(view->findChild<QLabel *>(u"counterValue"_s)->text().contains(QLatin1Char('0')));

    // The token menu offers every token.
    QStringList offered;
    for (QAction *action : view->findChildren<QAction *>())
        if (RenamePattern::isToken(action->data().toString()))
            offered.append(action->data().toString());
    EXPECT_EQ(offered.size(), RenamePattern::allTokens().size());
    for (const QString &token : RenamePattern::allTokens())
        EXPECT_TRUE(offered.contains(token)) << qPrintable(token);
}

TEST_F(PreferencePanesTest, FormatsApplicationsAndFoldersThatAreGoneStayVisible)
{
    QWidget *view = show(u"Advanced"_s);
    ASSERT_NE(view, nullptr);
    auto *formats = view->findChild<QComboBox *>(u"autoReformatFormat"_s);
    ASSERT_EQ(formats->count(), 6);
    formats->setCurrentIndex(4);
    Q_EMIT formats->activated(4); // as the user's choice
    EXPECT_EQ(defaults().stringForKey(kAutoReformatExtensionKey), u"png"_s);
    defaults().setObject(u"tiff"_s, kAutoReformatExtensionKey);
    EXPECT_EQ(formats->currentIndex(), 5);

    auto *apps = view->findChild<QComboBox *>(u"openWithApplication"_s);
    ASSERT_NE(apps, nullptr);
    defaults().setObject(u"org.example.Gone"_s, kOpenWithBundleIdentifierKey);
    EXPECT_TRUE(apps->currentText().contains(u"not installed"_s));
    EXPECT_EQ(defaults().stringForKey(kOpenWithBundleIdentifierKey), u"org.example.Gone"_s);
    Q_EMIT apps->activated(0);
    EXPECT_EQ(defaults().stringForKey(kOpenWithBundleIdentifierKey), u"com.apple.Preview"_s);
    EXPECT_FALSE(apps->currentText().contains(u"not installed"_s));

    QTemporaryDir folder;
    defaults().setObject(folder.path(), kAutoMoveFolderKey);
    auto *missing = view->findChild<QLabel *>(u"autoMoveFolderMissing"_s);
    EXPECT_FALSE(missing->isVisibleTo(view));
    defaults().setObject(QString(folder.path() + u"/gone"_s), kAutoMoveFolderKey);
    EXPECT_TRUE(missing->isVisibleTo(view));
}

TEST_F(PreferencePanesTest, FavouritesAddRemoveAndReorderReachTheStoredList)
{
    QWidget *view = show(u"General"_s);
    ASSERT_NE(view, nullptr);
    defaults().removeObjectForKey(kFavoriteFolderBookmarksKey);
    QWidget *editor = view->findChild<QWidget *>(u"favoriteFoldersEditor"_s);
    auto *list = view->findChild<QListWidget *>(u"favoriteFoldersList"_s);
    ASSERT_TRUE(editor && list);
    ASSERT_TRUE(waitUntil([&] { return list->count() == 0; }));

    QTemporaryDir root;
    QList<QUrl> folders;
    for (const char *name : {"A", "B", "C"}) {
        QDir(root.path()).mkdir(QString::fromLatin1(name));
        folders.append(QUrl::fromLocalFile(root.path() + QLatin1Char('/') + QString::fromLatin1(name)));
    }
    const auto stored = [] { return UserDefaultBookmarks(kFavoriteFolderBookmarksKey).URLs(); };
    bool added = false;
    ASSERT_TRUE(QMetaObject::invokeMethod(editor, "addFolders", Q_RETURN_ARG(bool, added),
                                          Q_ARG(QList<QUrl>, folders)));
    EXPECT_TRUE(added);
    EXPECT_EQ(stored(), folders);
    // A folder already there is not added twice; one that does not exist is refused.
    ASSERT_TRUE(QMetaObject::invokeMethod(editor, "addFolders", Q_RETURN_ARG(bool, added),
                                          Q_ARG(QList<QUrl>, {folders.at(1)})));
    EXPECT_EQ(stored().size(), 3);
    ASSERT_TRUE(QMetaObject::invokeMethod(editor, "addFolders", Q_RETURN_ARG(bool, added),
                                          Q_ARG(QList<QUrl>, {QUrl::fromLocalFile(root.path() + "/none")})));
    EXPECT_FALSE(added);
    EXPECT_EQ(stored().size(), 3);
    ASSERT_EQ(list->count(), 3);
    EXPECT_TRUE(list->item(0)->text().startsWith(u"A\n"_s));

    const auto button = [&](const QString &name) {
        for (auto *b : view->findChildren<QPushButton *>())
            if (b->accessibleName() == name)
                return b;
        return static_cast<QPushButton *>(nullptr);
    };
    list->clearSelection();
    list->item(2)->setSelected(true);
    button(u"Move the selected favourite folders up"_s)->click();
    EXPECT_EQ(stored(), (QList<QUrl>{folders[0], folders[2], folders[1]}));
    EXPECT_TRUE(list->item(1)->isSelected());
    button(u"Move the selected favourite folders down"_s)->click();
    EXPECT_EQ(stored(), folders);
    list->clearSelection();
    list->item(0)->setSelected(true);
    button(u"Remove the selected favourite folders"_s)->click();
    EXPECT_EQ(stored(), (QList<QUrl>{folders[1], folders[2]}));

    // A favourite deleted while the list is open is greyed with a tooltip.
    ASSERT_TRUE(QDir(folders[2].toLocalFile()).removeRecursively());
    EXPECT_TRUE(waitUntil([&] {
        return list->count() == 2 && list->item(1)->toolTip().contains(u"can no longer be found"_s);
    }));
    EXPECT_EQ(list->item(0)->toolTip(), folders[1].toLocalFile());
}

TEST_F(PreferencePanesTest, CheckNowIsEnabledOnlyWithAnUpdater)
{
    QWidget *view = show(u"Updates"_s);
    ASSERT_NE(view, nullptr);
    auto *checkNow = view->findChild<QPushButton *>(u"checkNow"_s);
    ASSERT_NE(checkNow, nullptr);
    sController->setCheckForUpdatesHandler({});
    EXPECT_FALSE(checkNow->isEnabled());
    EXPECT_FALSE(checkNow->toolTip().isEmpty());
    int checks = 0;
    sController->setCheckForUpdatesHandler([&] { ++checks; });
    EXPECT_TRUE(checkNow->isEnabled());
    checkNow->click();
    EXPECT_EQ(checks, 1);
    sController->setCheckForUpdatesHandler({});

    auto *lastCheck = view->findChild<QLabel *>(u"lastCheck"_s);
    defaults().removeObjectForKey(u"SULastCheckTime"_s);
    EXPECT_EQ(lastCheck->text(), u"Never"_s);
    defaults().setObject(QDateTime(QDate(2026, 3, 5), QTime(9, 7)), u"SULastCheckTime"_s);
    EXPECT_TRUE(lastCheck->text().contains(u"2026"_s)) << qPrintable(lastCheck->text());
}

} // namespace
