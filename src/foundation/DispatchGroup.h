// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

class DispatchQueue;

// A group of outstanding work items: wait() returns once every item entered has left.
class DispatchGroup
{
public:
    DispatchGroup() = default;
    DispatchGroup(const DispatchGroup &) = delete;
    DispatchGroup &operator=(const DispatchGroup &) = delete;

    // Counts one item in; every enter() needs one leave().
    void enter();
    // Counts one item out, waking the waiters when it was the last.
    void leave();

    // Submits work to the queue as a member of the group. The group must outlive the work.
    void async(DispatchQueue &queue, std::function<void()> work);

    // Waits until no item is outstanding.
    void wait();
    // Waits at most the timeout; returns whether no item was outstanding in the end.
    bool wait(std::chrono::milliseconds timeout);

private:
    std::mutex mMutex;
    std::condition_variable mCondition;
    long mCount = 0;
};
