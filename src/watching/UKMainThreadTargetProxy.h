// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "watching/UKMainThreadProxy.h"

#include <atomic>
#include <type_traits>
#include <utility>

// Wraps an object so that member functions called through the wrapper, from any thread, run on the main
// thread while the calling thread waits (see UKMainThreadProxy). The target is not owned. Clearing the target
// (setTarget(nullptr)) makes later calls, and calls already queued but not yet run, do nothing; a call whose
// target is gone hands back a default-constructed result.
template <class Target> class UKMainThreadTargetProxy
{
public:
    explicit UKMainThreadTargetProxy(Target *target) : mTarget(target) {}

    UKMainThreadTargetProxy(const UKMainThreadTargetProxy &) = delete;
    UKMainThreadTargetProxy &operator=(const UKMainThreadTargetProxy &) = delete;

    Target *target() const { return mTarget.load(); }
    void setTarget(Target *target) { mTarget.store(target); }

    // Calls target->member(arguments...) on the main thread and returns its result. The arguments are
    // referred to, not copied, while the call runs (the caller waits for it).
    template <class Result, class Object, class... Parameters, class... Arguments>
    Result perform(Result (Object::*member)(Parameters...), Arguments &&...arguments)
    {
        static_assert(std::is_base_of_v<Object, Target>, "the member must belong to the target");
        if constexpr (std::is_void_v<Result>) {
            UKMainThreadProxy::invoke([&] {
                if (Target *target = mTarget.load())
                    (target->*member)(std::forward<Arguments>(arguments)...);
            });
        } else {
            Result result{};
            UKMainThreadProxy::invoke([&] {
                if (Target *target = mTarget.load())
                    result = (target->*member)(std::forward<Arguments>(arguments)...);
            });
            return result;
        }
    }

private:
    std::atomic<Target *> mTarget;
};
