// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/DispatchQueue.h"
#include "logging/DDLog.h"
#include "logging/DDLogMessage.h"
#include "logging/DDLogger.h"

#include <QStringList>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

// A logger for tests: keeps the text of every message, where it ran, and can run a hook for each message.
class RecordingLogger : public DDLogger
{
public:
    explicit RecordingLogger(QString name = QString()) : mName(std::move(name)) {}

    void logMessage(const DDLogMessage &logMessage) override
    {
        if (hook)
            hook(logMessage);
        const DispatchQueue *queue = DispatchQueue::current();
        std::lock_guard lock(mMutex);
        mTexts.append(logMessage.logMsg());
        mQueueLabels.append(queue ? queue->label() : QString());
    }
    QString loggerName() const override { return mName; }
    void didAddLogger() override { addedOnLoggingQueue = DDLog::loggingQueue()->isCurrent(); }
    void willRemoveLogger() override { removedOnLoggingQueue = DDLog::loggingQueue()->isCurrent(); }

    QStringList texts() const
    {
        std::lock_guard lock(mMutex);
        return mTexts;
    }
    QStringList queueLabels() const
    {
        std::lock_guard lock(mMutex);
        return mQueueLabels;
    }
    qsizetype count() const
    {
        std::lock_guard lock(mMutex);
        return mTexts.size();
    }

    std::function<void(const DDLogMessage &)> hook; // set before adding the logger
    std::atomic<bool> addedOnLoggingQueue{false};
    std::atomic<bool> removedOnLoggingQueue{false};

private:
    QString mName;
    mutable std::mutex mMutex;
    QStringList mTexts;
    QStringList mQueueLabels;
};
