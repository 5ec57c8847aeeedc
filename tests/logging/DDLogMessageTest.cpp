// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogMessage.h"
#include "logging/DDLog.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {
QString fileNameOf(const char *path)
{
    return DDLogMessage(QStringLiteral("m"), 7, 1, 1, path, "f", 1).fileName();
}
} // namespace

TEST(DDLogMessageTest, FileNameIsTheLastComponentWithoutItsExtension)
{
    EXPECT_EQ(fileNameOf("/a/b/Processor.m"), QStringLiteral("Processor"));
    EXPECT_EQ(fileNameOf("Processor"), QStringLiteral("Processor"));
    EXPECT_EQ(fileNameOf("Processor.cpp"), QStringLiteral("Processor"));
    EXPECT_EQ(fileNameOf("/src/core/Processor"), QStringLiteral("Processor"));
    EXPECT_EQ(fileNameOf("Sources/My.Class.cpp"), QStringLiteral("My.Class"));
    EXPECT_EQ(fileNameOf("/x/Ünïcode.cpp"), QStringLiteral("Ünïcode"));
    EXPECT_TRUE(fileNameOf(nullptr).isEmpty());
}

TEST(DDLogMessageTest, DerivedTextsAndCopies)
{
    const QDateTime when(QDate(2026, 3, 4), QTime(5, 6, 7, 89));
    const DDLogMessage message(QStringLiteral("text"), 7, 4, 1, "/p/File.cpp", "void f()", 42, when, 0x1a2b);
    EXPECT_EQ(message.threadID(), QStringLiteral("1a2b"));
    EXPECT_EQ(message.methodName(), QStringLiteral("void f()"));
    EXPECT_EQ(message.timestamp(), when);
    EXPECT_EQ(message.timestampMSecs(), when.toMSecsSinceEpoch());

    const DDLogMessage copy(message);
    EXPECT_EQ(copy.logMsg(), QStringLiteral("text"));
    EXPECT_EQ(copy.logLevel(), 7);
    EXPECT_EQ(copy.logFlag(), 4);
    EXPECT_EQ(copy.logContext(), 1);
    EXPECT_EQ(copy.lineNumber(), 42);
    EXPECT_EQ(copy.file(), message.file()) << "the C strings are shared, not copied";
    EXPECT_EQ(copy.fileName(), QStringLiteral("File"));
    EXPECT_EQ(copy.machThreadID(), 0x1a2bu);

    const DDLogMessage anonymous(QStringLiteral("x"), 7, 1, 1, "F.cpp", nullptr, 1);
    EXPECT_TRUE(anonymous.methodName().isNull());
}

TEST(DDLogMessageTest, ThreadNumbersDifferBetweenThreadsAndLazyTextsAreSafeToShare)
{
    const DDLogMessage here(QStringLiteral("m"), 7, 1, 1, "/a/Here.cpp", "f", 1);
    quint32 there = 0;
    std::thread([&] {
        there = DDLogMessage(QStringLiteral("m"), 7, 1, 1, "f", "f", 1).machThreadID();
    }).join();
    EXPECT_NE(here.machThreadID(), there);
    EXPECT_EQ(here.machThreadID(), DDLogMessage::currentThreadID());

    std::vector<std::thread> readers;
    std::vector<QString> names(8);
    for (size_t i = 0; i < names.size(); ++i)
        readers.emplace_back([&, i] { names[i] = here.fileName() + here.threadID(); });
    for (std::thread &reader : readers)
        reader.join();
    for (const QString &name : names)
        EXPECT_EQ(name, QStringLiteral("Here") + QString::number(here.machThreadID(), 16));
}
