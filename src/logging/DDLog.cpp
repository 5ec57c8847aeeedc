// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLog.h"
#include "logging/DDLog_p.h"

#include "foundation/Diagnostics.h"
#include "logging/DDLogMessage.h"
#include "logging/DDLogger.h"
#include "logging/Log.h"

#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <semaphore>
#include <unistd.h>

namespace ddlog_private {

namespace {

unsigned hostProcessorCount()
{
    const long count = sysconf(_SC_NPROCESSORS_CONF);
    return count > 0 ? unsigned(count) : 1u;
}

// Hands one message to every logger, then frees its place in the queue.
void deliver(const DDLogMessage &logMessage)
{
    DispatcherState &s = state();
    s.messagesWaiting.fetch_sub(1, std::memory_order_relaxed);
    s.delivery.deliver(logMessage);
    // Give the message's place back. While producers wait for places, every place is taken, so at least 999
    // more deliveries follow: places are then given back 64 at a time, which wakes a waiting producer once
    // for 64 messages instead of once for each.
    ++s.unreleasedPlaces;
    if (s.unreleasedPlaces >= 64 || s.queueSizeSemaphore.value() >= 0) {
        s.queueSizeSemaphore.signal(s.unreleasedPlaces);
        s.unreleasedPlaces = 0;
    }
}

void forgetQueue(const DispatchQueue *queue)
{
    DispatcherState &s = state();
    std::lock_guard lock(s.loggerQueuesMutex);
    s.loggerQueues.removeOne(queue);
}

void flushAtExit()
{
    // exit() called from the logging queue itself cannot wait for it.
    if (!state().loggingQueue.isCurrent())
        DDLog::flushLog();
}

// The platform services' messages join the log statements once there is a logger to take them.
void receiveDiagnostic(Diagnostics::Level level, bool synchronous, const char *file, const char *function,
                       int line, const QString &message)
{
    // A logger's own trouble (say, a failed post while it archives a file) never goes back through the
    // dispatcher: with the queue full that would wait for the very delivery that reports it.
    if (isOnLoggingQueues()) {
        std::fprintf(stderr, "Corvex: %s\n", message.toLocal8Bit().constData());
        return;
    }
    const quint32 flag = level == Diagnostics::Level::Error     ? DDLogFlagError
                         : level == Diagnostics::Level::Warning ? DDLogFlagWarning
                                                                : DDLogFlagInfo;
    DDLog::log(synchronous, CORVEX_LOG_LEVEL, flag, CORVEX_LOG_CONTEXT, file, function, line, message);
}

} // namespace

DispatcherState::DispatcherState() : delivery(hostProcessorCount())
{
    std::atexit(flushAtExit);
}

DispatcherState &state()
{
    // Kept for the life of the process: queued messages are still written while it exits.
    static DispatcherState *const s = new DispatcherState;
    return *s;
}

void observeApplicationTermination()
{
    QCoreApplication *application = QCoreApplication::instance();
    if (!application)
        return;
    DispatcherState &s = state();
    std::lock_guard lock(s.terminationMutex);
    if (s.observedApplication == application)
        return;
    s.observedApplication = application;
    QObject::connect(application, &QCoreApplication::aboutToQuit, application,
                     [] { DDLog::applicationWillTerminate(); });
}

long messagesWaiting()
{
    return state().messagesWaiting.load(std::memory_order_relaxed);
}

bool moreDeliveriesFollow()
{
    const DispatcherState &s = state();
    return s.messagesWaiting.load() > 0 && s.flushesWaiting.load() == 0;
}

bool isOnLoggingQueues()
{
    DispatcherState &s = state();
    const DispatchQueue *current = DispatchQueue::current();
    if (!current)
        return false;
    if (current == &s.loggingQueue || DDLogDelivery::isDelivering())
        return true;
    std::lock_guard lock(s.loggerQueuesMutex);
    return s.loggerQueues.contains(current);
}

DispatchSemaphore &queueSizeSemaphore()
{
    return state().queueSizeSemaphore;
}

} // namespace ddlog_private

using namespace ddlog_private;

DispatchQueue *DDLog::loggingQueue()
{
    return &state().loggingQueue;
}

void DDLog::addLogger(const std::shared_ptr<DDLogger> &logger)
{
    if (!logger)
        return;
    observeApplicationTermination();
    Diagnostics::setReceiver(receiveDiagnostic);
    state().loggingQueue.async([logger] {
        DispatcherState &s = state();
        const std::shared_ptr<DispatchQueue> queue = s.delivery.add(logger);
        {
            std::lock_guard lock(s.loggerQueuesMutex);
            s.loggerQueues.append(queue.get());
        }
        logger->didAddLogger();
    });
}

void DDLog::removeLogger(const std::shared_ptr<DDLogger> &logger)
{
    if (!logger)
        return;
    state().loggingQueue.async([logger] {
        logger->willRemoveLogger();
        if (const std::shared_ptr<DispatchQueue> queue = state().delivery.remove(logger))
            forgetQueue(queue.get());
    });
}

void DDLog::removeAllLoggers()
{
    state().loggingQueue.async([] {
        DDLogDelivery &delivery = state().delivery;
        for (const DDLogDelivery::Node &node : delivery.loggers()) {
            node.logger->willRemoveLogger();
            forgetQueue(node.loggerQueue.get());
        }
        delivery.removeAll();
    });
}

void DDLog::log(bool synchronous, quint32 level, quint32 flag, qint32 context, const char *file,
                const char *function, int line, const QString &message)
{
    if (message.isNull())
        return;
    queueLogMessage(std::make_shared<const DDLogMessage>(message, qint32(level), qint32(flag), context, file,
                                                         function, line),
                    synchronous);
}

void DDLog::queueLogMessage(const std::shared_ptr<const DDLogMessage> &logMessage, bool synchronously)
{
    if (!logMessage)
        return;
    DispatcherState &s = state();
    s.queueSizeSemaphore.wait();
    if (!synchronously) {
        std::lock_guard lock(s.enqueueMutex);
        s.messagesWaiting.fetch_add(1);
        s.loggingQueue.async([logMessage] { deliver(*logMessage); });
        return;
    }
    if (s.loggingQueue.isCurrent()) {
        s.messagesWaiting.fetch_add(1);
        deliver(*logMessage);
        return;
    }
    std::binary_semaphore delivered(0);
    {
        std::lock_guard lock(s.enqueueMutex);
        s.messagesWaiting.fetch_add(1);
        s.loggingQueue.async([&logMessage, &delivered] {
            deliver(*logMessage);
            delivered.release();
        });
    }
    delivered.acquire();
}

void DDLog::flushLog()
{
    // The step itself is deliberately empty: the logging queue is serial and each delivery waits for every
    // logger, so any step on it is a barrier behind every message queued before. While a flush waits, no
    // logger holds output back for a later delivery (see moreDeliveriesFollow()), so the delivery just before
    // the barrier writes everything out even when other threads keep logging.
    DispatcherState &s = state();
    if (s.loggingQueue.isCurrent())
        return;
    std::binary_semaphore passed(0);
    {
        std::lock_guard lock(s.enqueueMutex);
        s.flushesWaiting.fetch_add(1);
        s.loggingQueue.async([&passed] { passed.release(); });
    }
    passed.acquire();
    s.flushesWaiting.fetch_sub(1);
}

void DDLog::applicationWillTerminate()
{
    flushLog();
}

bool DDLog::registerClass(const DDLogRegisteredClass &registeredClass)
{
    if (registeredClass.name.isEmpty() || !registeredClass.ddLogLevel || !registeredClass.ddSetLogLevel)
        return false;
    DispatcherState &s = state();
    std::lock_guard lock(s.registryMutex);
    for (const DDLogRegisteredClass &known : std::as_const(s.registry)) {
        if (known.name == registeredClass.name)
            return false;
    }
    s.registry.append(registeredClass);
    return true;
}

QList<DDLogRegisteredClass> DDLog::registeredClasses()
{
    DispatcherState &s = state();
    std::lock_guard lock(s.registryMutex);
    return s.registry;
}

QStringList DDLog::registeredClassNames()
{
    QStringList names;
    for (const DDLogRegisteredClass &registeredClass : registeredClasses())
        names.append(registeredClass.name);
    return names;
}

quint32 DDLog::logLevelForClassWithName(const QString &className)
{
    for (const DDLogRegisteredClass &registeredClass : registeredClasses()) {
        if (registeredClass.name == className)
            return registeredClass.ddLogLevel();
    }
    return 0xFFFFFFFFu;
}

void DDLog::setLogLevelForClassWithName(quint32 logLevel, const QString &className)
{
    for (const DDLogRegisteredClass &registeredClass : registeredClasses()) {
        if (registeredClass.name == className) {
            registeredClass.ddSetLogLevel(logLevel);
            return;
        }
    }
}
