// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/DispatchQueue.h"
#include "TestSupport.h"
#include "foundation/DispatchGroup.h"
#include "foundation/DispatchSemaphore.h"

#include <atomic>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

using corvex::test::waitUntil;

TEST(DispatchQueueTest, RunsAsynchronousWorkInOrderOnOneThread)
{
    DispatchQueue queue(u"test.order"_s);
    std::vector<int> order;
    std::vector<std::thread::id> threads;
    for (int i = 0; i < 1000; ++i) {
        queue.async([&, i] {
            EXPECT_TRUE(queue.isCurrent());
            order.push_back(i);
            threads.push_back(std::this_thread::get_id());
        });
    }
    queue.sync([] {});
    ASSERT_EQ(order.size(), 1000u);
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(order[size_t(i)], i);
    EXPECT_NE(threads.front(), std::this_thread::get_id());
    for (const std::thread::id &id : threads)
        EXPECT_EQ(id, threads.front());
    EXPECT_EQ(queue.label(), u"test.order"_s);
}

TEST(DispatchQueueTest, SyncWaitsForEarlierWorkAndNeverOverlapsIt)
{
    DispatchQueue queue;
    std::atomic<int> running{0};
    std::atomic<bool> overlapped{false};
    std::vector<int> order;
    auto work = [&](int value) {
        if (running.fetch_add(1) != 0)
            overlapped = true;
        std::this_thread::sleep_for(1ms);
        order.push_back(value);
        running.fetch_sub(1);
    };
    std::vector<std::thread> producers;
    for (int t = 0; t < 4; ++t) {
        producers.emplace_back([&, t] {
            for (int i = 0; i < 20; ++i) {
                if (i % 2)
                    queue.sync([&, t, i] { work(t * 100 + i); });
                else
                    queue.async([&, t, i] { work(t * 100 + i); });
            }
        });
    }
    for (std::thread &producer : producers)
        producer.join();
    queue.sync([] {});
    EXPECT_FALSE(overlapped);
    EXPECT_EQ(order.size(), 80u);
}

TEST(DispatchQueueTest, IdleSyncRunsOnCallerWithQueueCurrent)
{
    DispatchQueue outer(u"outer"_s);
    DispatchQueue inner(u"inner"_s);
    EXPECT_FALSE(outer.isCurrent());
    EXPECT_EQ(DispatchQueue::current(), nullptr);
    bool innerSeesBoth = false;
    const DispatchQueue *innermost = nullptr;
    std::thread::id ranOn;
    outer.sync([&] {
        inner.sync([&] {
            innerSeesBoth = inner.isCurrent() && outer.isCurrent();
            innermost = DispatchQueue::current();
            ranOn = std::this_thread::get_id();
        });
        EXPECT_FALSE(inner.isCurrent());
        EXPECT_EQ(DispatchQueue::current(), &outer);
    });
    EXPECT_TRUE(innerSeesBoth);
    EXPECT_EQ(innermost, &inner);
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    EXPECT_FALSE(outer.isCurrent());
}

TEST(DispatchQueueTest, DelayedWorkRunsWhenDueAndCanBeWithdrawn)
{
    DispatchQueue queue;
    std::atomic<bool> ran{false};
    std::atomic<bool> withdrawnRan{false};
    const auto start = DispatchQueue::Clock::now();
    std::atomic<DispatchQueue::Clock::duration> waited{};
    queue.asyncAfter(50ms, [&] {
        waited = DispatchQueue::Clock::now() - start;
        ran = true;
    });
    const quint64 withdrawn = queue.asyncAfter(60ms, [&] { withdrawnRan = true; });
    std::atomic<bool> laterRan{false};
    queue.asyncAfter(70ms, [&] { laterRan = true; });
    EXPECT_TRUE(queue.cancel(withdrawn));
    EXPECT_FALSE(queue.cancel(withdrawn));
    // Delayed work runs in the order it falls due: the withdrawn work would have run before the later work.
    ASSERT_TRUE(waitUntil([&] { return laterRan.load(); }));
    EXPECT_TRUE(ran);
    EXPECT_GE(waited.load(), 50ms);
    EXPECT_FALSE(withdrawnRan);
}

TEST(DispatchQueueTest, DestructionRunsSubmittedWorkAndDropsDelayedWork)
{
    std::atomic<int> done{0};
    std::atomic<bool> delayedRan{false};
    {
        DispatchQueue queue;
        for (int i = 0; i < 100; ++i) {
            queue.async([&] {
                std::this_thread::sleep_for(100us);
                ++done;
            });
        }
        queue.asyncAfter(10s, [&] { delayedRan = true; });
    }
    EXPECT_EQ(done.load(), 100);
    EXPECT_FALSE(delayedRan);
}

TEST(DispatchQueueTest, QueueReleasedFromItsOwnWorkEndsCleanly)
{
    auto queue = std::make_shared<DispatchQueue>();
    std::weak_ptr<DispatchQueue> weak = queue;
    std::atomic<bool> released{false};
    std::atomic<bool> finished{false};
    std::atomic<bool> laterRan{false};
    queue->async([holder = queue, &released, &finished]() mutable {
        while (!released)
            std::this_thread::sleep_for(1ms);
        holder.reset(); // the last owner: the queue is destroyed on its own thread
        finished = true;
    });
    queue->async([&laterRan] { laterRan = true; });
    queue.reset();
    released = true;
    EXPECT_TRUE(waitUntil([&] { return finished && laterRan; }))
        << "work submitted before the destruction runs";
    EXPECT_TRUE(weak.expired());
}

TEST(DispatchGroupTest, WaitReturnsOnceEveryMemberHasLeft)
{
    DispatchQueue first;
    DispatchQueue second;
    DispatchGroup group;
    std::atomic<int> done{0};
    for (int i = 0; i < 50; ++i) {
        group.async(i % 2 ? first : second, [&] {
            std::this_thread::sleep_for(200us);
            ++done;
        });
    }
    group.wait();
    EXPECT_EQ(done.load(), 50);

    group.enter();
    EXPECT_FALSE(group.wait(20ms));
    std::thread leaver([&] {
        std::this_thread::sleep_for(10ms);
        group.leave();
    });
    EXPECT_TRUE(group.wait(5s));
    leaver.join();
}

TEST(DispatchSemaphoreTest, CountsUnitsAndBlocksWhenNoneAreLeft)
{
    DispatchSemaphore semaphore(2);
    semaphore.wait();
    semaphore.wait();
    EXPECT_EQ(semaphore.value(), 0);
    EXPECT_FALSE(semaphore.wait(20ms));
    EXPECT_EQ(semaphore.value(), 0) << "a timed-out wait gives its unit back";
    EXPECT_FALSE(semaphore.signal()) << "nobody waits";
    EXPECT_EQ(semaphore.value(), 1);
    EXPECT_TRUE(semaphore.wait(0ms));

    std::atomic<bool> through{false};
    std::thread waiter([&] {
        semaphore.wait();
        through = true;
    });
    // The waiter is counted as soon as it waits.
    EXPECT_TRUE(waitUntil([&] { return semaphore.value() == -1; }));
    EXPECT_FALSE(through);
    EXPECT_TRUE(semaphore.signal());
    waiter.join();
    EXPECT_TRUE(through);
    EXPECT_EQ(semaphore.value(), 0);
}

TEST(DispatchSemaphoreTest, NoUnitIsLostUnderContention)
{
    DispatchSemaphore semaphore(0);
    std::atomic<int> taken{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 2000; ++i) {
                if (i % 3 == 0) {
                    while (!semaphore.wait(1ms)) {
                    }
                } else {
                    semaphore.wait();
                }
                ++taken;
            }
        });
    }
    for (int i = 0; i < 8000; ++i)
        semaphore.signal();
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(taken.load(), 8000);
    EXPECT_EQ(semaphore.value(), 0);
}
