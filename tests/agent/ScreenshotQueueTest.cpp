// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// What happens to each screenshot: the automatic steps (run by the real agent; the steps themselves are the
// command-line tool's "process" test), a burst of screenshots, and, in this process, taking each file
// once and pausing the steps.
#include "agent/ScreenshotQueue.h"
#include "AgentTestSupport.h"
#include "RefusingAttributes.h"
#include "agent/ApplicationHandOff.h"
#include "core/AppUserDefaults.h"
#include "platform/CreatedFiles.h"

#include <QThread>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace corvex::test;
using namespace corvex::test::agent;

namespace {

using ScreenshotQueueTest = ScreenshotFolderTest;

QStringList namesIn(const QString &folder)
{
    return QDir(folder).entryList(QDir::Files, QDir::Name);
}

TEST_F(ScreenshotQueueTest, TheAgentAppliesTheStepsThenOpensOrHandsOver)
{
    ApplicationStandIn app;
    app.setRunning(true);
    const QString record = installRecordingOpener(u"recording-viewer"_s, "image/png;image/jpeg;");
    setBool("autoRename", true);
    setString("autoRenameFormat", u"Shot :$Counter2$"_s);
    setBool("openWith", true);
    setString("openWithBundleIdentifier", u"recording-viewer"_s);
    setBool("showCorvexWindow", false);
    AgentProcess agent;
    ASSERT_TRUE(agent.start(mFolder));

    writeFile(mFolder + u"/Screenshot all.png"_s, pngBytes());
    ASSERT_TRUE(waitUntil([&] { return !readLines(record).isEmpty(); }, std::chrono::seconds(10)));
    EXPECT_EQ(readLines(record), QStringList{mFolder + u"/Shot 01.png"_s});
    EXPECT_EQ(namesIn(mFolder), QStringList{u"Shot 01.png"_s});
    EXPECT_TRUE(app.received().isEmpty());

    // With the window on, the agent hands the result over (the process test shows it then does not open it).
    setBool("showCorvexWindow", true);
    writeFile(mFolder + u"/Screenshot window.png"_s, pngBytes());
    ASSERT_TRUE(waitUntil([&] { return app.received().size() == 1; }));
    EXPECT_EQ(app.receivedPaths(), QStringList{mFolder + u"/Shot 02.png"_s});
}

TEST_F(ScreenshotQueueTest, ABurstOfAHundredIsEachTakenOnce)
{
    ApplicationStandIn app;
    app.setRunning(true);
    setBool("showCorvexWindow", true);
    setBool("autoRename", true);
    setString("autoRenameFormat", u"Burst :$Counter3$"_s);
    AgentProcess agent;
    ASSERT_TRUE(agent.start(mFolder));

    const QByteArray png = pngBytes(64, 48);
    for (int i = 0; i < 100; ++i)
        writeFile(mFolder + u"/Screenshot burst %1.png"_s.arg(i), png);
    ASSERT_TRUE(waitUntil([&] { return app.received().size() >= 100; }, std::chrono::seconds(60)));
    // The agent takes files in turn: once a file written after the burst is in, a burst file taken twice
    // would have arrived before it.
    writeFile(mFolder + u"/Screenshot after the burst.png"_s, png);
    ASSERT_TRUE(waitUntil([&] { return app.received().size() >= 101; }));

    const QStringList paths = app.receivedPaths();
    EXPECT_EQ(paths.size(), 101);
    EXPECT_EQ(paths.last(), mFolder + u"/Burst 101.png"_s);
    // Every file renamed once, with a counter of its own.
    QStringList expected;
    for (int i = 1; i <= 101; ++i)
        expected.append(u"Burst %1.png"_s.arg(i, 3, 10, QLatin1Char('0')));
    EXPECT_EQ(namesIn(mFolder), expected);
    AppUserDefaults::sharedCorvexDefaults().synchronize();
    EXPECT_EQ(AppUserDefaults::sharedCorvexDefaults().integerForKey(u"autoRenameCount"_s), 101);
}

// In this process: the queue itself, with this test standing in for the running application.
TEST_F(ScreenshotQueueTest, TakesEachFileOnceAndSkipsFilesCorvexMade)
{
    ApplicationStandIn app;
    app.setRunning(true);
    setBool("showCorvexWindow", true);
    ApplicationHandOff handOff;
    ScreenshotQueue queue(&handOff);

    const QString empty = writeFile(mFolder + u"/Screenshot e.png"_s, QByteArray());
    queue.enqueue(empty);
    queue.waitUntilIdle();
    EXPECT_EQ(queue.takenCount(), 0) << "an empty file is not complete yet";
    writeFile(empty, pngBytes());
    queue.enqueue(empty);
    queue.enqueue(empty);
    const QString renamed = mFolder + u"/Screenshot e renamed.png"_s;
    queue.waitUntilIdle();
    ASSERT_TRUE(QFile::rename(empty, renamed));
    queue.enqueue(renamed);
    queue.enqueue(mFolder + u"/Screenshot missing.png"_s);

    // Files another Corvex process made, on a file system with extended attributes and on one without.
    const QString made = writeFile(mFolder + u"/Screenshot made.png"_s, pngBytes());
    CreatedFiles().markCreated(made);
    queue.enqueue(made);
    queue.waitUntilIdle();
    EXPECT_EQ(queue.takenCount(), 1);
    ASSERT_TRUE(waitUntil([&] { return app.received().size() == 1; }));
    EXPECT_EQ(app.receivedPaths(), QStringList{empty});
    const RefusingAttributes refusing;
    const QString madeWithout = writeFile(mFolder + u"/Screenshot made without.png"_s, pngBytes());
    CreatedFiles(refusing).markCreated(madeWithout);
    queue.enqueue(madeWithout);
    queue.waitUntilIdle();
    EXPECT_EQ(queue.takenCount(), 1);

    // Deleted and replaced by a new file of the same name: a new screenshot.
    QFile::remove(renamed);
    const QString replaced = writeFile(renamed, pngBytes(10, 10));
    queue.enqueue(replaced);
    queue.waitUntilIdle();
    EXPECT_EQ(queue.takenCount(), 2);
    ASSERT_TRUE(waitUntil([&] { return app.received().size() == 2; }));

    // A new file in the place of a deleted one Corvex made is a screenshot, even with the old one's inode.
    QFile::remove(madeWithout);
    queue.enqueue(writeFile(madeWithout, pngBytes(12, 12)));
    queue.waitUntilIdle();
    EXPECT_EQ(queue.takenCount(), 3);
    ASSERT_TRUE(waitUntil([&] { return app.received().size() == 3; }));
}

TEST_F(ScreenshotQueueTest, PausedStepsLeaveTheFileAsItIs)
{
    ApplicationStandIn app;
    app.setRunning(true);
    setBool("showCorvexWindow", true);
    setBool("autoRename", true);
    setString("autoRenameFormat", u"Paused :$Counter1$"_s);
    ApplicationHandOff handOff;
    ScreenshotQueue queue(&handOff);

    queue.setPaused(true);
    const QString path = writeFile(mFolder + u"/Screenshot p.png"_s, pngBytes());
    queue.enqueue(path);
    queue.waitUntilIdle();
    ASSERT_TRUE(waitUntil([&] { return app.received().size() == 1; }));
    EXPECT_EQ(app.receivedPaths(), QStringList{path});
    EXPECT_TRUE(QFileInfo::exists(path));

    queue.setPaused(false);
    const QString next = writeFile(mFolder + u"/Screenshot q.png"_s, pngBytes());
    queue.enqueue(next);
    queue.waitUntilIdle();
    ASSERT_TRUE(waitUntil([&] { return app.received().size() == 2; }));
    EXPECT_EQ(app.receivedPaths().last(), mFolder + u"/Paused 1.png"_s);

    // Once finished, nothing more is taken.
    queue.finish();
    queue.enqueue(writeFile(mFolder + u"/Screenshot r.png"_s, pngBytes()));
    queue.waitUntilIdle();
    EXPECT_EQ(queue.takenCount(), 2);
}

} // namespace
