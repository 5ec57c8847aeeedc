// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DDLog.h"
#include "DDLog_p.h"

#include "DDLogMessage.h"

#include <QCoreApplication>
#include <cstdlib>
#include <unistd.h>

namespace ddlog_private {

namespace {

unsigned hostProcessorCount()
{
    const long count = sysconf(_SC_NPROCESSORS_CONF);
    return count > 0 ? unsigned(count) : 1u;
}

thread_local bool tDelivering = false;

// Hands the message to one logger, marking the thread as delivering meanwhile.
void handTo(DDLogger *logger, const DDLogMessage &logMessage)
{
    tDelivering = true;
    logger->logMessage(logMessage);
    tDelivering = false;
}

// Hands one message to every logger, then frees its place in the queue.
void deliver(const DDLogMessage &logMessage)
{
    DispatcherState &s = state();
    s.messagesWaiting.fetch_sub(1, std::memory_order_relaxed);
    if (s.processorCount.load(std::memory_order_relaxed) >= 2) {
        // In parallel: every logger on its own queue, and wait for all. The last one runs here through a
        // synchronous call, which saves a thread switch and changes nothing else.
        for (auto it = s.loggers.begin(); it != s.loggers.end(); ++it) {
            DDLogger *logger = it->logger.get();
            if (std::next(it) == s.loggers.end())
                it->loggerQueue->sync([logger, &logMessage] { handTo(logger, logMessage); });
            else
                s.loggingGroup.async(*it->loggerQueue, [logger, &logMessage] { handTo(logger, logMessage); });
        }
        s.loggingGroup.wait();
    } else {
        for (const LoggerNode &node : s.loggers) {
            DDLogger *logger = node.logger.get();
            node.loggerQueue->sync([logger, &logMessage] { handTo(logger, logMessage); });
        }
    }
    // Give the message's place back. While producers wait for places, every place is taken, so at least 999
    // more deliveries follow: places are then given back 64 at a time, which wakes a waiting producer once
    // for 64 messages instead of once for each.
    ++s.unreleasedPlaces;
    if (s.unreleasedPlaces >= 64 || s.queueSizeSemaphore.value() >= 0) {
        s.queueSizeSemaphore.signal(s.unreleasedPlaces);
        s.unreleasedPlaces = 0;
    }
}

void flushAtExit()
{
    // exit() called from the logging queue itself cannot wait for it.
    if (!state().loggingQueue.isCurrent())
        DDLog::flushLog();
}

} // namespace

DispatcherState::DispatcherState() : processorCount(hostProcessorCount())
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

unsigned processorCount()
{
    return state().processorCount.load();
}

void setProcessorCount(unsigned count)
{
    state().processorCount.store(count > 0 ? count : 1u);
}

bool isDelivering()
{
    return tDelivering;
}

long messagesWaiting()
{
    return state().messagesWaiting.load(std::memory_order_relaxed);
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
    state().loggingQueue.async([logger] {
        std::shared_ptr<DispatchQueue> queue = logger->loggerQueue();
        if (!queue)
            queue = std::make_shared<DispatchQueue>(logger->loggerName());
        state().loggers.push_front(LoggerNode{logger, std::move(queue)});
        logger->didAddLogger();
    });
}

void DDLog::removeLogger(const std::shared_ptr<DDLogger> &logger)
{
    if (!logger)
        return;
    state().loggingQueue.async([logger] {
        logger->willRemoveLogger();
        DispatcherState &s = state();
        auto previous = s.loggers.before_begin();
        for (auto it = s.loggers.begin(); it != s.loggers.end(); previous = it++) {
            if (it->logger == logger) {
                s.loggers.erase_after(previous);
                break;
            }
        }
    });
}

void DDLog::removeAllLoggers()
{
    state().loggingQueue.async([] {
        DispatcherState &s = state();
        for (const LoggerNode &node : s.loggers)
            node.logger->willRemoveLogger();
        s.loggers.clear();
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
    s.messagesWaiting.fetch_add(1, std::memory_order_relaxed);
    if (synchronously)
        s.loggingQueue.sync([&logMessage] { deliver(*logMessage); });
    else
        s.loggingQueue.async([logMessage] { deliver(*logMessage); });
}

void DDLog::flushLog()
{
    // Deliberately empty: the logging queue is serial and each delivery waits for every logger, so running
    // anything on it is a barrier behind every message queued before.
    state().loggingQueue.sync([] {});
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
