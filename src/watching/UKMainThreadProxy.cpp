// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/UKMainThreadProxy.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>

namespace {

struct PendingCall
{
    std::function<void()> call;
    bool done = false;
    std::exception_ptr failure;
};

// Shared by every thread for the life of the process (never destroyed, so that a thread still waiting at exit
// finds it intact).
struct CallQueue
{
    std::mutex mutex;
    std::condition_variable callDone;   // a queued call has run
    std::condition_variable mainWakeUp; // a call was queued, or a waited-for condition changed
    std::deque<std::shared_ptr<PendingCall>> calls;
};

CallQueue &callQueue()
{
    static CallQueue *queue = new CallQueue;
    return *queue;
}

} // namespace

bool UKMainThreadProxy::isMainThread()
{
    const QCoreApplication *application = QCoreApplication::instance();
    return !application || QThread::currentThread() == application->thread();
}

void UKMainThreadProxy::invoke(const std::function<void()> &call)
{
    QCoreApplication *application = QCoreApplication::instance();
    if (!application || QThread::currentThread() == application->thread()) {
        call();
        return;
    }
    CallQueue &queue = callQueue();
    auto pending = std::make_shared<PendingCall>();
    pending->call = call;
    {
        std::lock_guard lock(queue.mutex);
        queue.calls.push_back(pending);
    }
    queue.mainWakeUp.notify_all();
    // The main thread takes the call either from its event loop or from a waitUntil() it is blocked in.
    QMetaObject::invokeMethod(
        application, [] { runPendingCalls(); }, Qt::QueuedConnection);

    std::unique_lock lock(queue.mutex);
    queue.callDone.wait(lock, [&] { return pending->done; });
    if (pending->failure)
        std::rethrow_exception(pending->failure);
}

void UKMainThreadProxy::runPendingCalls()
{
    if (!QCoreApplication::instance() || !isMainThread())
        return;
    CallQueue &queue = callQueue();
    for (;;) {
        std::shared_ptr<PendingCall> pending;
        {
            std::lock_guard lock(queue.mutex);
            if (queue.calls.empty())
                return;
            pending = std::move(queue.calls.front());
            queue.calls.pop_front();
        }
        std::exception_ptr failure;
        try {
            pending->call();
        } catch (...) {
            failure = std::current_exception();
        }
        {
            std::lock_guard lock(queue.mutex);
            pending->failure = failure;
            pending->done = true;
        }
        queue.callDone.notify_all();
    }
}

void UKMainThreadProxy::waitUntil(const std::function<bool()> &condition)
{
    CallQueue &queue = callQueue();
    const bool serveCalls = QCoreApplication::instance() && isMainThread();
    for (;;) {
        if (serveCalls)
            runPendingCalls();
        std::unique_lock lock(queue.mutex);
        // The condition is checked under the queue's lock: conditionChanged() takes the same lock, so a
        // change made after this check wakes the wait below.
        if (condition())
            return;
        if (serveCalls && !queue.calls.empty())
            continue;
        queue.mainWakeUp.wait(lock);
    }
}

void UKMainThreadProxy::conditionChanged()
{
    CallQueue &queue = callQueue();
    {
        std::lock_guard lock(queue.mutex);
    }
    queue.mainWakeUp.notify_all();
}
