// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "RecordingLogger.h"
#include "TestSupport.h"
#include "foundation/Diagnostics.h"
#include "logging/DDLogDelivery.h"
#include "logging/DDLog_p.h"
#include "logging/Log.h"

#include <QCoreApplication>
#include <condition_variable>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

namespace {

class DDLogTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        DDLog::removeAllLoggers();
        DDLog::flushLog();
    }
};

using corvex::test::waitUntil;

struct ParticipatingClass
{
    static inline quint32 level = 3;
    static quint32 ddLogLevel() { return level; }
    static void ddSetLogLevel(quint32 newLevel) { level = newLevel; }
};
struct NonParticipatingClass
{
    static quint32 ddLogLevel() { return 1; }
};

} // namespace

// Without loggers messages are dropped and their places freed; a null message is not even queued.
TEST_F(DDLogTest, UnheardOrNullMessagesKeepNoPlace)
{
    DDLog::flushLog();
    std::atomic<int> logged{0};
    std::thread producer([&] {
        for (int i = 0; i < 3000; ++i) {
            DDLogInfo(u"dropped %1"_s.arg(i));
            ++logged;
        }
    });
    ASSERT_TRUE(waitUntil([&] { return logged == 3000; })) << "producer blocked: places not freed";
    producer.join();
    DDLog::flushLog();
    EXPECT_EQ(ddlog_private::queueSizeSemaphore().value(), 1000);

    auto logger = std::make_shared<RecordingLogger>();
    DDLog::addLogger(logger);
    DDLog::flushLog();
    DDLog::log(true, 7, DDLogFlagError, 1, __FILE__, "f", 1, QString());
    DDLogWarn(QString());
    EXPECT_EQ(ddlog_private::queueSizeSemaphore().value(), 1000);
    DDLogInfo(u""_s); // empty but not null: logged
    DDLog::flushLog();
    EXPECT_EQ(logger->texts(), QStringList{QString()});
}

// An error reaches the loggers before its statement returns; a message names its file from the top of the
// source tree.
TEST_F(DDLogTest, ErrorsCarryTheStatementsDetailsAndArriveBeforeItReturns)
{
    auto logger = std::make_shared<RecordingLogger>();
    std::mutex mutex;
    QList<std::shared_ptr<DDLogMessage>> seen;
    logger->hook = [&](const DDLogMessage &message) {
        std::lock_guard lock(mutex);
        seen.append(std::make_shared<DDLogMessage>(message));
    };
    DDLog::addLogger(logger);
    const int line = __LINE__ + 1;
    DDLogError(u"careful"_s);
    ASSERT_EQ(seen.size(), 1);
    const DDLogMessage &message = *seen.first();
    EXPECT_EQ(message.logMsg(), u"careful"_s);
    EXPECT_EQ(message.logLevel(), 7);
    EXPECT_EQ(message.logFlag(), qint32(DDLogFlagError));
    EXPECT_EQ(message.logContext(), 1);
    EXPECT_STREQ(message.file(), "tests/logging/DDLogTest.cpp");
    EXPECT_EQ(message.fileName(), u"DDLogTest"_s);
    EXPECT_TRUE(message.methodName().contains(QLatin1String("ErrorsCarryTheStatementsDetails")));
    EXPECT_EQ(message.lineNumber(), line);
    EXPECT_EQ(message.machThreadID(), DDLogMessage::currentThreadID());
    EXPECT_LE(qAbs(message.timestamp().msecsTo(QDateTime::currentDateTime())), 60000);
}

TEST_F(DDLogTest, FlushLogWaitsForEveryLoggerToProcessEarlierMessages)
{
    auto slow = std::make_shared<RecordingLogger>(u"slow"_s);
    slow->hook = [](const DDLogMessage &) { std::this_thread::sleep_for(200us); };
    auto fast = std::make_shared<RecordingLogger>(u"fast"_s);
    DDLog::addLogger(slow);
    DDLog::addLogger(fast);
    for (int i = 0; i < 300; ++i)
        DDLogInfo(QString::number(i));
    DDLog::flushLog();
    EXPECT_EQ(slow->count(), 300);
    EXPECT_EQ(fast->count(), 300);
    EXPECT_EQ(slow->texts().last(), u"299"_s);
}

TEST(DDLogDeliveryTest, LatestAddedLoggerIsServedFirstOnOneProcessor)
{
    DDLogDelivery delivery(1);
    const DDLogMessage message(u"text"_s, 7, DDLogFlagInfo, 0, __FILE__, "f", 1);
    std::mutex mutex;
    QStringList order;
    QList<std::shared_ptr<RecordingLogger>> loggers;
    for (const char *name : {"first", "second", "third"}) {
        auto logger = std::make_shared<RecordingLogger>(QString::fromLatin1(name));
        logger->hook = [&, name](const DDLogMessage &) {
            std::lock_guard lock(mutex);
            order.append(QString::fromLatin1(name));
        };
        loggers.append(logger);
        delivery.add(logger);
    }
    delivery.deliver(message);
    delivery.deliver(message);
    EXPECT_EQ(order, (QStringList{u"third"_s, u"second"_s, u"first"_s, u"third"_s, u"second"_s, u"first"_s}));
    // Each ran on a queue of its own, labelled with its name.
    for (const std::shared_ptr<RecordingLogger> &logger : loggers)
        EXPECT_EQ(logger->queueLabels(), QStringList(2, logger->loggerName()));
}

TEST(DDLogDeliveryTest, LoggersWorkInParallelOnSeveralProcessors)
{
    DDLogDelivery delivery(2);
    const DDLogMessage message(u"text"_s, 7, DDLogFlagInfo, 0, __FILE__, "f", 1);
    // Each logger waits until the other has started on the same message: only parallel delivery lets both on.
    std::mutex mutex;
    std::condition_variable changed;
    int started = 0;
    bool bothMet = true;
    auto meet = [&](const DDLogMessage &) {
        std::unique_lock lock(mutex);
        ++started;
        changed.notify_all();
        if (!changed.wait_for(lock, 5s, [&] { return started % 2 == 0; }))
            bothMet = false;
    };
    auto a = std::make_shared<RecordingLogger>(u"a"_s);
    auto b = std::make_shared<RecordingLogger>(u"b"_s);
    a->hook = meet;
    b->hook = meet;
    delivery.add(a);
    delivery.add(b);
    for (int i = 1; i <= 5; ++i) {
        delivery.deliver(message);
        // Back only once both are done.
        EXPECT_EQ(a->count(), i);
        EXPECT_EQ(b->count(), i);
    }
    EXPECT_TRUE(bothMet);
}

TEST_F(DDLogTest, AProducerBlocksWhileAThousandMessagesWait)
{
    std::mutex mutex;
    std::condition_variable opened;
    bool gateOpen = false;
    auto logger = std::make_shared<RecordingLogger>();
    logger->hook = [&](const DDLogMessage &) {
        std::unique_lock lock(mutex);
        opened.wait(lock, [&] { return gateOpen; });
    };
    DDLog::addLogger(logger);
    DDLog::flushLog();
    std::atomic<int> returned{0};
    std::thread producer([&] {
        for (int i = 0; i < 1001; ++i) {
            DDLogInfo(QString::number(i));
            ++returned;
        }
    });
    ASSERT_TRUE(waitUntil([&] { return returned == 1000; }));
    // The 1001st call waits for a place: the count stays and the semaphore shows one waiter.
    EXPECT_TRUE(waitUntil([] { return ddlog_private::queueSizeSemaphore().value() == -1; }));
    EXPECT_EQ(returned.load(), 1000);
    {
        std::lock_guard lock(mutex);
        gateOpen = true;
    }
    opened.notify_all();
    producer.join();
    DDLog::flushLog();
    EXPECT_EQ(returned.load(), 1001);
    EXPECT_EQ(logger->count(), 1001);
    EXPECT_EQ(ddlog_private::queueSizeSemaphore().value(), 1000);
}

TEST_F(DDLogTest, AddingAndRemovingHappenInTurnOnTheLoggingQueue)
{
    auto kept = std::make_shared<RecordingLogger>(u"kept"_s);
    auto removed = std::make_shared<RecordingLogger>(u"removed"_s);
    DDLog::addLogger(nullptr);
    DDLog::addLogger(kept);
    DDLog::addLogger(removed);
    DDLogInfo(u"both"_s);
    DDLog::removeLogger(removed);
    DDLog::removeLogger(nullptr);
    DDLogInfo(u"one"_s);
    DDLog::flushLog();
    EXPECT_EQ(kept->texts(), (QStringList{u"both"_s, u"one"_s}));
    EXPECT_EQ(removed->texts(), QStringList{u"both"_s});
    EXPECT_TRUE(kept->addedOnLoggingQueue);
    EXPECT_TRUE(removed->removedOnLoggingQueue);
    DDLog::removeAllLoggers();
    DDLogInfo(u"none"_s);
    DDLog::flushLog();
    EXPECT_EQ(kept->count(), 2);
    EXPECT_TRUE(kept->removedOnLoggingQueue);
}

// Termination told directly, or the application's aboutToQuit (observed once a logger has been added).
TEST_F(DDLogTest, TerminationFlushesTheLog)
{
    ASSERT_TRUE(QCoreApplication::instance());
    for (const bool direct : {true, false}) {
        SCOPED_TRACE(direct ? "applicationWillTerminate" : "aboutToQuit");
        auto logger = std::make_shared<RecordingLogger>();
        logger->hook = [](const DDLogMessage &) { std::this_thread::sleep_for(1ms); };
        DDLog::addLogger(logger);
        for (int i = 0; i < 20; ++i)
            DDLogInfo(u"pending"_s);
        if (direct)
            DDLog::applicationWillTerminate();
        else
            ASSERT_TRUE(QMetaObject::invokeMethod(qApp, "aboutToQuit", Qt::DirectConnection));
        EXPECT_EQ(logger->count(), 20);
        DDLog::removeAllLoggers();
    }
}

TEST_F(DDLogTest, PerClassLevelsOnlyForClassesThatTakePart)
{
    EXPECT_EQ(DDLog::logLevelForClass<NonParticipatingClass>(), 0xFFFFFFFFu);
    EXPECT_EQ(DDLog::logLevelForClass<QString>(), 0xFFFFFFFFu);
    EXPECT_EQ(DDLog::logLevelForClass<ParticipatingClass>(), 3u);
    DDLog::setLogLevelForClass<ParticipatingClass>(5);
    EXPECT_EQ(ParticipatingClass::level, 5u);
    DDLog::setLogLevelForClass<NonParticipatingClass>(5); // ignored

    EXPECT_FALSE(DDLog::registeredClassNames().contains(u"ParticipatingClass"_s));
    EXPECT_EQ(DDLog::logLevelForClassWithName(u"ParticipatingClass"_s), 0xFFFFFFFFu);
    EXPECT_TRUE(DDLog::registerClass<ParticipatingClass>(u"ParticipatingClass"_s));
    EXPECT_FALSE(DDLog::registerClass<ParticipatingClass>(u"ParticipatingClass"_s));
    EXPECT_FALSE(DDLog::registerClass(DDLogRegisteredClass{u"Half"_s, [] { return 1u; }, {}}));
    EXPECT_TRUE(DDLog::registeredClassNames().contains(u"ParticipatingClass"_s));
    EXPECT_EQ(DDLog::logLevelForClassWithName(u"ParticipatingClass"_s), 5u);
    DDLog::setLogLevelForClassWithName(7, u"ParticipatingClass"_s);
    EXPECT_EQ(ParticipatingClass::level, 7u);
    DDLog::setLogLevelForClassWithName(1, u"Unknown"_s);
    EXPECT_EQ(DDLog::logLevelForClassWithName(u"Unknown"_s), 0xFFFFFFFFu);
}

TEST_F(DDLogTest, ALoggersOwnTroubleGoesToStderrNotBackThroughTheDispatcher)
{
    auto logger = std::make_shared<RecordingLogger>();
    logger->hook = [](const DDLogMessage &message) {
        if (message.logMsg() == u"archive"_s)
            CorvexReportError(u"could not post the archive notice"_s);
    };
    DDLog::addLogger(logger);
    testing::internal::CaptureStderr();
    DDLogInfo(u"archive"_s);
    DDLog::flushLog();
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::HasSubstr("could not post the archive notice"));
    EXPECT_EQ(logger->texts(), QStringList{u"archive"_s});
}
