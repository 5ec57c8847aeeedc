// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/ClientProcessLogger.h"
#include "TestSupport.h"
#include "foundation/Notifications.h"
#include "logging/DDLog.h"
#include "logging/DDLogMessage.h"
#include "logging/Log.h"
#include "platform/DistributedNotificationCenter.h"

#include <QDateTime>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QStringList allKeys{u"context"_s, u"file"_s,       u"flag"_s, u"function"_s,
                          u"level"_s,   u"lineNumber"_s, u"msg"_s,  u"timestamp"_s};

TEST(ClientProcessLoggerTest, AMessageTravelsAsEightKeysEndingAtTheFirstMissingValue)
{
    const QDateTime when(QDate(2026, 3, 4), QTime(5, 6, 7, 89));
    const DDLogMessage full(u"Saved"_s, 7, DDLogFlagWarning, 1, "/src/app/Window.cpp", "void W::save()", 321,
                            when, 77u);
    const QVariantMap dictionary = ClientProcessLogger::dictionaryForLogMessage(full);
    EXPECT_EQ(dictionary.keys(), allKeys);
    EXPECT_EQ(dictionary.value(u"msg"_s), u"Saved"_s);
    EXPECT_EQ(dictionary.value(u"level"_s).toInt(), 7);
    EXPECT_EQ(dictionary.value(u"flag"_s).toInt(), 2);
    EXPECT_EQ(dictionary.value(u"context"_s).toInt(), 1);
    EXPECT_EQ(dictionary.value(u"timestamp"_s).typeId(), QMetaType::QDateTime);
    EXPECT_EQ(dictionary.value(u"timestamp"_s).toDateTime(), when);
    EXPECT_EQ(dictionary.value(u"file"_s), u"/src/app/Window.cpp"_s);
    EXPECT_EQ(dictionary.value(u"function"_s), u"void W::save()"_s);
    EXPECT_EQ(dictionary.value(u"lineNumber"_s).toInt(), 321);

    const DDLogMessage noFunction(u"x"_s, 7, 4, 1, "/a/b.cpp", nullptr, 9, when, 1u);
    EXPECT_EQ(ClientProcessLogger::dictionaryForLogMessage(noFunction).size(), 6);
    EXPECT_FALSE(ClientProcessLogger::dictionaryForLogMessage(noFunction).contains(u"lineNumber"_s));
    const DDLogMessage noFile(u"x"_s, 7, 4, 1, nullptr, "f", 9, when, 1u);
    EXPECT_EQ(ClientProcessLogger::dictionaryForLogMessage(noFile).size(), 5);
}

TEST(ClientProcessLoggerTest, EveryStatementIsPostedUnformatted)
{
    QList<QVariantMap> received;
    const int observer = DistributedNotificationCenter::defaultCenter().addObserver(
        CorvexAppLogNotification, nullptr,
        [&](const QString &, const QVariantMap &userInfo) { received.append(userInfo); });
    const std::shared_ptr<ClientProcessLogger> logger = ClientProcessLogger::sharedInstance();
    EXPECT_EQ(logger, ClientProcessLogger::sharedInstance());
    EXPECT_EQ(logger->loggerName(), u"com.ostrel.ClientProcessLogger"_s);
    DDLog::addLogger(logger);

    DDLogError(u"An error with\ntwo lines"_s);
    DDLogInfo(u"Some information"_s);
    DDLog::flushLog();
    ASSERT_TRUE(corvex::test::waitUntil([&] { return received.size() == 2; }));
    DDLog::removeLogger(logger);
    DDLog::flushLog();
    DistributedNotificationCenter::defaultCenter().removeObserver(observer);

    EXPECT_EQ(received.at(0).value(u"msg"_s), u"An error with\ntwo lines"_s);
    EXPECT_EQ(received.at(0).value(u"flag"_s).toInt(), 1);
    EXPECT_EQ(received.at(1).value(u"msg"_s), u"Some information"_s);
    EXPECT_EQ(received.at(1).value(u"flag"_s).toInt(), 4);
    EXPECT_EQ(received.at(1).keys(), allKeys);
    EXPECT_TRUE(received.at(1).value(u"file"_s).toString().endsWith(u"ClientProcessLoggerTest.cpp"_s));
    EXPECT_LE(qAbs(received.at(1).value(u"timestamp"_s).toDateTime().msecsTo(QDateTime::currentDateTime())),
              60000);
}

} // namespace
