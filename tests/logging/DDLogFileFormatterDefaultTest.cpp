// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogFileFormatterDefault.h"
#include "logging/DDLogMessage.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {
DDLogMessage messageAt(const QDateTime &when, const QString &text)
{
    return DDLogMessage(text, 7, 4, 1, "/x/File.cpp", "f", 1, when, 1);
}
} // namespace

TEST(DDLogFileFormatterDefaultTest, LineIsLocalTimeTwoSpacesAndText)
{
    DDLogFileFormatterDefault formatter;
    const QDateTime when(QDate(2026, 3, 4), QTime(5, 6, 7, 89));
    EXPECT_EQ(formatter.formatLogMessage(messageAt(when, u"hello"_s)), u"2026/03/04 05:06:07:089  hello"_s);
    // The same second again (cached part) and the next one.
    EXPECT_EQ(formatter.formatLogMessage(messageAt(when.addMSecs(900), u"a"_s)),
              u"2026/03/04 05:06:07:989  a"_s);
    EXPECT_EQ(formatter.formatLogMessage(messageAt(when.addMSecs(911), u"b\n"_s)),
              u"2026/03/04 05:06:08:000  b\n"_s);
    const QDateTime evening(QDate(1999, 12, 31), QTime(23, 59, 59, 999));
    EXPECT_EQ(formatter.formatLogMessage(messageAt(evening, QString())), u"1999/12/31 23:59:59:999  "_s);
    EXPECT_EQ(formatter.stringFromTimestamp(when.toMSecsSinceEpoch()),
              when.toString(u"yyyy/MM/dd HH:mm:ss:zzz"));
}
