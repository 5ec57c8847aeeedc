// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

// Calls into the main thread (the thread of the QCoreApplication) that block the calling thread until they
// have run. A call made on the main thread itself runs at once. Without an application object there is no
// main event loop to hand work to, and every call runs at once on the calling thread.
//
// Deadlock rule: a background thread blocked in invoke() needs the main thread to come back to its event loop
// or to wait through waitUntil(). Every place where the main thread waits for a background thread that may
// be blocked here (removing a notification observer while its delivery runs, stopping a watcher thread) waits
// with waitUntil(), which keeps running the queued calls meanwhile. A main thread that waits for a background
// thread by any other means (a plain join, a blocking queued connection) can deadlock with it.
class UKMainThreadProxy
{
public:
    UKMainThreadProxy() = delete;

    // Runs the call on the main thread and returns once it has run. An exception thrown by the call is
    // thrown again on the calling thread.
    static void invoke(const std::function<void()> &call);

    // Runs the call on the main thread and hands back its result.
    template <class Result> static Result invokeWithResult(const std::function<Result()> &call)
    {
        Result result{};
        invoke([&] { result = call(); });
        return result;
    }

    // True on the main thread, and on every thread when there is no application object.
    static bool isMainThread();

    // Blocks until the condition holds. On the main thread the calls that other threads queued through
    // invoke() keep running meanwhile. The condition is checked again whenever conditionChanged() is called,
    // so whoever makes it true must call conditionChanged() afterwards (without holding a lock that the
    // condition takes).
    static void waitUntil(const std::function<bool()> &condition);

    // Wakes the threads in waitUntil() to check their conditions again.
    static void conditionChanged();

    // Runs the calls queued for the main thread so far (on the main thread only; elsewhere it does nothing).
    static void runPendingCalls();
};
