// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/ClientProcessLogger.h"
#include "logging/DDLog.h"
#include "logging/DDLogMessage.h"
#include "platform/DistributedNotificationCenter.h"
#include "logging/Log.h"
#include "foundation/Notifications.h"
#include "TestSupport.h"

#include <QDateTime>
#include <gtest/gtest.h>

namespace {

const QStringList allKeys{QStringLiteral("context"), QStringLiteral("file"),
                          QStringLiteral("flag"),    QStringLiteral("function"),
                          QStringLiteral("level"),   QStringLiteral("lineNumber"),
                          QStringLiteral("msg"),     QStringLiteral("timestamp")};

TEST(ClientProcessLoggerTest, AMessageTravelsAsEightKeysEndingAtTheFirstMissingValue)
{
    const QDateTime when(QDate(2026, 3, 4), QTime(5, 6, 7, 89));
    const DDLogMessage full(QStringLiteral("Saved"), 7, DDLogFlagWarning, 1, "/src/app/Window.cpp",
                            "void W::save()", 321, when, 77u);
    const QVariantMap dictionary = ClientProcessLogger::dictionaryForLogMessage(full);
    EXPECT_EQ(dictionary.keys(), allKeys);
    EXPECT_EQ(dictionary.value(QStringLiteral("msg")), QStringLiteral("Saved"));
    EXPECT_EQ(dictionary.value(QStringLiteral("level")).toInt(), 7);
    EXPECT_EQ(dictionary.value(QStringLiteral("flag")).toInt(), 2);
    EXPECT_EQ(dictionary.value(QStringLiteral("context")).toInt(), 1);
    EXPECT_EQ(dictionary.value(QStringLiteral("timestamp")).typeId(), QMetaType::QDateTime);
    EXPECT_EQ(dictionary.value(QStringLiteral("timestamp")).toDateTime(), when);
    EXPECT_EQ(dictionary.value(QStringLiteral("file")), QStringLiteral("/src/app/Window.cpp"));
    EXPECT_EQ(dictionary.value(QStringLiteral("function")), QStringLiteral("void W::save()"));
    EXPECT_EQ(dictionary.value(QStringLiteral("lineNumber")).toInt(), 321);

    const DDLogMessage noFunction(QStringLiteral("x"), 7, 4, 1, "/a/b.cpp", nullptr, 9, when, 1u);
    EXPECT_EQ(ClientProcessLogger::dictionaryForLogMessage(noFunction).size(), 6);
    EXPECT_FALSE(
        ClientProcessLogger::dictionaryForLogMessage(noFunction).contains(QStringLiteral("lineNumber")));
    const DDLogMessage noFile(QStringLiteral("x"), 7, 4, 1, nullptr, "f", 9, when, 1u);
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
    EXPECT_EQ(logger->loggerName(), QStringLiteral("com.ostrel.ClientProcessLogger"));
    DDLog::addLogger(logger);

    DDLogError(QStringLiteral("An error with\ntwo lines"));
    DDLogInfo(QStringLiteral("Some information"));
    DDLog::flushLog();
    ASSERT_TRUE(corvex::test::waitUntil([&] { return received.size() == 2; }));
    DDLog::removeLogger(logger);
    DDLog::flushLog();
    DistributedNotificationCenter::defaultCenter().removeObserver(observer);

    EXPECT_EQ(received.at(0).value(QStringLiteral("msg")), QStringLiteral("An error with\ntwo lines"));
    EXPECT_EQ(received.at(0).value(QStringLiteral("flag")).toInt(), 1);
    EXPECT_EQ(received.at(1).value(QStringLiteral("msg")), QStringLiteral("Some information"));
    EXPECT_EQ(received.at(1).value(QStringLiteral("flag")).toInt(), 4);
    EXPECT_EQ(received.at(1).keys(), allKeys);
    EXPECT_TRUE(received.at(1)
                    .value(QStringLiteral("file"))
                    .toString()
                    .endsWith(QStringLiteral("ClientProcessLoggerTest.cpp")));
    EXPECT_LE(qAbs(received.at(1)
                       .value(QStringLiteral("timestamp"))
                       .toDateTime()
                       .msecsTo(QDateTime::currentDateTime())),
              60000);
}

} // namespace
