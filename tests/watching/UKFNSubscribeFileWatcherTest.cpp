// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/UKFNSubscribeFileWatcher.h"
#include "TestSupport.h"
#include "watching/NotificationCenter.h"
#include "watching/UKFileWatcherDelegate.h"
#include "watching/UKMainThreadProxy.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

using corvex::test::waitUntil;
using corvex::test::writeFile;

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
        mRoot = corvex::test::home() + u"/subscribe-%1"_s.arg(++run);
        ASSERT_TRUE(QDir().mkpath(mRoot + u"/a"_s));
        ASSERT_TRUE(QDir().mkpath(mRoot + u"/b"_s));
        mToken = NotificationCenter::workspaceCenter().addObserver(
            UKKQueueFileWrittenToNotification, &mWatcher, nullptr,
            [this](const NotificationCenter::Notification &n) {
                mPosted.append(n.userInfo.value(u"path"_s).toString());
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
    const QString folder = mRoot + u"/a"_s;
    mWatcher.addPath(folder);
    writeFile(folder + u"/new.png"_s, "png");
    ASSERT_TRUE(waitUntil([&] { return !mPosted.isEmpty(); }));
    EXPECT_EQ(mPosted.first(), folder);
    ASSERT_FALSE(mDelegate.calls.isEmpty());
    EXPECT_EQ(mDelegate.calls.first(), UKKQueueFileWrittenToNotification + QLatin1Char(' ') + folder);
    EXPECT_TRUE(mDelegate.onMainThread);

    // A rename inside the folder is a change too.
    const qsizetype before = mPosted.size();
    ASSERT_TRUE(QFile::rename(folder + u"/new.png"_s, folder + u"/renamed.png"_s));
    ASSERT_TRUE(waitUntil([&] { return mPosted.size() > before; }));
    EXPECT_EQ(mPosted.last(), folder);
}

// A path added twice is watched once; two paths of one folder are each reported; a removed path is not.
TEST_F(UKFNSubscribeFileWatcherTest, AddedRemovedAndUnknownPaths)
{
    const QString plain = mRoot + u"/a"_s;
    const QString roundabout = mRoot + u"/b/../a"_s;
    const QString removed = mRoot + u"/b"_s;
    mWatcher.removePath(plain); // never added: nothing happens
    mWatcher.addPath(plain);
    mWatcher.addPath(removed);
    mWatcher.addPath(roundabout);
    mWatcher.addPath(plain); // again: still one subscription for it
    mWatcher.removePath(removed);
    EXPECT_EQ(mWatcher.subscribedPaths(), (QStringList{plain, roundabout}));
    // Changes are reported in turn: one in the removed folder would have come first.
    writeFile(removed + u"/y.png"_s, "y");
    writeFile(plain + u"/z.png"_s, "z");
    ASSERT_TRUE(waitUntil([&] { return mPosted.size() >= 2; }));
    EXPECT_EQ(mPosted.mid(0, 2), (QStringList{plain, roundabout}));

    // Removing one of them keeps the folder's watch for the other.
    mWatcher.removePath(plain);
    const qsizetype before = mPosted.size();
    writeFile(plain + u"/w.png"_s, "w");
    ASSERT_TRUE(waitUntil([&] { return mPosted.size() > before; }));
    EXPECT_EQ(mPosted.last(), roundabout);
    EXPECT_FALSE(mPosted.mid(before).contains(plain));
    EXPECT_FALSE(mPosted.contains(removed));
}

TEST_F(UKFNSubscribeFileWatcherTest, FailedSubscriptionIsReportedOnStderr)
{
    ::testing::internal::CaptureStderr();
    const QString missing = mRoot + u"/missing"_s;
    mWatcher.addPath(missing);
    const std::string output = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(output,
              "UKFNSubscribeFileWatcher addPath: " + missing.toStdString() + " failed due to error ID=2.\n");
    EXPECT_TRUE(mWatcher.subscribedPaths().isEmpty());
}

} // namespace
