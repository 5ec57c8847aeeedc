// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/UKFNSubscribeFileWatcher.h"
#include "watching/NotificationCenter.h"
#include "TestSupport.h"
#include "watching/UKFileWatcherDelegate.h"
#include "watching/UKMainThreadProxy.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <ostream>

using corvex::test::waitUntil;
using corvex::test::writeFile;

void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

namespace {

class Delegate : public UKFileWatcherDelegate
{
public:
    void watcher(UKFileWatcher *, const QString &notification, const QString &path) override
    {
        calls.append(notification + QLatin1Char(' ') + path);
        onMainThread = onMainThread && UKMainThreadProxy::isMainThread();
    }
    QStringList calls;
    bool onMainThread = true;
};

class UKFNSubscribeFileWatcherTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        static int run = 0;
        mRoot = corvex::test::home() + QStringLiteral("/subscribe-%1").arg(++run);
        ASSERT_TRUE(QDir().mkpath(mRoot + QStringLiteral("/a")));
        ASSERT_TRUE(QDir().mkpath(mRoot + QStringLiteral("/b")));
        mToken = NotificationCenter::workspaceCenter().addObserver(
            UKKQueueFileWrittenToNotification, &mWatcher, nullptr,
            [this](const NotificationCenter::Notification &n) {
                mPosted.append(n.userInfo.value(QStringLiteral("path")).toString());
            });
        mWatcher.setDelegate(&mDelegate);
    }
    void TearDown() override { NotificationCenter::workspaceCenter().removeObserver(mToken); }

    QString mRoot;
    UKFNSubscribeFileWatcher mWatcher;
    Delegate mDelegate;
    QStringList mPosted;
    NotificationCenter::ObserverToken mToken = 0;
};

TEST_F(UKFNSubscribeFileWatcherTest, ChangesInAFolderPostAndTellTheDelegate)
{
    const QString folder = mRoot + QStringLiteral("/a");
    mWatcher.addPath(folder);
    writeFile(folder + QStringLiteral("/new.png"), "png");
    ASSERT_TRUE(waitUntil([&] { return !mPosted.isEmpty(); }));
    EXPECT_EQ(mPosted.first(), folder);
    ASSERT_FALSE(mDelegate.calls.isEmpty());
    EXPECT_EQ(mDelegate.calls.first(), UKKQueueFileWrittenToNotification + QLatin1Char(' ') + folder);
    EXPECT_TRUE(mDelegate.onMainThread);

    // A rename inside the folder is a change too.
    const qsizetype before = mPosted.size();
    ASSERT_TRUE(QFile::rename(folder + QStringLiteral("/new.png"), folder + QStringLiteral("/renamed.png")));
    ASSERT_TRUE(waitUntil([&] { return mPosted.size() > before; }));
    EXPECT_EQ(mPosted.last(), folder);
}

TEST_F(UKFNSubscribeFileWatcherTest, RemovedAndUnknownPaths)
{
    const QString a = mRoot + QStringLiteral("/a");
    const QString b = mRoot + QStringLiteral("/b");
    mWatcher.removePath(a); // never added: nothing happens
    mWatcher.addPath(a);
    mWatcher.addPath(b);
    mWatcher.removePath(a);
    EXPECT_EQ(mWatcher.subscribedPaths(), QStringList{b});

    // A change in the removed folder, then one in the watched folder: only the latter is reported.
    writeFile(a + QStringLiteral("/x.png"), "x");
    writeFile(b + QStringLiteral("/y.png"), "y");
    ASSERT_TRUE(waitUntil([&] { return mPosted.contains(b); }));
    corvex::test::spin(std::chrono::milliseconds(20));
    EXPECT_FALSE(mPosted.contains(a));
}

TEST_F(UKFNSubscribeFileWatcherTest, TwoPathsOfOneFolderAreEachReported)
{
    const QString plain = mRoot + QStringLiteral("/a");
    const QString roundabout = mRoot + QStringLiteral("/b/../a");
    mWatcher.addPath(plain);
    mWatcher.addPath(roundabout);
    mWatcher.addPath(plain); // again: still one subscription for it
    EXPECT_EQ(mWatcher.subscribedPaths(), (QStringList{plain, roundabout}));
    writeFile(plain + QStringLiteral("/z.png"), "z");
    ASSERT_TRUE(waitUntil([&] { return mPosted.size() >= 2; }));
    EXPECT_EQ(mPosted.mid(0, 2), (QStringList{plain, roundabout}));

    // Removing one of them keeps the folder's watch for the other.
    mWatcher.removePath(plain);
    const qsizetype before = mPosted.size();
    writeFile(plain + QStringLiteral("/w.png"), "w");
    ASSERT_TRUE(waitUntil([&] { return mPosted.size() > before; }));
    EXPECT_EQ(mPosted.last(), roundabout);
    EXPECT_FALSE(mPosted.mid(before).contains(plain));
}

TEST_F(UKFNSubscribeFileWatcherTest, FailedSubscriptionIsReportedOnStderr)
{
    ::testing::internal::CaptureStderr();
    const QString missing = mRoot + QStringLiteral("/missing");
    mWatcher.addPath(missing);
    const std::string output = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(output,
              "UKFNSubscribeFileWatcher addPath: " + missing.toStdString() + " failed due to error ID=2.\n");
    EXPECT_TRUE(mWatcher.subscribedPaths().isEmpty());
}

} // namespace
