// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "logging/DDLog.h"
#include "logging/DDLogMessage.h"
#include "logging/DDLogger.h"

#include <QStringList>
#include <memory>
#include <mutex>

// Collects the messages logged while an instance lives, for tests that check log lines.
class LogCapture
{
public:
    LogCapture() : mLogger(std::make_shared<Logger>()) { DDLog::addLogger(mLogger); }
    ~LogCapture()
    {
        DDLog::flushLog();
        DDLog::removeLogger(mLogger);
        DDLog::flushLog();
    }
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    // The messages logged so far (after flushing the log), all of them or only those of one flag.
    QStringList messages(quint32 flag = 0) const
    {
        DDLog::flushLog();
        std::lock_guard<std::mutex> lock(mLogger->mutex);
        QStringList texts;
        for (const auto &[lineFlag, text] : mLogger->lines) {
            if (flag == 0 || lineFlag == flag)
                texts.append(text);
        }
        return texts;
    }

    // The messages logged so far, forgetting them.
    QStringList takeMessages()
    {
        QStringList texts = messages();
        clear();
        return texts;
    }

    void clear()
    {
        DDLog::flushLog();
        std::lock_guard<std::mutex> lock(mLogger->mutex);
        mLogger->lines.clear();
    }

private:
    struct Logger : DDLogger
    {
        void logMessage(const DDLogMessage &message) override
        {
            std::lock_guard<std::mutex> lock(mutex);
            lines.append({quint32(message.logFlag()), message.logMsg()});
        }
        std::mutex mutex;
        QList<std::pair<quint32, QString>> lines;
    };
    std::shared_ptr<Logger> mLogger;
};
