// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/ClientProcessLogger.h"

#include "foundation/Notifications.h"
#include "logging/DDLogMessage.h"
#include "platform/DistributedNotificationCenter.h"

std::shared_ptr<ClientProcessLogger> ClientProcessLogger::sharedInstance()
{
    static const std::shared_ptr<ClientProcessLogger> instance = std::make_shared<ClientProcessLogger>();
    return instance;
}

QString ClientProcessLogger::loggerName() const
{
    return QStringLiteral("com.ostrel.ClientProcessLogger");
}

QVariantMap ClientProcessLogger::dictionaryForLogMessage(const DDLogMessage &logMessage)
{
    QVariantMap dictionary;
    dictionary.insert(QStringLiteral("msg"), logMessage.logMsg());
    dictionary.insert(QStringLiteral("level"), qint64(logMessage.logLevel()));
    dictionary.insert(QStringLiteral("flag"), qint64(logMessage.logFlag()));
    dictionary.insert(QStringLiteral("context"), qint64(logMessage.logContext()));
    dictionary.insert(QStringLiteral("timestamp"), logMessage.timestamp());
    if (!logMessage.file())
        return dictionary;
    dictionary.insert(QStringLiteral("file"), QString::fromUtf8(logMessage.file()));
    if (!logMessage.function())
        return dictionary;
    dictionary.insert(QStringLiteral("function"), QString::fromUtf8(logMessage.function()));
    dictionary.insert(QStringLiteral("lineNumber"), qint64(logMessage.lineNumber()));
    return dictionary;
}

void ClientProcessLogger::logMessage(const DDLogMessage &logMessage)
{
    // A failure to post is reported by the center on stderr, never through the log: that would post again.
    DistributedNotificationCenter::defaultCenter().postNotificationName(CorvexAppLogNotification,
                                                                        dictionaryForLogMessage(logMessage));
}
