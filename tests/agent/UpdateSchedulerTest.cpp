// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/UpdateScheduler.h"
#include "../core/SUTestSupport.h"
#include "core/AppUserDefaults.h"
#include "core/SUUpdater.h"
#include "foundation/PreferenceKeys.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QSignalSpy>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::home;
using corvex::test::waitUntil;

// A desktop notification service on the test's private bus that records what it is asked to show.
class NotificationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Shown
    {
        QString summary, body;
        QStringList actions;
    };
    QList<Shown> shown;

public Q_SLOTS:
    uint Notify(const QString &, uint, const QString &, const QString &summary, const QString &body,
                const QStringList &actions, const QVariantMap &, int)
    {
        shown.append({summary, body, actions});
        return uint(shown.size() + 40);
    }
};

class UpdateSchedulerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        static int count = 0;
        const QString bundle = sutest::makeInstalledBundle(home() + u"/S%1/Corvex.app"_s.arg(++count),
                                                           "2.0.5", key.publicKeyBase64());
        preferences = AppUserDefaults::userDefaultsWithBundleIdentifier(u"test.sched%1"_s.arg(count));
        updater = std::make_unique<SUUpdater>(Bundle(bundle), *preferences);
        updater->setFeedURL(server.url("/appcast.xml"));
        scheduler = std::make_unique<UpdateScheduler>(*updater, *preferences);
        scheduler->setOpenUpdateWindowHandler([this] { ++windowsOpened; });
        QDBusConnection bus = QDBusConnection::sessionBus();
        ASSERT_TRUE(
            bus.registerObject("/org/freedesktop/Notifications", &service, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(bus.registerService("org.freedesktop.Notifications"));
    }
    void TearDown() override
    {
        QDBusConnection::sessionBus().unregisterService("org.freedesktop.Notifications");
        QDBusConnection::sessionBus().unregisterObject("/org/freedesktop/Notifications");
    }

    void enable()
    {
        preferences->setBool(true, kCheckForUpdatesKey);
        preferences->setBool(true, kSUEnableAutomaticChecksKey);
    }

    NotificationService service;
    sutest::Server server;
    sutest::Key key;
    std::unique_ptr<AppUserDefaults> preferences;
    std::unique_ptr<SUUpdater> updater;
    std::unique_ptr<UpdateScheduler> scheduler;
    int windowsOpened = 0;
};

TEST_F(UpdateSchedulerTest, OneTimerForTheNextDueCheck)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const struct
    {
        bool checkForUpdates, automatic;
        qint64 lastCheckAgo; // seconds; -1: never
        qint64 interval;     // 0: not set
        qint64 expectedIn;   // seconds from now; -1: not scheduled
    } cases[] = {
        {false, true, -1, 0, -1},
        {true, false, -1, 0, -1},
        {true, true, -1, 0, 60},             // never checked: soon after start
        {true, true, 3600, 0, 86400 - 3600}, // a day after the last check
        {true, true, 3 * 86400, 0, 60},      // overdue: soon after start
        {true, true, 3600, 7200, 3600},      // a shorter interval
        {true, true, 0, 60, 3600},           // intervals below an hour count as an hour
        {true, true, -86400 * 30, 0, 86400}, // a last check in the future (clock set back)
    };
    for (const auto &c : cases) {
        preferences->setBool(c.checkForUpdates, kCheckForUpdatesKey);
        preferences->setBool(c.automatic, kSUEnableAutomaticChecksKey);
        preferences->setObject(c.lastCheckAgo == -1 ? QVariant() : QVariant(now.addSecs(-c.lastCheckAgo)),
                               kSULastCheckTimeKey);
        preferences->setObject(c.interval ? QVariant(c.interval) : QVariant(), kSUScheduledCheckIntervalKey);
        UpdateScheduler fresh(*updater, *preferences);
        fresh.reschedule();
        if (c.expectedIn < 0) {
            EXPECT_FALSE(fresh.isScheduled()) << c.lastCheckAgo;
            continue;
        }
        ASSERT_TRUE(fresh.isScheduled()) << c.lastCheckAgo;
        EXPECT_NEAR(double(now.secsTo(fresh.nextCheckDate())), double(c.expectedIn), 5.0) << c.lastCheckAgo;
    }
}

TEST_F(UpdateSchedulerTest, ANewerVersionIsNotifiedOnceAndItsActionOpensTheWindow)
{
    const auto feed = [&](const char *version) {
        server.set("/appcast.xml",
                   {200, sutest::makeFeed({{version, server.url("/a.tar.xz").toString(), 10, "c2ln"}})});
    };
    feed("2.1");
    scheduler->checkNow(); // checks are off
    EXPECT_TRUE(server.requests.isEmpty());

    enable();
    feed("2.0.5");
    QSignalSpy finished(scheduler.get(), &UpdateScheduler::checkFinished);
    scheduler->checkNow();
    ASSERT_TRUE(waitUntil([&] { return finished.size() == 1; }));
    EXPECT_EQ(server.requests.size(), 1);
    EXPECT_TRUE(service.shown.isEmpty()) << "up to date";

    feed("2.1");
    scheduler->checkNow();
    ASSERT_TRUE(waitUntil([&] { return finished.size() == 2; }));
    ASSERT_EQ(service.shown.size(), 1);
    EXPECT_EQ(service.shown.first().summary, "A new version of Corvex is available");
    EXPECT_EQ(service.shown.first().body, "Corvex 2.1 is now available—you have 2.0.5.");
    EXPECT_EQ(service.shown.first().actions, (QStringList{"default", "Show Update"}));
    // The next check is a day away.
    EXPECT_NEAR(double(QDateTime::currentDateTimeUtc().secsTo(scheduler->nextCheckDate())), 86400.0, 5.0);

    scheduler->checkNow();
    ASSERT_TRUE(waitUntil([&] { return finished.size() == 3; }));
    EXPECT_EQ(service.shown.size(), 1); // the same version is not announced twice

    // Another notification's action does nothing; ours opens the update window.
    for (uint id : {uint(7), uint(41)}) {
        QDBusMessage signal = QDBusMessage::createSignal("/org/freedesktop/Notifications",
                                                         "org.freedesktop.Notifications", "ActionInvoked");
        signal << id << u"default"_s;
        QDBusConnection::sessionBus().send(signal);
    }
    EXPECT_TRUE(waitUntil([&] { return windowsOpened == 1; }));
}

} // namespace

#include "UpdateSchedulerTest.moc"
