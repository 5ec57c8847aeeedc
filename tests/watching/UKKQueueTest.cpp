// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/UKKQueue.h"
#include "TestSupport.h"
#include "watching/NotificationCenter.h"
#include "watching/UKFileWatcherDelegate.h"
#include "watching/UKMainThreadProxy.h"

#include <QDir>
#include <QFile>
#include <QThread>
#include <atomic>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <ostream>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

using corvex::test::waitUntil;
using corvex::test::writeFile;

// Readable failure messages.

namespace {

constexpr quint32 AllChanges = 0x7F;

// Records what a watcher posts on the workspace centre.
class Recorder
{
public:
    explicit Recorder(const UKKQueue *watcher)
    {
        mToken = NotificationCenter::workspaceCenter().addObserver(
            QString(), watcher, nullptr, [this](const NotificationCenter::Notification &notification) {
                std::lock_guard lock(mMutex);
                mEvents.append({notification.name, notification.userInfo.value(u"path"_s).toString()});
            });
    }
    ~Recorder() { NotificationCenter::workspaceCenter().removeObserver(mToken); }

    QStringList namesFor(const QString &path) const
    {
        std::lock_guard lock(mMutex);
        QStringList names;
        for (const auto &[name, eventPath] : mEvents) {
            if (eventPath == path)
                names.append(name);
        }
        return names;
    }

private:
    mutable std::mutex mMutex;
    QList<std::pair<QString, QString>> mEvents;
    NotificationCenter::ObserverToken mToken = 0;
};

class UKKQueueTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        static int run = 0;
        mFolder = corvex::test::home() + u"/watch-%1-"_s.arg(++run) +
                  QString::fromLatin1(::testing::UnitTest::GetInstance()->current_test_info()->name());
        QDir().mkpath(mFolder);
        mWatcher = UKKQueue::create();
        ASSERT_TRUE(mWatcher);
        mRecorder = std::make_unique<Recorder>(mWatcher.get());
        mSentinel = writeFile(mFolder + u"/sentinel"_s, "s");
        ASSERT_TRUE(mWatcher->addPathToQueueNotifyingAbout(mSentinel, UKKQueue::NOTE_WRITE));
    }
    void TearDown() override
    {
        mRecorder.reset();
        mWatcher.reset();
    }

    QString file(const QString &name, const QByteArray &contents = "screenshot")
    {
        return writeFile(mFolder + QLatin1Char('/') + name, contents);
    }

    // A new file in the folder, watched for the changes given.
    QString watched(const QString &name, quint32 mask = AllChanges)
    {
        const QString path = file(name);
        EXPECT_TRUE(mWatcher->addPathToQueueNotifyingAbout(path, mask));
        return path;
    }

    // Writes to the sentinel and waits for its notification: every change made before has been delivered.
    void settle()
    {
        const qsizetype before = mRecorder->namesFor(mSentinel).size();
        append(mSentinel, "x");
        ASSERT_TRUE(waitUntil([&] { return mRecorder->namesFor(mSentinel).size() > before; }));
    }

    static void append(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(bytes);
    }

    static void move(const QString &from, const QString &to)
    {
        ASSERT_EQ(::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()), 0);
    }

    QString mFolder;
    QString mSentinel;
    std::unique_ptr<UKKQueue> mWatcher;
    std::unique_ptr<Recorder> mRecorder;
};

// One change to each of several watched files, and what each is reported as.
TEST_F(UKKQueueTest, EachKindOfChangeIsReportedAsSuch)
{
    // With the rename-and-delete mask: one rename, for the path as it was added; one delete.
    const QString renamed = watched(u"renamed.png"_s, 33);
    move(renamed, renamed + u"2"_s);
    const QString deleted = watched(u"deleted.png"_s, 33);
    ASSERT_TRUE(QFile::remove(deleted));
    // Moved to the Trash on the same file system: a rename, not a delete.
    const QString trashed = watched(u"trashed.png"_s, 33);
    ASSERT_TRUE(QFile(trashed).moveToTrash());
    // Replaced by another file renamed over it (as editors save): the watched file is gone, a delete.
    const QString replaced = watched(u"replaced.png"_s, 33);
    move(file(u"replacement.png"_s), replaced);
    // Growing a file is a write and a size increase; the default mask hears only the write.
    const QString grown = watched(u"grown.png"_s);
    append(grown, "more");
    const QString grownDefault = file(u"grown-default.png"_s);
    ASSERT_TRUE(mWatcher->addPathToQueue(grownDefault));
    append(grownDefault, "more");
    // Overwriting in place without growth is only a write.
    const QString overwritten = watched(u"overwritten.png"_s);
    {
        QFile handle(overwritten);
        ASSERT_TRUE(handle.open(QIODevice::ReadWrite));
        handle.write("abc");
    }
    // Permissions are attributes; a new hard link and its removal are link-count changes only.
    const QString chmodded = watched(u"chmodded.png"_s);
    ASSERT_EQ(::chmod(QFile::encodeName(chmodded).constData(), 0600), 0);
    const QString linked = watched(u"linked.png"_s);
    ASSERT_EQ(::link(QFile::encodeName(linked).constData(), QFile::encodeName(linked + u"2"_s).constData()),
              0);
    // Unlinked while open elsewhere: reported at once.
    const QString unlinked = watched(u"open.png"_s);
    const int descriptor = ::open(QFile::encodeName(unlinked).constData(), O_RDONLY);
    ASSERT_GE(descriptor, 0);
    ASSERT_TRUE(QFile::remove(unlinked));
    // In a folder, a new entry is a write.
    const QString folder = mFolder + u"/watched-folder"_s;
    ASSERT_TRUE(QDir().mkpath(folder));
    ASSERT_TRUE(mWatcher->addPathToQueueNotifyingAbout(folder, AllChanges));
    file(u"watched-folder/new.png"_s);
    settle();

    EXPECT_EQ(mRecorder->namesFor(renamed), QStringList{UKKQueueFileRenamedNotification});
    EXPECT_TRUE(mRecorder->namesFor(renamed + u"2"_s).isEmpty());
    EXPECT_EQ(mRecorder->namesFor(deleted), QStringList{UKKQueueFileDeletedNotification});
    EXPECT_EQ(mRecorder->namesFor(trashed), QStringList{UKKQueueFileRenamedNotification});
    EXPECT_EQ(mRecorder->namesFor(replaced), QStringList{UKKQueueFileDeletedNotification});
    EXPECT_EQ(mRecorder->namesFor(grown),
              (QStringList{UKKQueueFileWrittenToNotification, UKKQueueFileSizeIncreasedNotification}));
    EXPECT_EQ(mRecorder->namesFor(grownDefault), QStringList{UKKQueueFileWrittenToNotification});
    EXPECT_EQ(mRecorder->namesFor(overwritten), QStringList{UKKQueueFileWrittenToNotification});
    EXPECT_EQ(mRecorder->namesFor(chmodded), QStringList{UKKQueueFileAttributesChangedNotification});
    EXPECT_EQ(mRecorder->namesFor(linked), QStringList{UKKQueueFileLinkCountChangedNotification});
    EXPECT_EQ(mRecorder->namesFor(unlinked),
              (QStringList{UKKQueueFileDeletedNotification, UKKQueueFileLinkCountChangedNotification}));
    EXPECT_EQ(mRecorder->namesFor(folder), QStringList{UKKQueueFileWrittenToNotification});

    // The second name removed; the kernel's own deletion event when the last holder closes the unlinked file
    // (not a second delete); a subfolder made, a write and a link-count change of its folder.
    ASSERT_TRUE(QFile::remove(linked + u"2"_s));
    ::close(descriptor);
    ASSERT_TRUE(QDir(folder).mkdir(u"sub"_s));
    settle();
    EXPECT_EQ(mRecorder->namesFor(linked), (QStringList{UKKQueueFileLinkCountChangedNotification,
                                                        UKKQueueFileLinkCountChangedNotification}));
    EXPECT_EQ(mRecorder->namesFor(unlinked).count(UKKQueueFileDeletedNotification), 1);
    EXPECT_EQ(mRecorder->namesFor(folder),
              (QStringList{UKKQueueFileWrittenToNotification, UKKQueueFileWrittenToNotification,
                           UKKQueueFileLinkCountChangedNotification}));
}

// Several kernel events for one file read at once become one set of notifications in the fixed order
// rename, write, delete, attributes, size increase, link count, whatever order the events came in.
TEST_F(UKKQueueTest, CombinedEventsArePostedInTheFixedOrder)
{
    const QString gate = watched(u"gate"_s, UKKQueue::NOTE_WRITE);
    std::promise<void> blocked;
    std::promise<void> release;
    std::shared_future<void> released = release.get_future().share();
    std::atomic<bool> armed{true};
    const auto token = NotificationCenter::workspaceCenter().addObserver(
        UKKQueueFileWrittenToNotification, mWatcher.get(), nullptr,
        [&](const NotificationCenter::Notification &n) {
            if (n.userInfo.value(u"path"_s).toString() == gate && armed.exchange(false)) {
                blocked.set_value();
                released.wait();
            }
        });

    const QString attributesFirst = watched(u"attributes-first.png"_s);
    const QString renamedThenDeleted = watched(u"renamed-then-deleted.png"_s);

    // Hold the watcher thread inside a delivery while the events pile up in the kernel.
    append(gate, "x");
    blocked.get_future().wait();
    ASSERT_EQ(::chmod(QFile::encodeName(attributesFirst).constData(), 0600), 0);
    ASSERT_EQ(::link(QFile::encodeName(attributesFirst).constData(),
                     QFile::encodeName(attributesFirst + ".link").constData()),
              0);
    append(attributesFirst, "grown");
    append(renamedThenDeleted, "grown");
    move(renamedThenDeleted, renamedThenDeleted + u".moved"_s);
    ASSERT_TRUE(QFile::remove(renamedThenDeleted + u".moved"_s));
    release.set_value();

    settle();
    NotificationCenter::workspaceCenter().removeObserver(token);
    EXPECT_EQ(mRecorder->namesFor(attributesFirst),
              (QStringList{UKKQueueFileWrittenToNotification, UKKQueueFileAttributesChangedNotification,
                           UKKQueueFileSizeIncreasedNotification, UKKQueueFileLinkCountChangedNotification}));
    EXPECT_EQ(mRecorder->namesFor(renamedThenDeleted),
              (QStringList{UKKQueueFileRenamedNotification, UKKQueueFileWrittenToNotification,
                           UKKQueueFileDeletedNotification, UKKQueueFileLinkCountChangedNotification}));
}

TEST_F(UKKQueueTest, SamePathTwiceIsWatchedTwiceAndRemovedOnceAtATime)
{
    const QString path = watched(u"twice.png"_s, UKKQueue::NOTE_WRITE);
    ASSERT_TRUE(mWatcher->addPathToQueueNotifyingAbout(path, UKKQueue::NOTE_WRITE | UKKQueue::NOTE_ATTRIB));
    EXPECT_EQ(mWatcher->watchedPaths(), (QStringList{mSentinel, path, path}));
    append(path, "1");
    settle();
    EXPECT_EQ(mRecorder->namesFor(path).size(), 2);

    // One removal takes the first entry (write only); the second (write and attributes) goes on.
    mWatcher->removePathFromQueue(path);
    EXPECT_EQ(mWatcher->watchedPaths(), (QStringList{mSentinel, path}));
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0600), 0);
    settle();
    EXPECT_EQ(mRecorder->namesFor(path).mid(2), QStringList{UKKQueueFileAttributesChangedNotification});

    // Removing an unwatched path changes nothing; removing the last entry ends the notifications.
    mWatcher->removePathFromQueue(mFolder + u"/never-added"_s);
    EXPECT_EQ(mWatcher->watchedPaths().size(), 2);
    mWatcher->removePath(path);
    append(path, "2");
    settle();
    EXPECT_EQ(mRecorder->namesFor(path).size(), 3);
    EXPECT_EQ(mWatcher->watchedPaths(), QStringList{mSentinel});
}

TEST_F(UKKQueueTest, MissingPathIsIgnoredWithoutAWord)
{
    ::testing::internal::CaptureStderr();
    CorvexError error;
    const bool added =
        mWatcher->addPathToQueueNotifyingAbout(mFolder + u"/missing.png"_s, AllChanges, &error);
    mWatcher->addPath(mFolder + u"/also-missing.png"_s);
    const std::string output = ::testing::internal::GetCapturedStderr();
    EXPECT_FALSE(added);
    EXPECT_EQ(output, "");
    EXPECT_EQ(error.code(), CorvexError::FileReadNoSuchFileError);
    EXPECT_EQ(mWatcher->watchedPaths(), QStringList{mSentinel});
    EXPECT_EQ(mWatcher->description(),
              u"UKKQueue { watchedPaths = (\n    \"%1\"\n), alwaysNotify = NO }"_s.arg(mSentinel));
}

class RecordingDelegate : public UKFileWatcherDelegate
{
public:
    void watcher(UKFileWatcher *watcher, const QString &notification, const QString &path) override
    {
        std::lock_guard lock(mutex);
        calls.append(notification + QLatin1Char(' ') + path);
        onMainThread = onMainThread && UKMainThreadProxy::isMainThread();
        lastWatcher = watcher;
    }
    std::mutex mutex;
    QStringList calls;
    bool onMainThread = true;
    UKFileWatcher *lastWatcher = nullptr;
};

TEST_F(UKKQueueTest, DelegateRunsOnTheMainThreadInsteadOfOrBeforeNotifications)
{
    RecordingDelegate delegate;
    const QString path = watched(u"delegated.png"_s, UKKQueue::NOTE_WRITE);
    mWatcher->setDelegate(&delegate);

    const QString pathCall = UKKQueueFileWrittenToNotification + QLatin1Char(' ') + path;
    const auto callsFor = [&](const QString &watched) {
        std::lock_guard lock(delegate.mutex);
        return delegate.calls.count(UKKQueueFileWrittenToNotification + QLatin1Char(' ') + watched);
    };
    append(path, "1");
    ASSERT_TRUE(waitUntil([&] { return callsFor(path) == 1; }));
    EXPECT_TRUE(delegate.onMainThread);
    EXPECT_EQ(delegate.lastWatcher, mWatcher.get());
    // Once the delegate hears of a later change, the first delivery is over.
    append(mSentinel, "x");
    ASSERT_TRUE(waitUntil([&] { return callsFor(mSentinel) == 1; }));

    // With alwaysNotify the notification follows the delegate call.
    mWatcher->setAlwaysNotify(true);
    std::vector<qsizetype> delegateCallsSeenByObserver;
    const auto token = NotificationCenter::workspaceCenter().addObserver(
        UKKQueueFileWrittenToNotification, mWatcher.get(), nullptr,
        [&](const NotificationCenter::Notification &n) {
            if (n.userInfo.value(u"path"_s).toString() != path)
                return;
            std::lock_guard lock(delegate.mutex);
            delegateCallsSeenByObserver.push_back(delegate.calls.count(pathCall));
        });
    append(path, "2");
    ASSERT_TRUE(waitUntil([&] { return !mRecorder->namesFor(path).isEmpty(); }));
    NotificationCenter::workspaceCenter().removeObserver(token);
    mWatcher->setDelegate(nullptr);
    EXPECT_EQ(delegateCallsSeenByObserver, std::vector<qsizetype>{2});
    // The first change, told to the delegate alone, never reached the centre.
    EXPECT_EQ(mRecorder->namesFor(path), QStringList{UKKQueueFileWrittenToNotification});
    EXPECT_EQ(callsFor(path), 2);
}

// An observer on the watcher thread that waits for the main thread, while the main thread destroys the
// watcher (and so waits for the watcher thread): the wait serves the observer's call, nobody deadlocks.
TEST_F(UKKQueueTest, DestroyingTheWatcherWhileADeliveryWaitsForTheMainThread)
{
    const QString path = watched(u"hop.png"_s, UKKQueue::NOTE_WRITE);
    std::atomic<bool> entered{false};
    std::atomic<bool> ranOnMainThread{false};
    const auto token = NotificationCenter::workspaceCenter().addObserver(
        UKKQueueFileWrittenToNotification, mWatcher.get(), nullptr,
        [&](const NotificationCenter::Notification &n) {
            if (n.userInfo.value(u"path"_s).toString() != path)
                return;
            entered = true;
            UKMainThreadProxy::invoke([&] { ranOnMainThread = UKMainThreadProxy::isMainThread(); });
        });
    append(path, "1");
    while (!entered) // no event loop runs here
        QThread::msleep(1);
    mRecorder.reset();
    mWatcher.reset();
    EXPECT_TRUE(ranOnMainThread);
    NotificationCenter::workspaceCenter().removeObserver(token);
}

TEST(UKKQueueSharedTest, SharedWatcherIsOneInstance)
{
    UKKQueue *shared = UKKQueue::sharedFileWatcher();
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(shared, UKKQueue::sharedFileWatcher());
    EXPECT_GE(shared->queueFD(), 0);
}

} // namespace
