// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/DispatchGroup.h"

#include "foundation/DispatchQueue.h"

void DispatchGroup::enter()
{
    std::lock_guard lock(mMutex);
    ++mCount;
}

void DispatchGroup::leave()
{
    // Notified under the lock: a waiter may destroy the group as soon as it sees the count reach 0.
    std::lock_guard lock(mMutex);
    Q_ASSERT(mCount > 0);
    if (--mCount == 0)
        mCondition.notify_all();
}

void DispatchGroup::async(DispatchQueue &queue, std::function<void()> work)
{
    enter();
    queue.async([this, work = std::move(work)] {
        work();
        leave();
    });
}

void DispatchGroup::wait()
{
    std::unique_lock lock(mMutex);
    mCondition.wait(lock, [this] { return mCount == 0; });
}

bool DispatchGroup::wait(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(mMutex);
    return mCondition.wait_for(lock, timeout, [this] { return mCount == 0; });
}
