// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/AppLogRelay.h"
#include "logging/DDLogMessage.h"

#include <QDateTime>
#include <gtest/gtest.h>

namespace {

TEST(AppLogRelayTest, MessagesKeepTheApplicationsTimeAndSource)
{
    AppLogRelay relay;
    const QDateTime timestamp = QDateTime(QDate(2025, 12, 31), QTime(23, 59, 58, 7));
    const QVariantMap full{{QStringLiteral("msg"), QStringLiteral("text")},
                           {QStringLiteral("level"), 7},
                           {QStringLiteral("flag"), 1},
                           {QStringLiteral("context"), 1},
                           {QStringLiteral("timestamp"), timestamp},
                           {QStringLiteral("file"), QStringLiteral("/src/app/Thing.cpp")},
                           {QStringLiteral("function"), QStringLiteral("void Thing::go()")},
                           {QStringLiteral("lineNumber"), 12}};
    std::shared_ptr<const DDLogMessage> message = relay.messageFromDictionary(full);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->logMsg(), QStringLiteral("text"));
    EXPECT_EQ(message->logFlag(), 1);
    EXPECT_EQ(message->timestamp(), timestamp);
    EXPECT_EQ(message->fileName(), QStringLiteral("Thing"));
    EXPECT_EQ(message->methodName(), QStringLiteral("void Thing::go()"));
    EXPECT_EQ(message->lineNumber(), 12);
    // The same names are shared, not copied again for every message.
    EXPECT_EQ(relay.messageFromDictionary(full)->file(), message->file());

    QVariantMap withoutFunction = full;
    withoutFunction.remove(QStringLiteral("function"));
    withoutFunction.remove(QStringLiteral("lineNumber"));
    message = relay.messageFromDictionary(withoutFunction);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->function(), nullptr);

    QVariantMap withoutText = full;
    withoutText.insert(QStringLiteral("msg"), 5);
    EXPECT_FALSE(relay.messageFromDictionary(withoutText));
}

} // namespace
