// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/DispatchQueue.h"

#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <thread>

struct DispatchQueue::State
{
    struct Delayed
    {
        Clock::time_point deadline;
        Work work;
    };

    const DispatchQueue *owner = nullptr;
    QString label;
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<Work> tasks;
    std::map<quint64, Delayed> delayed;
    quint64 nextDelayedId = 1;
    bool busy = false;          // work of the queue is running (on the worker or inline in sync)
    bool workerWaiting = false; // the worker sleeps on `wake`
    bool stopping = false;
    bool started = false;
    std::thread thread;

    // Moves delayed work that is due into the task list; returns the next deadline, if any.
    bool promoteDueLocked(Clock::time_point now, Clock::time_point *nextDeadline);
};

// The chain of queues the calling thread is running work of, innermost first.
struct DispatchQueue::Frame
{
    explicit Frame(const State *frameState);
    ~Frame();
    Frame(const Frame &) = delete;
    Frame &operator=(const Frame &) = delete;

    const State *state;
    Frame *outer;

    static thread_local Frame *innermost;
};
