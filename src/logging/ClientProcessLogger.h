// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "logging/DDAbstractLogger.h"

#include <QVariantMap>
#include <memory>

// The application's logger: it writes nothing itself but hands every message to the agent, which keeps the
// shared log file. Each message travels as the distributed notification "CorvexAppLog" whose user info holds
// "msg", "level", "flag", "context", "timestamp" (a date), "file", "function" and "lineNumber". No formatter
// is applied and nothing is dropped; when the agent does not run, the messages are lost.
class ClientProcessLogger : public DDAbstractLogger
{
public:
    // The one instance, made on first use (safe when first called from two threads at once).
    static std::shared_ptr<ClientProcessLogger> sharedInstance();

    // Posts the message to the agent.
    void logMessage(const DDLogMessage &logMessage) override;

    // "com.ostrel.ClientProcessLogger", which also labels the logger's queue.
    QString loggerName() const override;

    // The user info that carries a message. The list of values ends at the first missing one: a message
    // without a file carries neither "file", "function" nor "lineNumber"; one without a function carries
    // neither "function" nor "lineNumber".
    static QVariantMap dictionaryForLogMessage(const DDLogMessage &logMessage);

    ClientProcessLogger() = default;
};
