// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

// A counting semaphore: wait() takes one unit and blocks while there is none; signal() gives one back and
// wakes one waiter. Taking and giving without contention costs one atomic operation.
class DispatchSemaphore
{
public:
    explicit DispatchSemaphore(long value = 0);

    DispatchSemaphore(const DispatchSemaphore &) = delete;
    DispatchSemaphore &operator=(const DispatchSemaphore &) = delete;

    // Takes one unit, waiting as long as it takes.
    void wait();

    // Takes one unit if one becomes available within the timeout; returns whether it did.
    bool wait(std::chrono::milliseconds timeout);

    // Gives one unit back, waking one waiter if there is one. Returns true when it woke a waiter.
    bool signal();
    // Gives `count` units back at once, waking as many waiters as there are units for. Returns true when it
    // woke any.
    bool signal(long count);

    // The units available now; negative when that many callers are waiting.
    long value() const;

private:
    void waitForWakeup();

    std::atomic<long> mValue;
    std::mutex mMutex;
    std::condition_variable mCondition;
    long mWakeups = 0;
};
