// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>
#include <concepts>
#include <functional>
#include <memory>

class DDLogger;
class DDLogMessage;
class DispatchQueue;

// The message flags. A level is the union of the flags it lets through.
enum : quint32 { DDLogFlagError = 1, DDLogFlagWarning = 2, DDLogFlagInfo = 4, DDLogFlagVerbose = 8 };

// A class that takes part in per-class log levels: static ddLogLevel() and ddSetLogLevel(level).
template <class T>
concept DDLogRegisteringClass = requires(quint32 level)
{
    {
        T::ddLogLevel()
        } -> std::convertible_to<quint32>;
    T::ddSetLogLevel(level);
};

// One class of the per-class level registry.
struct DDLogRegisteredClass
{
    QString name;
    std::function<quint32()> ddLogLevel;
    std::function<void(quint32)> ddSetLogLevel;
};

// The process-wide log dispatcher. Every message goes to one serial logging queue ("cocoa.vofungudip") and
// from there to every added logger, each on its own queue. At most 1000 messages wait on the logging queue:
// a producer beyond that blocks until one has been delivered. There are no instances.
class DDLog
{
public:
    DDLog() = delete;

    // The serial logging queue. Logger changes, deliveries and flushes run on it, in order.
    static DispatchQueue *loggingQueue();

    // Adds a logger (asynchronously, on the logging queue). The latest added logger is served first.
    static void addLogger(const std::shared_ptr<DDLogger> &logger);
    // Removes a logger (asynchronously, on the logging queue). A null logger is ignored.
    static void removeLogger(const std::shared_ptr<DDLogger> &logger);
    // Removes every logger (asynchronously, on the logging queue).
    static void removeAllLoggers();

    // Makes a message of the text and queues it. A null message logs nothing. Synchronous calls return once
    // every logger has the message. Must not be called synchronously on the logging queue or a logger queue.
    static void log(bool synchronous, quint32 level, quint32 flag, qint32 context, const char *file,
                    const char *function, int line, const QString &message);

    // Queues a message for every logger, first waiting while 1000 messages are already waiting.
    static void queueLogMessage(const std::shared_ptr<const DDLogMessage> &logMessage, bool synchronously);

    // Returns once every message queued before the call has been processed by every logger.
    static void flushLog();

    // Flushes the log; called when the application is about to quit.
    static void applicationWillTerminate();

    // Per-class levels. A class takes part when it offers static ddLogLevel() and ddSetLogLevel(quint32);
    // the by-name forms and the lists see the classes registered with registerClass().
    template <class T> static quint32 logLevelForClass()
    {
        if constexpr (DDLogRegisteringClass<T>)
            return quint32(T::ddLogLevel());
        else
            return 0xFFFFFFFFu;
    }
    template <class T> static void setLogLevelForClass(quint32 logLevel)
    {
        if constexpr (DDLogRegisteringClass<T>)
            T::ddSetLogLevel(logLevel);
        else
            Q_UNUSED(logLevel);
    }
    template <DDLogRegisteringClass T> static bool registerClass(const QString &name)
    {
        return registerClass(DDLogRegisteredClass{name, [] { return quint32(T::ddLogLevel()); },
                                                  [](quint32 level) { T::ddSetLogLevel(level); }});
    }

    // Registers a class under its name; false when the name is empty, taken, or the two operations are
    // missing.
    static bool registerClass(const DDLogRegisteredClass &registeredClass);
    static QList<DDLogRegisteredClass> registeredClasses();
    static QStringList registeredClassNames();
    // The level of the named class; 0xFFFFFFFF when no such class takes part.
    static quint32 logLevelForClassWithName(const QString &className);
    // Sets the level of the named class; does nothing when no such class takes part.
    static void setLogLevelForClassWithName(quint32 logLevel, const QString &className);
};
