// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/DispatchQueue.h"
#include "foundation/DispatchQueue_p.h"

#include <pthread.h>
#include <semaphore>

thread_local DispatchQueue::Frame *DispatchQueue::Frame::innermost = nullptr;

DispatchQueue::Frame::Frame(const State *frameState) : state(frameState), outer(innermost)
{
    innermost = this;
}

DispatchQueue::Frame::~Frame()
{
    innermost = outer;
}

bool DispatchQueue::State::promoteDueLocked(Clock::time_point now, Clock::time_point *nextDeadline)
{
    bool haveNext = false;
    for (auto it = delayed.begin(); it != delayed.end();) {
        if (it->second.deadline <= now) {
            tasks.push_back(std::move(it->second.work));
            it = delayed.erase(it);
            continue;
        }
        if (!haveNext || it->second.deadline < *nextDeadline)
            *nextDeadline = it->second.deadline;
        haveNext = true;
        ++it;
    }
    return haveNext;
}

DispatchQueue::DispatchQueue(const QString &label) : d(std::make_shared<State>())
{
    d->owner = this;
    d->label = label;
}

DispatchQueue::~DispatchQueue()
{
    std::unique_lock lock(d->mutex);
    d->stopping = true;
    d->owner = nullptr;
    d->delayed.clear();
    const bool started = d->started;
    lock.unlock();
    d->wake.notify_all();
    if (!started)
        return;
    // The worker keeps the state alive; when the last owner lets go from inside the queue's own work,
    // the worker finishes on its own.
    if (d->thread.get_id() == std::this_thread::get_id())
        d->thread.detach();
    else
        d->thread.join();
}

const QString &DispatchQueue::label() const
{
    return d->label;
}

void DispatchQueue::startWorkerLocked()
{
    if (d->started)
        return;
    d->started = true;
    d->thread = std::thread(&DispatchQueue::runWorker, d);
    if (!d->label.isEmpty()) {
        // Thread names are at most 15 bytes.
        const QByteArray name = d->label.toUtf8().left(15);
        pthread_setname_np(d->thread.native_handle(), name.constData());
    }
}

void DispatchQueue::runWorker(const std::shared_ptr<State> &state)
{
    std::deque<Work> batch;
    std::unique_lock lock(state->mutex);
    for (;;) {
        Clock::time_point nextDeadline;
        const bool haveDeadline = state->promoteDueLocked(Clock::now(), &nextDeadline);
        if (!state->tasks.empty() && !state->busy) {
            batch.swap(state->tasks);
            state->busy = true;
            lock.unlock();
            {
                Frame frame(state.get());
                for (Work &work : batch)
                    work();
            }
            batch.clear();
            lock.lock();
            state->busy = false;
            continue;
        }
        if (state->stopping && state->tasks.empty())
            break;
        state->workerWaiting = true;
        if (haveDeadline)
            state->wake.wait_until(lock, nextDeadline);
        else
            state->wake.wait(lock);
        state->workerWaiting = false;
    }
}

void DispatchQueue::async(Work work)
{
    std::unique_lock lock(d->mutex);
    d->tasks.push_back(std::move(work));
    startWorkerLocked();
    const bool notify = d->workerWaiting && !d->busy;
    lock.unlock();
    if (notify)
        d->wake.notify_one();
}

void DispatchQueue::sync(const Work &work)
{
    if (isCurrent()) {
        Q_ASSERT_X(false, "DispatchQueue::sync", "synchronous work submitted to the current queue");
        work();
        return;
    }
    std::unique_lock lock(d->mutex);
    if (!d->busy && d->tasks.empty()) {
        // Idle: run here, holding the queue, so that no other work of it runs meanwhile.
        d->busy = true;
        lock.unlock();
        {
            Frame frame(d.get());
            work();
        }
        lock.lock();
        d->busy = false;
        const bool notify = !d->tasks.empty() && d->workerWaiting;
        lock.unlock();
        if (notify)
            d->wake.notify_one();
        return;
    }
    std::binary_semaphore done(0);
    d->tasks.push_back([&work, &done] {
        work();
        done.release();
    });
    startWorkerLocked();
    const bool notify = d->workerWaiting && !d->busy;
    lock.unlock();
    if (notify)
        d->wake.notify_one();
    done.acquire();
}

quint64 DispatchQueue::asyncAfter(Clock::duration delay, Work work)
{
    std::unique_lock lock(d->mutex);
    const quint64 identifier = d->nextDelayedId++;
    d->delayed.emplace(identifier, State::Delayed{Clock::now() + delay, std::move(work)});
    startWorkerLocked();
    const bool notify = d->workerWaiting;
    lock.unlock();
    if (notify)
        d->wake.notify_one();
    return identifier;
}

bool DispatchQueue::cancel(quint64 identifier)
{
    std::lock_guard lock(d->mutex);
    return d->delayed.erase(identifier) > 0;
}

bool DispatchQueue::isCurrent() const
{
    for (const Frame *frame = Frame::innermost; frame; frame = frame->outer) {
        if (frame->state == d.get())
            return true;
    }
    return false;
}

const DispatchQueue *DispatchQueue::current()
{
    return Frame::innermost ? Frame::innermost->state->owner : nullptr;
}
