// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QProcess>
#include <QTimeZone>
#include <csignal>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using corvex::test::runCli;
using corvex::test::waitUntil;

namespace {

// `corvex notifications listen ...` running beside the test.
class Listener
{
public:
    explicit Listener(const QStringList &names)
    {
        mProcess.start(QStringLiteral(CORVEX_CLI_PATH), QStringList{u"notifications"_s, u"listen"_s} + names);
    }
    ~Listener()
    {
        if (mProcess.state() != QProcess::NotRunning) {
            mProcess.kill();
            mProcess.waitForFinished();
        }
    }

    // Posts a probe notification until the listener prints it: from then on it hears every post.
    bool waitUntilListening(const QString &probeName)
    {
        return waitUntil([&] {
            DistributedNotificationCenter::defaultCenter().postNotificationName(probeName);
            return waitUntil([&] { return output().contains(probeName.toUtf8()); },
                             std::chrono::milliseconds(200));
        });
    }

    QByteArray output()
    {
        mOutput += mProcess.readAllStandardOutput();
        return mOutput;
    }

    QProcess mProcess;

private:
    QByteArray mOutput;
};

TEST(NotificationsListen, PrintsEachNotificationAsNameTabJson)
{
    Listener listener({u"TestProbe"_s, u"TestShown"_s});
    ASSERT_TRUE(listener.waitUntilListening(u"TestProbe"_s));
    const QVariantMap userInfo{
        {u"date"_s, QDateTime(QDate(2024, 2, 29), QTime(23, 5, 1, 7), QTimeZone::utc())},
        {u"data"_s, QByteArray("\x00\xff", 2)},
        {u"null"_s, PropertyList::nullMarker()},
        {u"nested"_s, QVariantMap{{u"list"_s, QVariantList{qint64(1), 2.5, true}}}},
        {u"text"_s, u"line\nbreak"_s},
    };
    DistributedNotificationCenter::defaultCenter().postNotificationName(u"TestNotShown"_s);
    DistributedNotificationCenter::defaultCenter().postNotificationName(u"TestShown"_s, userInfo);
    const QByteArray expected =
        "TestShown\t{\"data\":\"AP8=\",\"date\":\"2024-02-29T23:05:01.007Z\",\"nested\":"
        "{\"list\":[1,2.5,true]},\"null\":null,\"text\":\"line\\nbreak\"}\n";
    ASSERT_TRUE(waitUntil([&] { return listener.output().contains("TestShown"); }));
    const QByteArray out = listener.output();
    EXPECT_TRUE(out.endsWith(QByteArray("TestProbe\t{}\n").append(expected))) << out.constData();
}

TEST(NotificationsListen, EndsCleanlyOnInterruptAndTermination)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        Listener listener({});
        ASSERT_TRUE(listener.waitUntilListening(u"TestAnyName"_s));
        ::kill(pid_t(listener.mProcess.processId()), signal);
        ASSERT_TRUE(listener.mProcess.waitForFinished(10000));
        EXPECT_EQ(listener.mProcess.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(listener.mProcess.exitCode(), 0);
    }
}

TEST(NotificationsPost, ValuesAreTypedByTheirLook)
{
    QList<QVariantMap> received;
    QObject context;
    DistributedNotificationCenter::defaultCenter().addObserver(
        u"TestTyped"_s, &context, [&](const QString &, const QVariantMap &u) { received.append(u); });
    const corvex::test::ProcessResult result =
        runCli({u"notifications"_s, u"post"_s, u"TestTyped"_s, u"n=42"_s, u"neg=-7"_s, u"yes=true"_s,
                u"real=4.5"_s, u"huge=99999999999999999999"_s, u"empty="_s, u"eq=a=b"_s, u"quoted:=\"42\""_s,
                u"json:={\"k\": [1, 2.5, null, false]}"_s});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    ASSERT_TRUE(waitUntil([&] { return !received.isEmpty(); }));
    const QVariantMap expected{
        {u"n"_s, qint64(42)},
        {u"neg"_s, qint64(-7)},
        {u"yes"_s, true},
        {u"real"_s, u"4.5"_s},
        {u"huge"_s, u"99999999999999999999"_s},
        {u"empty"_s, u""_s},
        {u"eq"_s, u"a=b"_s},
        {u"quoted"_s, u"42"_s},
        {u"json"_s, QVariantMap{{u"k"_s, QVariantList{qint64(1), 2.5, PropertyList::nullMarker(), false}}}},
    };
    EXPECT_TRUE(PropertyList::equal(received.first(), expected));
}

TEST(NotificationsPost, BadInputAndAMissingBusFailWithOneLine)
{
    const QStringList base{u"notifications"_s, u"post"_s};
    const QList<QStringList> bad{
        {u"notifications"_s},
        {u"notifications"_s, u"shout"_s},
        base,
        base + QStringList{u"Name"_s, u"novalue"_s},
        base + QStringList{u"Name"_s, u"=v"_s},
        base + QStringList{u"Name"_s, u"k=1"_s, u"k=2"_s},
        base + QStringList{u"Name"_s, u"k:={oops"_s},
        base + QStringList{u"Name"_s, u"k:=1 2"_s},
    };
    for (const QStringList &arguments : bad) {
        const corvex::test::ProcessResult result = runCli(arguments);
        EXPECT_NE(result.exitCode, 0) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(result.err.count('\n'), 1) << result.err.constData();
    }

    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + corvex::test::home().toUtf8() + "/no-bus-here");
    const corvex::test::ProcessResult post = runCli(base + QStringList{u"Name"_s});
    const corvex::test::ProcessResult listen = runCli({u"notifications"_s, u"listen"_s});
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    for (const corvex::test::ProcessResult &result : {post, listen}) {
        EXPECT_NE(result.exitCode, 0);
        EXPECT_EQ(result.err.count('\n'), 1) << result.err.constData();
        EXPECT_TRUE(result.err.contains("D-Bus session bus")) << result.err.constData();
    }
}

} // namespace
