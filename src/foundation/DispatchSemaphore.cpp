// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/DispatchSemaphore.h"

DispatchSemaphore::DispatchSemaphore(long value) : mValue(value) {}

void DispatchSemaphore::wait()
{
    if (mValue.fetch_sub(1, std::memory_order_acquire) > 0)
        return;
    waitForWakeup();
}

void DispatchSemaphore::waitForWakeup()
{
    std::unique_lock lock(mMutex);
    mCondition.wait(lock, [this] { return mWakeups > 0; });
    --mWakeups;
}

bool DispatchSemaphore::wait(std::chrono::milliseconds timeout)
{
    if (mValue.fetch_sub(1, std::memory_order_acquire) > 0)
        return true;
    {
        std::unique_lock lock(mMutex);
        if (mCondition.wait_for(lock, timeout, [this] { return mWakeups > 0; })) {
            --mWakeups;
            return true;
        }
    }
    // Timed out: give the unit we reserved back, unless a signal has already been issued for us.
    long current = mValue.load(std::memory_order_relaxed);
    while (current < 0) {
        if (mValue.compare_exchange_weak(current, current + 1, std::memory_order_relaxed))
            return false;
    }
    waitForWakeup();
    return true;
}

bool DispatchSemaphore::signal()
{
    return signal(1);
}

bool DispatchSemaphore::signal(long count)
{
    if (count <= 0)
        return false;
    const long before = mValue.fetch_add(count, std::memory_order_release);
    if (before >= 0)
        return false;
    const long woken = qMin(count, -before);
    // Notified under the lock: a woken waiter may destroy the semaphore once it has its unit.
    std::lock_guard lock(mMutex);
    mWakeups += woken;
    if (woken == 1)
        mCondition.notify_one();
    else
        mCondition.notify_all();
    return true;
}

long DispatchSemaphore::value() const
{
    return mValue.load(std::memory_order_relaxed);
}
