// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/AppLogRelay.h"
#include "logging/DDLogMessage.h"

#include <QDateTime>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(AppLogRelayTest, MessagesKeepTheApplicationsTimeAndSource)
{
    AppLogRelay relay;
    const QDateTime timestamp = QDateTime(QDate(2025, 12, 31), QTime(23, 59, 58, 7));
    const QVariantMap full{{u"msg"_s, u"text"_s},
                           {u"level"_s, 7},
                           {u"flag"_s, 1},
                           {u"context"_s, 1},
                           {u"timestamp"_s, timestamp},
                           {u"file"_s, u"/src/app/Thing.cpp"_s},
                           {u"function"_s, u"void Thing::go()"_s},
                           {u"lineNumber"_s, 12}};
    std::shared_ptr<const DDLogMessage> message = relay.messageFromDictionary(full);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->logMsg(), u"text"_s);
    EXPECT_EQ(message->logFlag(), 1);
    EXPECT_EQ(message->timestamp(), timestamp);
    EXPECT_EQ(message->fileName(), u"Thing"_s);
    EXPECT_EQ(message->methodName(), u"void Thing::go()"_s);
    EXPECT_EQ(message->lineNumber(), 12);
    // The same names are shared, not copied again for every message.
    EXPECT_EQ(relay.messageFromDictionary(full)->file(), message->file());

    QVariantMap withoutFunction = full;
    withoutFunction.remove(u"function"_s);
    withoutFunction.remove(u"lineNumber"_s);
    message = relay.messageFromDictionary(withoutFunction);
    ASSERT_TRUE(message);
    EXPECT_EQ(message->function(), nullptr);

    QVariantMap withoutText = full;
    withoutText.insert(u"msg"_s, 5);
    EXPECT_FALSE(relay.messageFromDictionary(withoutText));
}

} // namespace
