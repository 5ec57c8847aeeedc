// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDAbstractLogger.h"
#include "foundation/DispatchQueue.h"
#include "logging/DDLog.h"
#include "logging/DDLogFormatter.h"
#include "logging/DDLogMessage.h"
#include "logging/Log.h"

#include <gtest/gtest.h>
#include <mutex>

using namespace Qt::StringLiterals;

namespace {

class UpperCaseFormatter : public DDLogFormatter
{
public:
    QString formatLogMessage(const DDLogMessage &logMessage) override
    {
        if (logMessage.logMsg() == QLatin1String("drop"))
            return QString();
        return logMessage.logMsg().toUpper();
    }
};

// Writes what its formatter makes of each message.
class FormattingLogger : public DDAbstractLogger
{
public:
    void logMessage(const DDLogMessage &logMessage) override
    {
        const QString text = formatter() ? formatter()->formatLogMessage(logMessage) : logMessage.logMsg();
        if (text.isNull())
            return;
        std::lock_guard lock(mutex);
        lines.append(text);
    }
    QString loggerName() const override { return u"test.formattingLogger"_s; }

    std::mutex mutex;
    QStringList lines;
};

} // namespace

TEST(DDAbstractLoggerTest, QueueIsMadeOnceAndLabelledWithTheName)
{
    auto logger = std::make_shared<FormattingLogger>();
    const std::shared_ptr<DispatchQueue> queue = logger->loggerQueue();
    ASSERT_TRUE(queue);
    EXPECT_EQ(queue, logger->loggerQueue());
    EXPECT_EQ(queue->label(), u"test.formattingLogger"_s);
    DDAbstractLogger plain;
    EXPECT_TRUE(plain.loggerQueue()->label().isEmpty());
    plain.logMessage(DDLogMessage(u"ignored"_s, 7, 1, 1, "f", "f", 1)); // does nothing
}

TEST(DDAbstractLoggerTest, FormatterChangesTakeEffectInTurnWithTheMessages)
{
    auto logger = std::make_shared<FormattingLogger>();
    EXPECT_TRUE(logger->offersLogFormatter());
    EXPECT_EQ(logger->logFormatter(), nullptr);
    DDLog::addLogger(logger);
    DDLogInfo(u"before"_s);
    auto formatter = std::make_shared<UpperCaseFormatter>();
    logger->setLogFormatter(formatter); // queued behind "before"
    EXPECT_EQ(logger->logFormatter(), formatter) << "a read from outside waits its turn";
    DDLogInfo(u"after"_s);
    DDLogInfo(u"drop"_s);
    logger->setLogFormatter(formatter); // the same again: nothing changes
    logger->setLogFormatter(nullptr);
    DDLogInfo(u"plain"_s);
    DDLog::flushLog();
    EXPECT_EQ(logger->lines, (QStringList{u"before"_s, u"AFTER"_s, u"plain"_s}));
    DDLog::removeLogger(logger);
    DDLog::flushLog();
}

// On the logger's own queue, or for a logger not owned by a shared pointer (where nothing may be left queued
// for later), the formatter is read and set directly.
TEST(DDAbstractLoggerTest, OnItsOwnQueueOrUnsharedTheFormatterIsReadAndSetDirectly)
{
    auto logger = std::make_shared<FormattingLogger>();
    auto formatter = std::make_shared<UpperCaseFormatter>();
    bool seenAtOnce = false;
    bool seenOldFirst = false;
    // The logging queue is held busy meanwhile: any detour through it would never return.
    DDLog::loggingQueue()->async([&] {
        logger->loggerQueue()->sync([&] {
            seenOldFirst = logger->logFormatter() == nullptr;
            logger->setLogFormatter(formatter);
            seenAtOnce = logger->logFormatter() == formatter;
        });
    });
    DDLog::flushLog();
    EXPECT_TRUE(seenOldFirst);
    EXPECT_TRUE(seenAtOnce);
    EXPECT_EQ(logger->logFormatter(), formatter);

    FormattingLogger unshared;
    unshared.setLogFormatter(formatter);
    EXPECT_EQ(unshared.logFormatter(), formatter);
}
