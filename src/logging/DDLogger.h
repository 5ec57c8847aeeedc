// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <memory>

class DDLogFormatter;
class DDLogMessage;
class DispatchQueue;

// What a logger offers the dispatcher. Only logMessage() is required; the other parts are optional and their
// defaults mean "not offered".
class DDLogger
{
public:
    virtual ~DDLogger() = default;

    // Handles one message. Called on the logger's queue.
    virtual void logMessage(const DDLogMessage &logMessage) = 0;

    // The serial queue the logger wants its messages on; nullptr lets the dispatcher make one.
    virtual std::shared_ptr<DispatchQueue> loggerQueue() { return nullptr; }

    // The logger's name (labels the queue the dispatcher makes); empty when it has none.
    virtual QString loggerName() const { return QString(); }

    // Called on the logging queue once the logger has been added, respectively before it is removed.
    virtual void didAddLogger() {}
    virtual void willRemoveLogger() {}

    // Whether the logger takes a formatter through logFormatter() / setLogFormatter().
    virtual bool offersLogFormatter() const { return false; }
    virtual std::shared_ptr<DDLogFormatter> logFormatter() const { return nullptr; }
    virtual void setLogFormatter(const std::shared_ptr<DDLogFormatter> &formatter) { Q_UNUSED(formatter); }

    // Writes out anything the logger holds back. The dispatcher never calls it.
    virtual void flush() {}
};
