// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDAbstractLogger.h"

#include "foundation/DispatchQueue.h"
#include "logging/DDLog.h"

DDAbstractLogger::DDAbstractLogger() = default;

DDAbstractLogger::DDAbstractLogger(std::shared_ptr<DDLogFormatter> formatter)
    : mFormatter(std::move(formatter))
{
}

DDAbstractLogger::~DDAbstractLogger() = default;

void DDAbstractLogger::logMessage(const DDLogMessage &logMessage)
{
    Q_UNUSED(logMessage);
}

DispatchQueue *DDAbstractLogger::queue() const
{
    // Made on first use rather than in the constructor, so that the subclass's name labels it.
    std::call_once(mQueueOnce, [this] { mLoggerQueue = std::make_shared<DispatchQueue>(loggerName()); });
    return mLoggerQueue.get();
}

std::shared_ptr<DispatchQueue> DDAbstractLogger::loggerQueue()
{
    queue();
    return mLoggerQueue;
}

bool DDAbstractLogger::isOnLoggerQueue() const
{
    return queue()->isCurrent();
}

std::shared_ptr<DDLogFormatter> DDAbstractLogger::logFormatter() const
{
    std::shared_ptr<DDLogFormatter> result;
    syncThroughLoggingQueue([this, &result] { result = mFormatter; });
    return result;
}

void DDAbstractLogger::setLogFormatter(const std::shared_ptr<DDLogFormatter> &formatter)
{
    auto apply = [this, formatter] {
        if (mFormatter != formatter)
            mFormatter = formatter;
    };
    if (isOnLoggerQueue())
        apply();
    else
        asyncThroughLoggingQueue(apply);
}

void DDAbstractLogger::asyncThroughLoggingQueue(std::function<void()> work)
{
    std::shared_ptr<DDAbstractLogger> self = weak_from_this().lock();
    if (!self) {
        // Not shared: nothing could keep the logger alive until later, so do it now, in turn.
        syncThroughLoggingQueue(work);
        return;
    }
    DDLog::loggingQueue()->async(
        [self = std::move(self), work = std::move(work)] { self->queue()->sync(work); });
}

void DDAbstractLogger::syncThroughLoggingQueue(const std::function<void()> &work) const
{
    if (isOnLoggerQueue()) {
        work();
        return;
    }
    DispatchQueue *loggingQueue = DDLog::loggingQueue();
    if (loggingQueue->isCurrent())
        queue()->sync(work);
    else
        loggingQueue->sync([this, &work] { queue()->sync(work); });
}
