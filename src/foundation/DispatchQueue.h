// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>
#include <chrono>
#include <functional>
#include <memory>

// A serial queue: work items run one after another, in the order they were submitted, never two at once.
// Asynchronous work runs on the queue's own thread (started on first use). Synchronous work runs on the
// caller's thread while the queue is idle (the queue counts as current there) and otherwise waits its turn.
class DispatchQueue
{
public:
    using Work = std::function<void()>;
    using Clock = std::chrono::steady_clock;

    // A queue labelled for debugging (the label also names its thread).
    explicit DispatchQueue(const QString &label = QString());
    // Runs every work item already submitted, drops delayed work not yet due, then ends the thread.
    ~DispatchQueue();

    DispatchQueue(const DispatchQueue &) = delete;
    DispatchQueue &operator=(const DispatchQueue &) = delete;

    const QString &label() const;

    // Submits work and returns at once.
    void async(Work work);

    // Submits work and returns once it has run. Called on the queue itself this would never return: that is
    // a programming error (asserted in debug builds; release builds run the work at once instead).
    void sync(const Work &work);

    // Submits work to run once the delay has passed (in turn with the other work). Returns an identifier
    // for cancel().
    quint64 asyncAfter(Clock::duration delay, Work work);

    // Withdraws delayed work that is not yet due. Returns false when it was unknown, already due or run.
    bool cancel(quint64 identifier);

    // True while the calling thread is running work of this queue (also inside synchronous work submitted
    // from it to another queue).
    bool isCurrent() const;

    // The queue whose work the calling thread runs (the innermost one), nullptr on any other thread.
    static const DispatchQueue *current();

private:
    struct State;
    struct Frame;
    static void runWorker(const std::shared_ptr<State> &state);
    void startWorkerLocked();

    std::shared_ptr<State> d;
};
