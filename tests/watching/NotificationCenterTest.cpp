// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/NotificationCenter.h"
#include "TestSupport.h"
#include "watching/UKMainThreadProxy.h"

#include <QObject>
#include <QThread>
#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <thread>

using namespace Qt::StringLiterals;

using corvex::test::waitUntil;
using Notification = NotificationCenter::Notification;

namespace {

TEST(NotificationCenterTest, DeliversMatchingNamesAndObjectsInOrder)
{
    NotificationCenter center;
    int poster = 0;
    int otherPoster = 0;
    QStringList seen;
    center.addObserver(u"A"_s, nullptr, nullptr, [&](const Notification &n) {
        seen.append(u"any-object:"_s + n.name + n.userInfo.value(u"k"_s).toString());
    });
    center.addObserver(u"A"_s, &poster, nullptr,
                       [&](const Notification &n) { seen.append(u"poster:"_s + n.name); });
    center.addObserver(QString(), nullptr, nullptr,
                       [&](const Notification &n) { seen.append(u"every:"_s + n.name); });

    center.post(u"A"_s, &poster, {{u"k"_s, u"1"_s}});
    center.post(u"A"_s, &otherPoster);
    center.post(u"B"_s, &poster);
    EXPECT_EQ(seen, (QStringList{u"any-object:A1"_s, u"poster:A"_s, u"every:A"_s, u"any-object:A"_s,
                                 u"every:A"_s, u"every:B"_s}));
}

// An observer may also remove itself and add others while it runs; those it adds are not part of that post.
TEST(NotificationCenterTest, RemovalByTokenByContextByContextDestructionAndFromWithin)
{
    NotificationCenter center;
    int calls = 0;
    auto *context = new QObject;
    const auto token = center.addObserver(u"N"_s, nullptr, nullptr, [&](const Notification &) { ++calls; });
    center.addObserver(u"N"_s, nullptr, context, [&](const Notification &) { calls += 10; });
    center.addObserver(u"M"_s, nullptr, context, [&](const Notification &) { calls += 100; });
    center.post(u"N"_s);
    EXPECT_EQ(calls, 11);

    center.removeObserver(token);
    center.removeObserver(token); // unknown by now: ignored
    center.removeObserver(context, u"M"_s);
    center.post(u"N"_s);
    center.post(u"M"_s);
    EXPECT_EQ(calls, 21);
    EXPECT_EQ(center.observerCount(), 1);

    delete context;
    EXPECT_EQ(center.observerCount(), 0);
    center.post(u"N"_s);
    EXPECT_EQ(calls, 21);

    NotificationCenter::ObserverToken self = 0;
    self = center.addObserver(u"N"_s, nullptr, nullptr, [&](const Notification &) {
        ++calls;
        center.removeObserver(self);
        center.addObserver(u"N"_s, nullptr, nullptr, [&](const Notification &) { calls += 10; });
    });
    center.post(u"N"_s);
    EXPECT_EQ(calls, 22);
    center.post(u"N"_s);
    EXPECT_EQ(calls, 32);
}

TEST(NotificationCenterTest, ObserversRunSynchronouslyOnThePostingThread)
{
    NotificationCenter center;
    std::thread::id observerThread;
    bool observerDone = false;
    center.addObserver(u"N"_s, nullptr, nullptr, [&](const Notification &) {
        observerThread = std::this_thread::get_id();
        QThread::msleep(10);
        observerDone = true;
    });
    std::thread::id posterThread;
    bool doneWhenPostReturned = false;
    std::thread poster([&] {
        posterThread = std::this_thread::get_id();
        center.post(u"N"_s);
        doneWhenPostReturned = observerDone;
    });
    poster.join();
    EXPECT_EQ(observerThread, posterThread);
    EXPECT_TRUE(doneWhenPostReturned);
}

// Once removeObserver() returns, the observer is not running on any other thread and never runs again.
TEST(NotificationCenterTest, RemovalWaitsForADeliveryOnAnotherThread)
{
    NotificationCenter center;
    std::promise<void> entered;
    std::atomic<bool> running{false};
    std::atomic<int> calls{0};
    const auto token = center.addObserver(u"N"_s, nullptr, nullptr, [&](const Notification &) {
        running = true;
        if (calls++ == 0)
            entered.set_value();
        QThread::msleep(50);
        running = false;
    });
    std::atomic<bool> stop{false};
    std::thread poster([&] {
        while (!stop)
            center.post(u"N"_s);
    });
    entered.get_future().wait();
    center.removeObserver(token);
    const bool runningAfterRemoval = running;
    const int callsAfterRemoval = calls;
    QThread::msleep(20);
    stop = true;
    poster.join();
    EXPECT_FALSE(runningAfterRemoval);
    EXPECT_EQ(calls, callsAfterRemoval);
}

// A delivery on another thread that needs the main thread, while the main thread removes its observer (and
// so waits for that delivery): the main thread serves the call while it waits.
TEST(NotificationCenterTest, MainThreadRemovalServesADeliveryWaitingForIt)
{
    NotificationCenter center;
    std::atomic<bool> entered{false};
    std::atomic<bool> servedOnMainThread{false};
    const auto token = center.addObserver(u"N"_s, nullptr, nullptr, [&](const Notification &) {
        entered = true;
        UKMainThreadProxy::invoke([&] { servedOnMainThread = UKMainThreadProxy::isMainThread(); });
    });
    std::thread poster([&] { center.post(u"N"_s); });
    while (!entered)
        QThread::msleep(1);
    center.removeObserver(token);
    EXPECT_TRUE(servedOnMainThread);
    poster.join();
}

// Two threads each delivering a notification whose observer removes the other's observer: neither waits for
// the other, so both finish.
TEST(NotificationCenterTest, DeliveringThreadsDoNotWaitForEachOther)
{
    NotificationCenter center;
    std::atomic<NotificationCenter::ObserverToken> tokenA{0};
    std::atomic<NotificationCenter::ObserverToken> tokenB{0};
    std::atomic<int> arrived{0};
    const auto meetThenRemove = [&](std::atomic<NotificationCenter::ObserverToken> &other) {
        ++arrived;
        while (arrived < 2)
            QThread::usleep(100);
        center.removeObserver(other.load());
    };
    tokenA =
        center.addObserver(u"A"_s, nullptr, nullptr, [&](const Notification &) { meetThenRemove(tokenB); });
    tokenB =
        center.addObserver(u"B"_s, nullptr, nullptr, [&](const Notification &) { meetThenRemove(tokenA); });
    std::thread first([&] { center.post(u"A"_s); });
    std::thread second([&] { center.post(u"B"_s); });
    first.join();
    second.join();
    EXPECT_EQ(center.observerCount(), 0);
}

TEST(NotificationCenterTest, ConcurrentRegistrationRemovalAndPosting)
{
    NotificationCenter center;
    std::atomic<int> delivered{0};
    const auto permanent =
        center.addObserver(u"N"_s, nullptr, nullptr, [&](const Notification &) { ++delivered; });
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 2000; ++round) {
                const auto token = center.addObserver(u"N"_s, nullptr, nullptr, [](const Notification &) {});
                center.post(u"N"_s);
                center.removeObserver(token);
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(delivered, 6000);
    EXPECT_EQ(center.observerCount(), 1);
    center.removeObserver(permanent);
}

TEST(NotificationCenterTest, ProcessWideCentresAreDistinctSingletons)
{
    EXPECT_EQ(&NotificationCenter::defaultCenter(), &NotificationCenter::defaultCenter());
    EXPECT_EQ(&NotificationCenter::workspaceCenter(), &NotificationCenter::workspaceCenter());
    EXPECT_NE(&NotificationCenter::defaultCenter(), &NotificationCenter::workspaceCenter());
}

} // namespace
