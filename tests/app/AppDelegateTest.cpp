// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppDelegate.h"
#include "../core/CapturingLogger.h"
#include "WindowTestSupport.h"
#include "core/AppUserDefaults.h"
#include "core/SUUpdater.h"
#include "foundation/Notifications.h"
#include "foundation/Version.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/PropertyList.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace corvex::test;

namespace {

// Records the distributed notifications of the names, in order of arrival.
class NotificationRecorder
{
public:
    explicit NotificationRecorder(const QStringList &observedNames)
    {
        for (const QString &name : observedNames)
            mIds.append(DistributedNotificationCenter::defaultCenter().addObserver(
                name, nullptr, [this](const QString &posted, const QVariantMap &userInfo) {
                    names.append(posted);
                    infos.append(userInfo);
                    onDisk.append(
                        PropertyList::readFile(home() + u"/.config/corvex/com.ostrel.Corvex.plist"_s)
                            .toMap());
                }));
    }
    ~NotificationRecorder()
    {
        for (int id : mIds)
            DistributedNotificationCenter::defaultCenter().removeObserver(id);
    }
    QStringList names;
    QList<QVariantMap> infos;
    QList<QVariantMap> onDisk; // the preference file as it was when each notification arrived

private:
    QList<int> mIds;
};

} // namespace

class AppDelegateTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        mDelegate = std::make_unique<AppDelegate>();
        mDelegate->addNotificationObservers();
    }
    void TearDown() override
    {
        QApplication::closeAllWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        mDelegate.reset();
    }
    std::unique_ptr<AppDelegate> mDelegate;
};

TEST_F(AppDelegateTest, FactoryDefaultsVersionStringAndMenusAreInPlace)
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    EXPECT_TRUE(defaults.boolForKey(u"showCorvexWindow"_s));
    EXPECT_EQ(defaults.stringForKey(u"autoReformatExtension"_s), u"jpg"_s);
    EXPECT_EQ(AppDelegate::appVersionString(),
              QStringLiteral(CORVEX_MARKETING_VERSION " (" CORVEX_SOURCE_REVISION ")"));
    EXPECT_FALSE(AppDelegate::osVersionString().isEmpty());
    EXPECT_EQ(AppDelegate::sharedDelegate(), mDelegate.get());
    EXPECT_TRUE(mDelegate->applicationShouldHandleReopen(false));

    // The menus reach every action, and every action is enabled.
    std::unique_ptr<QMenuBar> bar(mDelegate->menus()->makeMenuBar(nullptr, nullptr));
    QList<QAction *> reachable;
    for (QAction *menu : bar->actions())
        reachable += menu->menu()->actions();
    for (int which = int(AppDelegate::Action::About); which <= int(AppDelegate::Action::Quit); ++which) {
        EXPECT_TRUE(reachable.contains(mDelegate->action(AppDelegate::Action(which)))) << which;
        EXPECT_TRUE(mDelegate->action(AppDelegate::Action(which))->isEnabled()) << which;
    }
}

TEST_F(AppDelegateTest, ObservedPreferencesReachTheAgentAfterSynchronising)
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    NotificationRecorder recorder({CorvexShowStatusMenuNotification, CorvexHideStatusMenuNotification,
                                   CorvexDefaultsChangedNotification});
    defaults.setBool(false, u"showMenuIcon"_s);
    ASSERT_TRUE(waitUntil([&] { return recorder.names.size() >= 2; }));
    EXPECT_EQ(recorder.names,
              (QStringList{CorvexHideStatusMenuNotification, CorvexDefaultsChangedNotification}));
    EXPECT_EQ(recorder.onDisk.last().value(u"showMenuIcon"_s), QVariant(false))
        << "on disk before the agent is told";
    defaults.setBool(true, u"showMenuIcon"_s);
    ASSERT_TRUE(waitUntil([&] { return recorder.names.size() >= 4; }));
    EXPECT_EQ(recorder.names.mid(2),
              (QStringList{CorvexShowStatusMenuNotification, CorvexDefaultsChangedNotification}));

    recorder.names.clear();
    defaults.setObject(u"png"_s, u"autoReformatExtension"_s);
    ASSERT_TRUE(waitUntil([&] { return !recorder.names.isEmpty(); }));
    EXPECT_EQ(recorder.names, QStringList{CorvexDefaultsChangedNotification});
    EXPECT_TRUE(recorder.infos.last().isEmpty());
    EXPECT_EQ(recorder.onDisk.last().value(u"autoReformatExtension"_s), QVariant(u"png"_s));

    recorder.names.clear();
    defaults.setBool(false, u"quitAppAfterLastWindowClosed"_s);
    defaults.setBool(false, u"startAtLogIn"_s);
    // Notifications arrive in turn: once a later one is in, anything the two writes posted would be too.
    defaults.setObject(u"tiff"_s, u"autoReformatExtension"_s);
    ASSERT_TRUE(waitUntil([&] { return !recorder.names.isEmpty(); }));
    EXPECT_EQ(recorder.names, QStringList{CorvexDefaultsChangedNotification})
        << "unobserved keys and startAtLogIn post nothing";
    defaults.removeObjectForKey(u"quitAppAfterLastWindowClosed"_s);

    recorder.names.clear();
    mDelegate->removeNotificationObservers();
    defaults.setObject(u"gif"_s, u"autoReformatExtension"_s);
    DistributedNotificationCenter::defaultCenter().postNotificationName(CorvexShowStatusMenuNotification);
    ASSERT_TRUE(waitUntil([&] { return !recorder.names.isEmpty(); }));
    EXPECT_EQ(recorder.names, QStringList{CorvexShowStatusMenuNotification})
        << "no handler after the observers are removed";
}

TEST(AppDelegateLaunchTest, ScreenshotsAnnouncedWhileLaunchingOpenOnceLaunchedAndLaterOnesBehindTheOneInUse)
{
    const QString shot = writeImage(folder(u"LaunchShots"_s) + u"/Early.png"_s);
    AppDelegate delegate;
    delegate.keepScreenshotsUntilLaunched();
    NotificationRecorder arrived({CorvexScreenshotMatchedNotification});
    DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    center.postNotificationName(CorvexScreenshotMatchedNotification,
                                ScreenshotInfo(shot, 1).notificationDictionary());
    ASSERT_TRUE(waitUntil([&] { return arrived.names.size() == 1; }));
    EXPECT_TRUE(delegate.windowControllers().isEmpty()) << "nothing opens before launching has finished";

    delegate.addNotificationObservers();
    ASSERT_EQ(delegate.windowControllers().size(), 1);
    CorvexWindowController *first = delegate.windowControllers().first();
    EXPECT_EQ(first->screenshotInfo().filePath(), shot);
    ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == first->window(); }));
    EXPECT_EQ(delegate.mainWindowController(), first);
    EXPECT_NE(first->window()->findChild<QMenuBar *>(), nullptr) << "each window has the menus";

    center.postNotificationName(CorvexScreenshotMatchedNotification,
                                ScreenshotInfo(shot, 1).notificationDictionary());
    // A third screenshot's window comes after any second one of the screenshot before.
    const QString third = writeImage(folder(u"LaunchShots"_s) + u"/Later.png"_s);
    center.postNotificationName(CorvexScreenshotMatchedNotification,
                                ScreenshotInfo(third, 2).notificationDictionary());
    CorvexWindowController *later = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        for (CorvexWindowController *controller : delegate.windowControllers())
            if (controller->screenshotInfo().filePath() == third)
                later = controller;
        return later != nullptr;
    }));
    settleBackgroundWork();
    EXPECT_EQ(delegate.windowControllers().size(), 3) << "a later screenshot opens once, not twice";
    EXPECT_TRUE(later->window()->isVisible());
    EXPECT_EQ(QApplication::activeWindow(), first->window()) << "the user is not interrupted";
    delegate.removeNotificationObservers();
    QApplication::closeAllWindows();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

TEST_F(AppDelegateTest, ClosingTheLastRenamingWindowOrAnInstalledUpdateQuitsButNotOtherWindows)
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    QSignalSpy quits(mDelegate.get(), &AppDelegate::terminationRequested);
    const QString path = writeImage(folder(u"LastWindow"_s) + u"/Last.png"_s);
    mDelegate->screenshotTaken(ScreenshotInfo(path, 1).notificationDictionary());
    ASSERT_EQ(mDelegate->windowControllers().size(), 1);
    QPointer<CorvexWindowController> controller = mDelegate->windowControllers().first();
    controller->cancel();
    ASSERT_TRUE(waitUntil([&] { return quits.count() == 1; }));
    EXPECT_TRUE(mDelegate->windowControllers().isEmpty());
    ASSERT_TRUE(waitUntil([&] { return controller.isNull(); })) << "the controller is released";

    LogCapture log;
    QWidget other;
    other.show();
    other.close();
    ASSERT_TRUE(waitUntil([&] {
        return log.messages().contains(
            u"Not quitting because the last window closed was not a renaming window."_s);
    }));
    EXPECT_EQ(quits.count(), 1);

    defaults.setBool(false, u"quitAppAfterLastWindowClosed"_s);
    mDelegate->screenshotTaken(ScreenshotInfo(path, 1).notificationDictionary());
    mDelegate->windowControllers().first()->window()->close();
    ASSERT_TRUE(waitUntil([&] { return mDelegate->windowControllers().isEmpty(); }));
    settleBackgroundWork();
    EXPECT_EQ(quits.count(), 1) << "the preference keeps the application running";
    defaults.removeObjectForKey(u"quitAppAfterLastWindowClosed"_s);

    // An installed update ends the application once the updater has handed over.
    mDelegate->updaterWillRelaunchApplication(&SUUpdater::sharedUpdater());
    EXPECT_EQ(quits.count(), 1) << "the updater still has to start the new copy";
    ASSERT_TRUE(waitUntil([&] { return quits.count() == 2; }));
}

TEST_F(AppDelegateTest, ResetPreferencesAndCounter)
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setInteger(41, u"autoRenameCount"_s);
    defaults.setObject(u"tiff"_s, u"autoReformatExtension"_s);
    defaults.setBool(true, u"SUHasLaunchedBefore"_s);
    defaults.setBool(true, u"moveToApplicationsFolderAlertSuppress"_s);

    whenModalIsUp([](QWidget *alert) { buttonNamed(alert, u"Cancel"_s)->click(); });
    mDelegate->resetPreferences();
    EXPECT_EQ(defaults.integerForKey(u"autoRenameCount"_s), 41);

    NotificationRecorder recorder({CorvexDefaultsChangedNotification});
    whenModalIsUp([](QWidget *alert) { buttonNamed(alert, u"Reset"_s)->click(); });
    mDelegate->resetPreferences();
    EXPECT_EQ(defaults.integerForKey(u"autoRenameCount"_s), 0);
    EXPECT_EQ(defaults.stringForKey(u"autoReformatExtension"_s), u"jpg"_s);
    EXPECT_FALSE(defaults.objectForKey(u"SUHasLaunchedBefore"_s).isValid());
    EXPECT_FALSE(defaults.boolForKey(u"moveToApplicationsFolderAlertSuppress"_s));
    EXPECT_TRUE(waitUntil([&] { return !recorder.names.isEmpty(); })) << "the agent hears of the reset";

    defaults.setInteger(7, u"autoRenameCount"_s);
    recorder.names.clear();
    mDelegate->resetAutoRenameCounter();
    EXPECT_EQ(defaults.integerForKey(u"autoRenameCount"_s), 0);
    EXPECT_TRUE(waitUntil([&] { return !recorder.names.isEmpty(); }));
}
