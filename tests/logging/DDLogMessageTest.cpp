// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogMessage.h"
#include "logging/DDLog.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace {
QString fileNameOf(const char *path)
{
    return DDLogMessage(u"m"_s, 7, 1, 1, path, "f", 1).fileName();
}
} // namespace

TEST(DDLogMessageTest, FileNameIsTheLastComponentWithoutItsExtension)
{
    EXPECT_EQ(fileNameOf("/a/b/Processor.m"), u"Processor"_s);
    EXPECT_EQ(fileNameOf("Processor"), u"Processor"_s);
    EXPECT_EQ(fileNameOf("Processor.cpp"), u"Processor"_s);
    EXPECT_EQ(fileNameOf("/src/core/Processor"), u"Processor"_s);
    EXPECT_EQ(fileNameOf("Sources/My.Class.cpp"), u"My.Class"_s);
    EXPECT_EQ(fileNameOf("/x/Ünïcode.cpp"), u"Ünïcode"_s);
    EXPECT_TRUE(fileNameOf(nullptr).isEmpty());
}

TEST(DDLogMessageTest, DerivedTextsAndCopies)
{
    const QDateTime when(QDate(2026, 3, 4), QTime(5, 6, 7, 89));
    const DDLogMessage message(u"text"_s, 7, 4, 1, "/p/File.cpp", "void f()", 42, when, 0x1a2b);
    EXPECT_EQ(message.threadID(), u"1a2b"_s);
    EXPECT_EQ(message.methodName(), u"void f()"_s);
    EXPECT_EQ(message.timestamp(), when);
    EXPECT_EQ(message.timestampMSecs(), when.toMSecsSinceEpoch());

    const DDLogMessage copy(message);
    EXPECT_EQ(copy.logMsg(), u"text"_s);
    EXPECT_EQ(copy.logLevel(), 7);
    EXPECT_EQ(copy.logFlag(), 4);
    EXPECT_EQ(copy.logContext(), 1);
    EXPECT_EQ(copy.lineNumber(), 42);
    EXPECT_EQ(copy.file(), message.file()) << "the C strings are shared, not copied";
    EXPECT_EQ(copy.fileName(), u"File"_s);
    EXPECT_EQ(copy.machThreadID(), 0x1a2bu);

    const DDLogMessage anonymous(u"x"_s, 7, 1, 1, "F.cpp", nullptr, 1);
    EXPECT_TRUE(anonymous.methodName().isNull());
}

TEST(DDLogMessageTest, ThreadNumbersDifferBetweenThreadsAndLazyTextsAreSafeToShare)
{
    const DDLogMessage here(u"m"_s, 7, 1, 1, "/a/Here.cpp", "f", 1);
    quint32 there = 0;
    std::thread([&] { there = DDLogMessage(u"m"_s, 7, 1, 1, "f", "f", 1).machThreadID(); }).join();
    EXPECT_NE(here.machThreadID(), there);
    EXPECT_EQ(here.machThreadID(), DDLogMessage::currentThreadID());

    std::vector<std::thread> readers;
    std::vector<QString> names(8);
    for (size_t i = 0; i < names.size(); ++i)
        readers.emplace_back([&, i] { names[i] = here.fileName() + here.threadID(); });
    for (std::thread &reader : readers)
        reader.join();
    for (const QString &name : names)
        EXPECT_EQ(name, u"Here"_s + QString::number(here.machThreadID(), 16));
}
