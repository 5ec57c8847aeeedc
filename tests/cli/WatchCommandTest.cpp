// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"

#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <gtest/gtest.h>
#include <signal.h>

using namespace Qt::StringLiterals;

using corvex::test::runCli;
using corvex::test::waitUntil;
using corvex::test::writeFile;

namespace {

TEST(WatchCommandTest, PrintsEachChangeUntilTerminated)
{
    static int run = 0;
    const QString folder = corvex::test::home() + u"/watch-cli-%1"_s.arg(++run);
    const QString shot = writeFile(folder + u"/shot.png"_s, "png");
    const QString missing = folder + u"/missing.png"_s;
    QProcess watch;
    const auto stop = qScopeGuard([&] {
        watch.kill();
        watch.waitForFinished();
    });
    watch.start(QStringLiteral(CORVEX_CLI_PATH), {u"watch"_s, shot, missing});
    ASSERT_TRUE(watch.waitForStarted());

    // The missing path is reported once, after the first path is already watched.
    QByteArray err;
    ASSERT_TRUE(waitUntil([&] {
        err += watch.readAllStandardError();
        return err.contains('\n');
    }));
    EXPECT_EQ(err, "corvex: cannot watch " + QFile::encodeName(missing) + ": No such file or directory\n");

    {
        QFile file(shot);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write("more");
    }
    QByteArray out;
    const QByteArray written = "UKKQueueFileWrittenToNotification\t" + QFile::encodeName(shot) + "\n";
    ASSERT_TRUE(waitUntil([&] {
        out += watch.readAllStandardOutput();
        return out.size() >= written.size();
    }));
    EXPECT_EQ(out, written);

    ::kill(pid_t(watch.processId()), SIGTERM);
    ASSERT_TRUE(watch.waitForFinished(10000));
    EXPECT_EQ(watch.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(watch.exitCode(), 0);
    EXPECT_TRUE(watch.readAllStandardError().isEmpty());
}

TEST(WatchCommandTest, NothingToWatchFails)
{
    const auto none = runCli({u"watch"_s});
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_TRUE(none.err.startsWith("corvex: watch needs at least one path"));

    const auto missing = runCli({u"watch"_s, u"/nonexistent/a"_s, u"/nonexistent/b"_s});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err.count('\n'), 2);
    EXPECT_TRUE(missing.out.isEmpty());
}

} // namespace
