// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/DispatchGroup.h"

#include <forward_list>
#include <memory>

class DDLogger;
class DDLogMessage;
class DispatchQueue;

// The loggers of a dispatcher and how a message reaches them, each logger on its own queue. With one
// processor the loggers take it in turn, the latest added first; with two or more, all at once. Either way
// deliver() returns once every logger has handled the message. Used from one thread (or serial queue) at a
// time.
class DDLogDelivery
{
public:
    // One added logger and the queue its messages run on.
    struct Node
    {
        std::shared_ptr<DDLogger> logger;
        std::shared_ptr<DispatchQueue> loggerQueue;
    };

    explicit DDLogDelivery(unsigned processorCount);

    // Adds the logger, served first from now on. Returns the queue its messages run on: the logger's own,
    // else a new one labelled with its name.
    std::shared_ptr<DispatchQueue> add(const std::shared_ptr<DDLogger> &logger);
    // Removes the logger; returns its queue, null when it was not added.
    std::shared_ptr<DispatchQueue> remove(const std::shared_ptr<DDLogger> &logger);
    // Removes every logger.
    void removeAll() { mLoggers.clear(); }

    // The loggers, the latest added first.
    const std::forward_list<Node> &loggers() const { return mLoggers; }

    // Hands the message to every logger.
    void deliver(const DDLogMessage &logMessage);

    // True while the calling thread hands a message to a logger for a delivery.
    static bool isDelivering();

private:
    const bool mParallel;
    DispatchGroup mGroup;
    std::forward_list<Node> mLoggers;
};
