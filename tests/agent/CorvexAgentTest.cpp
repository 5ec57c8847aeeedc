// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The real agent as a process: one per session, which files it takes, the hand-off to a running and to a
// started application, following a moved screenshot folder, the shared log file, orderly termination.
#include "agent/CorvexAgent.h"
#include "AgentTestSupport.h"
#include "agent/UpdateScheduler.h"
#include "core/AppUserDefaults.h"
#include "foundation/Notifications.h"
#include "platform/Bookmark.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QTimeZone>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

using namespace corvex::test;
using namespace corvex::test::agent;

namespace {

using CorvexAgentTest = ScreenshotFolderTest;

TEST_F(CorvexAgentTest, ASecondAgentFindsTheFirstAndExits)
{
    AgentProcess first;
    ASSERT_TRUE(first.start(mFolder));
    const ProcessResult second = run(agentExecutable(), {}, {}, std::chrono::seconds(20));
    EXPECT_EQ(second.exitCode, 0);
    EXPECT_TRUE(second.err.contains("another agent is already running"));
    EXPECT_EQ(first.process().state(), QProcess::Running);
    EXPECT_TRUE(QDBusConnection::sessionBus().interface()->isServiceRegistered(u"com.ostrel.CorvexAgent"_s));
    EXPECT_EQ(first.terminate(), 0);
}

TEST_F(CorvexAgentTest, TakesScreenshotsOnceTheyAreCompleteAndOnlyThose)
{
    ApplicationStandIn app;
    app.setRunning(true);
    AgentProcess agent;
    ASSERT_TRUE(agent.start(mFolder));

    // Which names count is the matcher's (ScreenshotMatcherTest); these show the agent asks it. Files are
    // taken in turn, so any of them taken by mistake would come first.
    writeFile(shot(u"notes.png"_s), pngBytes());
    writeFile(shot(u"Screenshot list.txt"_s), "text");
    writeFile(shot(u"inner/Screenshot deeper.png"_s), pngBytes());

    const QByteArray png = pngBytes();
    QFile file(shot(u"Screenshot slow.png"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    for (qsizetype offset = 0; offset < png.size(); offset += 64) {
        file.write(png.mid(offset, 64));
        file.flush();
        spin(std::chrono::milliseconds(20));
    }
    EXPECT_TRUE(app.received().isEmpty()) << "taken before it was complete";
    file.close();
    ASSERT_TRUE(waitUntil([&] { return !app.received().isEmpty(); }));
    EXPECT_EQ(app.receivedPaths(), QStringList{file.fileName()});
    const QVariantMap userInfo = app.received().first();
    EXPECT_EQ(userInfo.value(CorvexScreenNumberKey).toLongLong(), 1);
    EXPECT_TRUE(userInfo.value(CorvexBookmarkDataKey).typeId() == QMetaType::QByteArray);
    EXPECT_EQ(userInfo.value(CorvexFileAttributesKey).toMap().value(u"NSFileSize"_s).toLongLong(),
              png.size());

    // Moved in whole, with an upper-case extension: a screenshot too.
    const QString outside = writeFile(home() + u"/elsewhere/Screenshot moved.PNG"_s, pngBytes());
    ASSERT_TRUE(QFile::rename(outside, shot(u"Screenshot moved.PNG"_s)));
    ASSERT_TRUE(waitUntil([&] { return app.received().size() == 2; }));
    EXPECT_EQ(app.receivedPaths(), (QStringList{file.fileName(), shot(u"Screenshot moved.PNG"_s)}));
}

TEST_F(CorvexAgentTest, StartsTheApplicationWithABookmarkKeyUsedOnce)
{
    ApplicationStandIn app; // not running: the agent must start it
    // A stand-in application bundle around the agent: its program records how it was started.
    const QString launches = freshFolder(u"launches"_s);
    const QString bundle = launches + u"/Corvex.app/Contents"_s;
    writeFile(bundle + u"/Info.plist"_s,
              PropertyList::serialize(QVariantMap{{u"CFBundleIdentifier"_s, kCorvexDomain},
                                                  {u"CFBundleExecutable"_s, u"FakeCorvex"_s}},
                                      PropertyList::Format::Xml));
    const QString fakeApp =
        writeFile(bundle + u"/MacOS/FakeCorvex"_s,
                  "#!/bin/sh\nd=\"$(dirname \"$0\")/../../..\"\nprintf '%s\\n' \"$@\" > \"$d/.partial-$$\"\n"
                  "mv \"$d/.partial-$$\" \"$d/launch-$$.txt\"\n");
    QFile::setPermissions(fakeApp, QFile::permissions(fakeApp) | QFile::ExeOwner);
    const QString agentBundle = QFileInfo(agentExecutable()).absolutePath() + u"/.."_s;
    const QString helper = bundle + u"/Helpers/CorvexAgent.app/Contents"_s;
    ASSERT_TRUE(QDir().mkpath(helper + u"/MacOS"_s));
    ASSERT_TRUE(QFile::copy(agentBundle + u"/Info.plist"_s, helper + u"/Info.plist"_s));
    // A hard link keeps the program's own path inside the stand-in bundle; a copy where links are refused.
    const QString agentCopy = helper + u"/MacOS/CorvexAgent"_s;
    if (::link(QFile::encodeName(agentExecutable()).constData(), QFile::encodeName(agentCopy).constData()) !=
        0) {
        ASSERT_TRUE(QFile::copy(agentExecutable(), agentCopy));
    }
    AgentProcess agent(agentCopy);
    ASSERT_TRUE(agent.start(mFolder));

    const QString first = writeFile(shot(u"Screenshot one.png"_s), pngBytes());
    const QString second = writeFile(shot(u"Screenshot two.png"_s), pngBytes());
    const auto launchFiles = [&] { return QDir(launches).entryList({u"launch-*.txt"_s}); };
    ASSERT_TRUE(waitUntil([&] { return launchFiles().size() == 2; }));

    QStringList keys;
    QStringList paths;
    for (const QString &name : launchFiles()) {
        const QStringList arguments = readLines(launches + u'/' + name);
        ASSERT_EQ(arguments.size(), 6) << arguments.join(u' ').toStdString();
        EXPECT_EQ(arguments, (QStringList{u"-filePath"_s, arguments.at(1), u"-screenNum"_s, u"1"_s,
                                          u"-bookmarkData"_s, arguments.at(5)}));
        paths.append(arguments.at(1));
        keys.append(arguments.at(5));
    }
    paths.sort();
    EXPECT_EQ(paths, (QStringList{first, second}));
    EXPECT_NE(keys.at(0), keys.at(1));
    AppUserDefaults &defaults = AppUserDefaults::sharedCorvexDefaults();
    defaults.synchronize();
    for (qsizetype i = 0; i < keys.size(); ++i) {
        const QByteArray bookmark = defaults.screenshotBookmarkDataForKey(keys.at(i));
        ASSERT_FALSE(bookmark.isEmpty());
        const std::optional<QString> resolved = Bookmark::resolve(bookmark);
        ASSERT_TRUE(resolved.has_value());
        EXPECT_TRUE(paths.contains(*resolved));
    }
    EXPECT_TRUE(app.received().isEmpty());
}

TEST_F(CorvexAgentTest, FollowsTheScreenshotFolderWhenItMoves)
{
    ApplicationStandIn app;
    app.setRunning(true);
    AgentProcess agent;
    ASSERT_TRUE(agent.start(mFolder));

    // A folder that does not exist yet: the agent waits for it.
    const QString moved = freshFolder(u"parent"_s) + u"/later/shots"_s;
    writeDefault(u"com.apple.screencapture"_s, u"location"_s, {moved});
    DistributedNotificationCenter::defaultCenter().postNotificationName(CorvexDefaultsChangedNotification);
    ASSERT_TRUE(waitUntil([&] { return logText().contains(u"waiting for it to appear"_s); }));
    ASSERT_TRUE(QDir().mkpath(moved));
    ASSERT_TRUE(waitUntil([&] { return logText().contains(u"Watching the screenshot folder "_s + moved); }));

    writeFile(shot(u"Screenshot old place.png"_s), pngBytes());
    const QString taken = writeFile(moved + u"/Screenshot new place.png"_s, pngBytes());
    ASSERT_TRUE(waitUntil([&] { return !app.received().isEmpty(); }));
    EXPECT_EQ(app.receivedPaths(), QStringList{taken});

    // The folder deleted and made again is watched again.
    ASSERT_TRUE(QDir(moved).removeRecursively());
    ASSERT_TRUE(QDir().mkpath(moved));
    const QString again = moved + u"/Screenshot again.png"_s;
    ASSERT_TRUE(waitUntil([&] {
        if (!QFileInfo::exists(again))
            writeFile(again, pngBytes());
        return app.received().size() == 2;
    }));
    EXPECT_EQ(app.receivedPaths(), (QStringList{taken, again}));
}

TEST_F(CorvexAgentTest, WritesTheApplicationsMessagesToTheSharedLog)
{
    AgentProcess agent;
    ASSERT_TRUE(agent.start(mFolder));
    const QDateTime timestamp(QDate(2026, 1, 2), QTime(3, 4, 5, 678));
    // The rest of a message's dictionary is AppLogRelayTest's.
    const QVariantMap message{{u"msg"_s, u"Hello from the application"_s}, {u"timestamp"_s, timestamp}};
    DistributedNotificationCenter::defaultCenter().postNotificationName(CorvexAppLogNotification, message);
    ASSERT_TRUE(waitUntil([&] { return logText().contains(u"Hello from the application"_s); }));
    EXPECT_TRUE(logText().contains(u"\n2026/01/02 03:04:05:678  Hello from the application\n"_s));
    EXPECT_EQ(agent.terminate(), 0);
}

TEST_F(CorvexAgentTest, TerminationFinishesInOrderAndLosesNothing)
{
    ApplicationStandIn app;
    app.setRunning(true);
    AgentProcess agent;
    ASSERT_TRUE(agent.start(mFolder));
    const QString path = writeFile(shot(u"Screenshot last.png"_s), pngBytes());
    EXPECT_EQ(agent.terminate(), 0);
    const QString log = logText();
    EXPECT_TRUE(log.endsWith(u"CorvexAgent is quitting\n"_s)) << log.right(300).toStdString();
    EXPECT_TRUE(QFileInfo::exists(path));
    // Either it was handed over before the end, or it was left as it is, never half-done.
    if (log.contains(u"New screenshot: "_s + path) && !log.contains(u"Left "_s + path)) {
        EXPECT_TRUE(waitUntil([&] { return app.received().size() == 1; }));
    }
}

// In the agent itself: the update checks are scheduled while they are on and follow a change of the
// preferences at once.
TEST_F(CorvexAgentTest, SchedulesUpdateChecksAsThePreferencesSay)
{
    CorvexAgent agent;
    agent.start();
    ASSERT_NE(agent.updateScheduler(), nullptr);
    EXPECT_FALSE(agent.updateScheduler()->isScheduled());
    for (const bool on : {true, false}) {
        setBool("checkForUpdates", on);
        setBool("SUEnableAutomaticChecks", true);
        DistributedNotificationCenter::defaultCenter().postNotificationName(
            CorvexDefaultsChangedNotification);
        EXPECT_TRUE(waitUntil([&] { return agent.updateScheduler()->isScheduled() == on; })) << on;
    }
}

} // namespace
