// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogDelivery.h"

#include "foundation/DispatchQueue.h"
#include "logging/DDLogger.h"

#include <iterator>
#include <utility>

namespace {

thread_local bool tDelivering = false;

// Hands the message to one logger, marking the thread as delivering meanwhile.
void handTo(DDLogger *logger, const DDLogMessage &logMessage)
{
    tDelivering = true;
    logger->logMessage(logMessage);
    tDelivering = false;
}

} // namespace

DDLogDelivery::DDLogDelivery(unsigned processorCount) : mParallel(processorCount >= 2) {}

std::shared_ptr<DispatchQueue> DDLogDelivery::add(const std::shared_ptr<DDLogger> &logger)
{
    std::shared_ptr<DispatchQueue> queue = logger->loggerQueue();
    if (!queue)
        queue = std::make_shared<DispatchQueue>(logger->loggerName());
    mLoggers.push_front(Node{logger, queue});
    return queue;
}

std::shared_ptr<DispatchQueue> DDLogDelivery::remove(const std::shared_ptr<DDLogger> &logger)
{
    auto previous = mLoggers.before_begin();
    for (auto it = mLoggers.begin(); it != mLoggers.end(); previous = it++) {
        if (it->logger == logger) {
            std::shared_ptr<DispatchQueue> queue = std::move(it->loggerQueue);
            mLoggers.erase_after(previous);
            return queue;
        }
    }
    return nullptr;
}

void DDLogDelivery::deliver(const DDLogMessage &logMessage)
{
    if (mParallel) {
        // Every logger on its own queue, and wait for all. The last one runs here through a synchronous call,
        // which saves a thread switch and changes nothing else.
        for (auto it = mLoggers.begin(); it != mLoggers.end(); ++it) {
            DDLogger *logger = it->logger.get();
            if (std::next(it) == mLoggers.end())
                it->loggerQueue->sync([logger, &logMessage] { handTo(logger, logMessage); });
            else
                mGroup.async(*it->loggerQueue, [logger, &logMessage] { handTo(logger, logMessage); });
        }
        mGroup.wait();
    } else {
        for (const Node &node : mLoggers) {
            DDLogger *logger = node.logger.get();
            node.loggerQueue->sync([logger, &logMessage] { handTo(logger, logMessage); });
        }
    }
}

bool DDLogDelivery::isDelivering()
{
    return tDelivering;
}
