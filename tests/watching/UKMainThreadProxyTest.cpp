// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/UKMainThreadProxy.h"
#include "TestSupport.h"
#include "watching/UKMainThreadTargetProxy.h"

#include <QThread>
#include <atomic>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

using corvex::test::waitUntil;

namespace {

class Counter
{
public:
    int add(int amount)
    {
        onMainThread = UKMainThreadProxy::isMainThread();
        value += amount;
        return value;
    }
    void reset() { value = 0; }
    int value = 0;
    bool onMainThread = false;
};

// An exception thrown by the call reaches the caller on its own thread.
TEST(UKMainThreadProxyTest, CallsFromOtherThreadsRunOnTheMainThreadAndWait)
{
    // On the main thread a call runs at once.
    bool ranInline = false;
    UKMainThreadProxy::invoke([&] { ranInline = true; });
    EXPECT_TRUE(ranInline);

    // From another thread: it runs on the main thread, and invoke() returns only after it has run.
    std::atomic<bool> sawResult{false};
    std::atomic<bool> onMainThread{false};
    std::atomic<bool> finished{false};
    std::atomic<bool> workerIsMain{true};
    std::atomic<bool> caught{false};
    std::thread worker([&] {
        workerIsMain = UKMainThreadProxy::isMainThread();
        int value = 0;
        UKMainThreadProxy::invoke([&] {
            onMainThread = UKMainThreadProxy::isMainThread();
            QThread::msleep(20);
            value = 42;
        });
        sawResult = value == 42;
        EXPECT_EQ(UKMainThreadProxy::invokeWithResult<int>([] { return 7; }), 7);
        try {
            UKMainThreadProxy::invoke([] { throw std::runtime_error("no"); });
        } catch (const std::runtime_error &error) {
            caught = std::string(error.what()) == "no";
        }
        finished = true;
    });
    ASSERT_TRUE(waitUntil([&] { return finished.load(); }));
    worker.join();
    EXPECT_FALSE(workerIsMain);
    EXPECT_TRUE(onMainThread);
    EXPECT_TRUE(sawResult);
    EXPECT_TRUE(caught);
}

// The main thread blocked in waitUntil() still serves calls, so a thread that needs the main thread before it
// can make the condition true does not deadlock with it.
TEST(UKMainThreadProxyTest, WaitingMainThreadServesCalls)
{
    std::atomic<bool> done{false};
    int servedValue = 0;
    std::thread worker([&] {
        UKMainThreadProxy::invoke([&] { servedValue = 5; });
        done = true;
        UKMainThreadProxy::conditionChanged();
    });
    UKMainThreadProxy::waitUntil([&] { return done.load(); });
    worker.join();
    EXPECT_EQ(servedValue, 5);
}

TEST(UKMainThreadProxyTest, TargetProxyForwardsResultsAndDropsCallsOnceCleared)
{
    Counter counter;
    UKMainThreadTargetProxy<Counter> proxy(&counter);
    std::atomic<int> first{0};
    std::atomic<int> afterClear{-1};
    std::atomic<bool> finished{false};
    std::thread worker([&] {
        first = proxy.perform(&Counter::add, 3);
        proxy.setTarget(nullptr);
        afterClear = proxy.perform(&Counter::add, 4);
        proxy.perform(&Counter::reset);
        finished = true;
    });
    ASSERT_TRUE(waitUntil([&] { return finished.load(); }));
    worker.join();
    EXPECT_EQ(first, 3);
    EXPECT_TRUE(counter.onMainThread);
    EXPECT_EQ(afterClear, 0);    // no target: a default result
    EXPECT_EQ(counter.value, 3); // neither the add nor the reset reached it
    EXPECT_EQ(proxy.target(), nullptr);
}

} // namespace
