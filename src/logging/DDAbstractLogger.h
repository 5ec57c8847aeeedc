// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "logging/DDLogger.h"

#include <functional>
#include <mutex>

// The base of the system's loggers: a serial queue of its own (labelled with loggerName()) and an optional
// formatter whose reads and writes are ordered with the messages. Loggers are shared: make them with
// std::make_shared.
class DDAbstractLogger : public DDLogger, public std::enable_shared_from_this<DDAbstractLogger>
{
public:
    DDAbstractLogger();
    // A logger that starts with the given formatter.
    explicit DDAbstractLogger(std::shared_ptr<DDLogFormatter> formatter);
    ~DDAbstractLogger() override;

    DDAbstractLogger(const DDAbstractLogger &) = delete;
    DDAbstractLogger &operator=(const DDAbstractLogger &) = delete;

    // Does nothing; subclasses write the message.
    void logMessage(const DDLogMessage &logMessage) override;

    // The logger's own serial queue, made on first use and labelled with loggerName() (unlabelled without).
    std::shared_ptr<DispatchQueue> loggerQueue() override;

    bool offersLogFormatter() const override { return true; }
    // The formatter: read at once on the logger's queue, otherwise in turn on the logging queue.
    std::shared_ptr<DDLogFormatter> logFormatter() const override;
    // Replaces the formatter: at once on the logger's queue, otherwise asynchronously on the logging queue.
    // Setting the formatter already set changes nothing.
    void setLogFormatter(const std::shared_ptr<DDLogFormatter> &formatter) override;

protected:
    // The formatter, for use on the logger's queue.
    const std::shared_ptr<DDLogFormatter> &formatter() const { return mFormatter; }

    // True on the logger's queue.
    bool isOnLoggerQueue() const;

    // Runs work asynchronously on the logging queue and, from there, on the logger's queue, keeping the
    // logger alive meanwhile. Settings changes and rolls requested from outside go this way.
    void asyncThroughLoggingQueue(std::function<void()> work);

    // Runs work on the logger's queue, in turn with the messages: directly when already there, otherwise
    // synchronously through the logging queue.
    void syncThroughLoggingQueue(const std::function<void()> &work) const;

private:
    DispatchQueue *queue() const;

    std::shared_ptr<DDLogFormatter> mFormatter;
    mutable std::once_flag mQueueOnce;
    mutable std::shared_ptr<DispatchQueue> mLoggerQueue;
};
