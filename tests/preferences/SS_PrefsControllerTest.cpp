// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The preferences window's controller with real pane bundles: which bundles load, the toolbar order, the pane
// shown first, titles, the frame on a switch, keyboard switching and closing, and the alert when nothing
// loads.
#include "preferences/SS_PrefsController.h"
#include "TestSupport.h"
#include "core/UserDefaults.h"
#include "preferences/PreferencePaneBundle.h"
#include "preferences/SS_PreferencePaneProtocol.h"
#include "widgets/QZAlert.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

using corvex::test::waitUntil;

namespace {

const QString kBundles = QStringLiteral(CORVEX_TEST_BUNDLES_DIR);

// A folder holding links to the named test bundles (links keep each bundle at one real place, as the process
// remembers a principal class together with its bundle).
class PaneFolder
{
public:
    explicit PaneFolder(const QStringList &bundles)
    {
        // Numbered, so that they load in the order given.
        for (qsizetype i = 0; i < bundles.size(); ++i)
            QFile::link(kBundles + QLatin1Char('/') + bundles.at(i) + u".preferencePane"_s,
                        path() + u"/%1-%2.preferencePane"_s.arg(i).arg(bundles.at(i)));
    }
    QString path() const { return mDir.path(); }

private:
    QTemporaryDir mDir;
};

QWidget *viewOf(SS_PrefsController &controller, const QString &name)
{
    return controller.preferencesWindow() ? controller.preferencesWindow()->findChild<QWidget *>(name)
                                          : nullptr;
}

class PrefsControllerTest : public ::testing::Test
{
protected:
    void SetUp() override { UserDefaults::standardUserDefaults().removeObjectForKey(lastPaneKey()); }
    static QString lastPaneKey() { return u"com.ostrel.Corvex_Preferences_Last_Pane_Defaults_Key"_s; }
};

TEST_F(PrefsControllerTest, LoadsPaneBundlesInTheOrderGivenAndSkipsFaultyOnesEachForItsReason)
{
    PaneFolder folder({u"TestPanes"_s, u"DuplicateClass"_s, u"NoPrincipalClass"_s, u"NotAPane"_s});
    // A bundle whose plugin is not a library at all, and a folder that is no bundle.
    const QString corrupt = folder.path() + u"/Corrupt.preferencePane"_s;
    corvex::test::writeFile(corrupt + u"/Contents/Info.plist"_s,
                            R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>
<key>CFBundleExecutable</key><string>libCorrupt.so</string><key>NSPrincipalClass</key><string>Corrupt</string>
</dict></plist>)");
    corvex::test::writeFile(corrupt + u"/Contents/libCorrupt.so"_s, "not a library");
    const QString empty = folder.path() + u"/Empty.preferencePane"_s;
    QDir().mkpath(empty);

    testing::internal::CaptureStderr();
    SS_PrefsController controller(folder.path());
    const QString quiet = QString::fromStdString(testing::internal::GetCapturedStderr());
    QStringList loaded = controller.loadedPanes();
    loaded.sort();
    EXPECT_EQ(loaded, (QStringList{u"Alpha"_s, u"Beta"_s}));
    EXPECT_EQ(controller.panesOrder(), (QStringList{u"Alpha"_s, u"Beta"_s}));
    // Without debug the refusals are silent.
    EXPECT_FALSE(quiet.contains(u"PREFERENCES DEBUG"_s));
    // The toolbar order keeps only loaded panes and, with debug, reports the rest.
    controller.setDebug(true);
    testing::internal::CaptureStderr();
    controller.setPanesOrder({u"Beta"_s, u"Gamma"_s, u"Alpha"_s});
    const QString debug = QString::fromStdString(testing::internal::GetCapturedStderr());
    EXPECT_EQ(controller.panesOrder(), (QStringList{u"Beta"_s, u"Alpha"_s}));
    EXPECT_TRUE(debug.contains(QStringLiteral(
        "[--- PREFERENCES DEBUG MESSAGE ---]\rDid not add preference pane \"Gamma\" to the toolbar "
        "ordering array, because that pane does not exist.\r\r")));

    const QString suffix = u".preferencePane"_s;
    const QString notAPane = QStringLiteral(
        "Did not load bundle: %1 because its Principal Class is either not an NSObject subclass, "
        "or does not conform to the PreferencePane Protocol.");
    struct Case
    {
        QString path;
        bool loads;
        QString message;
    };
    const Case cases[] = {
        {kBundles + u"/TestPanes"_s + suffix, true,
         u"Did not load a pane of bundle: %1 because it does not conform"_s},
        {kBundles + u"/DuplicateClass"_s + suffix, false,
         QStringLiteral("Did not load bundle: %1 because its Principal Class was already used in another "
                        "Preference pane.")},
        {kBundles + u"/NoPrincipalClass"_s + suffix, false,
         u"Could not obtain name of Principal Class for bundle: %1"_s},
        {kBundles + u"/NotAPane"_s + suffix, false, notAPane},
        {corrupt, false, notAPane},
        {empty, false, u"Could not initialize bundle: %1"_s},
    };
    for (const Case &c : cases) {
        QStringList messages;
        QList<QObject *> panes;
        EXPECT_EQ(
            PreferencePaneBundle::activatePane(c.path, &panes, [&](const QString &m) { messages.append(m); }),
            c.loads)
            << qPrintable(c.path);
        ASSERT_FALSE(messages.isEmpty()) << qPrintable(c.path);
        EXPECT_TRUE(messages.first().startsWith(c.message.arg(c.path))) << qPrintable(messages.first());
        EXPECT_EQ(panes.size(), c.loads ? 2 : 0);
    }
    // The same bundle again is no duplicate of itself.
    QList<QObject *> again;
    EXPECT_TRUE(PreferencePaneBundle::activatePane(cases[0].path, &again, [](const QString &) {}));
    EXPECT_EQ(again.size(), 2);
}

TEST_F(PrefsControllerTest, FirstOpeningShowsTheFirstOrTheRememberedPaneAndRefusesUnknownOnes)
{
    PaneFolder folder({u"TestPanes"_s});
    SS_PrefsController controller(folder.path());
    controller.setPanesOrder({u"Beta"_s, u"Alpha"_s});
    EXPECT_FALSE(controller.loadPrefsPaneNamed(u"Alpha"_s, true)); // no window yet
    EXPECT_FALSE(controller.showPane(u"Nothing"_s));
    EXPECT_EQ(controller.preferencesWindow(), nullptr);
    controller.showPreferencesWindow();
    ASSERT_NE(controller.preferencesWindow(), nullptr);
    EXPECT_EQ(controller.currentPaneName(), u"Beta"_s);
    EXPECT_EQ(UserDefaults::standardUserDefaults().stringForKey(lastPaneKey()), u"Beta"_s);
    EXPECT_EQ(controller.preferencesWindow()->windowTitle(), u"Beta Label"_s);
    EXPECT_EQ(controller.currentPane()->paneName(), u"Beta"_s);
    EXPECT_FALSE(controller.loadPrefsPaneNamed(u"Nothing"_s, true));
    EXPECT_EQ(controller.currentPaneName(), u"Beta"_s);

    ASSERT_TRUE(controller.loadPreferencePaneNamed(u"Alpha"_s));
    controller.destroyPreferencesWindow();
    EXPECT_EQ(controller.preferencesWindow(), nullptr);
    controller.showPreferencesWindow();
    EXPECT_EQ(controller.currentPaneName(), u"Alpha"_s);
    // A pane asked for by name opens the window with it.
    controller.destroyPreferencesWindow();
    EXPECT_TRUE(controller.showPane(u"Beta"_s));
    EXPECT_EQ(controller.currentPaneName(), u"Beta"_s);

    // A remembered pane that is gone falls back to the first other.
    struct Case
    {
        QString stored;
        QString shown;
    };
    for (const Case &c :
         {Case{u"Gone"_s, u"Alpha"_s}, Case{u"Beta"_s, u"Beta"_s}, Case{u"Alpha"_s, u"Alpha"_s}}) {
        UserDefaults::standardUserDefaults().setObject(c.stored, lastPaneKey());
        SS_PrefsController again(folder.path());
        again.createPreferencesWindowAndDisplay(false);
        EXPECT_EQ(again.currentPaneName(), c.shown) << qPrintable(c.stored);
        EXPECT_FALSE(again.preferencesWindow()->isVisible());
    }
}

TEST_F(PrefsControllerTest, ToolbarAndKeysSwitchPanesKeepingTheTopEdgeAndTheCheckActionFollowsItsHandler)
{
    PaneFolder folder({u"TestPanes"_s});
    SS_PrefsController controller(folder.path());
    controller.showPreferencesWindow();
    QMainWindow *window = controller.preferencesWindow();
    QToolBar *toolbar = controller.preferencesToolbar();
    ASSERT_NE(toolbar, nullptr);
    const int top = window->geometry().top();
    const int toolbarHeight = toolbar->sizeHint().height();
    EXPECT_EQ(window->height(), 380 + toolbarHeight);
    // Alpha allows no resizing; Beta grows only in height.
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    EXPECT_FALSE(toolbar->isMovable());
    EXPECT_EQ(toolbar->objectName(), u"com.ostrel.Corvex_Preferences_Toolbar_Identifier"_s);
    ASSERT_EQ(toolbar->actions().size(), 2);
    QAction *alpha = toolbar->actions().at(0);
    EXPECT_EQ(alpha->text(), u"Alpha Label"_s);
    EXPECT_EQ(alpha->toolTip(), u"Alpha tip"_s);
    EXPECT_TRUE(alpha->isChecked());

    QWidget *alphaView = viewOf(controller, u"Alpha"_s);
    ASSERT_NE(alphaView, nullptr);
    const int loads = alphaView->property("didLoad").toInt();
    alpha->trigger();
    EXPECT_EQ(alphaView->property("didLoad").toInt(), loads);
    EXPECT_EQ(alphaView->property("willUnload").toInt(), 0);

    QSignalSpy shown(&controller, &SS_PrefsController::paneShown);
    // Window shortcuts reach the active window only.
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    QTest::keyClick(window, Qt::Key_PageDown, Qt::ControlModifier);
    ASSERT_EQ(shown.size(), 1);
    EXPECT_EQ(controller.currentPaneName(), u"Beta"_s);
    EXPECT_EQ(alphaView->property("willUnload").toInt(), 1);
    EXPECT_TRUE(toolbar->actions().at(1)->isChecked());
    // The switch keeps the top edge and sizes the window to the pane.
    EXPECT_EQ(window->geometry().top(), top);
    EXPECT_EQ(window->height(), 140 + toolbarHeight);
    EXPECT_EQ(window->minimumHeight(), 140 + toolbarHeight);
    EXPECT_EQ(window->maximumHeight(), QWIDGETSIZE_MAX);
    EXPECT_EQ(window->maximumWidth(), window->minimumWidth());
    EXPECT_EQ(window->windowTitle(), u"Beta Label"_s);
    EXPECT_EQ(viewOf(controller, u"Alpha"_s), nullptr); // the old view left the window
    QTest::keyClick(window, Qt::Key_PageUp, Qt::ControlModifier);
    EXPECT_EQ(controller.currentPaneName(), u"Alpha"_s);

    // The window's Check for Updates action is there once a handler is.
    auto *check = window->findChild<QAction *>(u"checkForUpdatesAction"_s);
    ASSERT_NE(check, nullptr);
    EXPECT_FALSE(check->isEnabled());
    int checks = 0;
    controller.setCheckForUpdatesHandler([&] { ++checks; });
    EXPECT_TRUE(check->isEnabled());
    check->trigger();
    EXPECT_EQ(checks, 1);
}

TEST_F(PrefsControllerTest, EscapeAndCtrlWHideTheWindowAndSayItClosed)
{
    PaneFolder folder({u"TestPanes"_s});
    SS_PrefsController controller(folder.path());
    QSignalSpy closed(&controller, &SS_PrefsController::windowClosed);
    for (const QKeySequence &keys : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)}) {
        controller.showPreferencesWindow();
        QMainWindow *window = controller.preferencesWindow();
        ASSERT_TRUE(window->isVisible());
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        QTest::keySequence(window, keys);
        EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); })) << qPrintable(keys.toString());
        EXPECT_EQ(controller.preferencesWindow(), window); // kept for the next display
    }
    EXPECT_TRUE(waitUntil([&] { return closed.size() == 2; }));
}

TEST_F(PrefsControllerTest, SinglePaneHasNoToolbarUnlessAlwaysShown)
{
    PaneFolder folder({u"Solo"_s});
    for (const bool always : {false, true}) {
        SS_PrefsController controller(folder.path());
        controller.setAlwaysShowsToolbar(always);
        controller.showPreferencesWindow();
        ASSERT_EQ(controller.currentPaneName(), u"Solo"_s);
        EXPECT_EQ(controller.preferencesToolbar()->isVisibleTo(controller.preferencesWindow()), always);
        EXPECT_EQ(controller.preferencesWindow()->windowTitle(), always ? u"Solo Label"_s : u"Preferences"_s);
        EXPECT_EQ(controller.preferencesWindow()->height(),
                  200 + (always ? controller.preferencesToolbar()->sizeHint().height() : 0));
    }
}

TEST_F(PrefsControllerTest, NoPaneAtAllShowsTheAlertAndNoWindow)
{
    QTemporaryDir empty;
    SS_PrefsController controller(empty.path());
    QString informative;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [&] {
        if (auto *alert = qobject_cast<QZAlert *>(QApplication::activeModalWidget())) {
            informative = alert->informativeText();
            alert->buttons().first()->click();
        }
    });
    answer.start(20);
    controller.showPreferencesWindow();
    answer.stop();
    EXPECT_EQ(informative, u"Preferences are not available for Corvex."_s);
    EXPECT_EQ(controller.preferencesWindow(), nullptr);
    EXPECT_TRUE(controller.loadedPanes().isEmpty());
}

} // namespace
