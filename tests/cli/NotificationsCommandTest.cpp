// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DistributedNotificationCenter.h"
#include "platform/PropertyList.h"
#include "TestSupport.h"

#include <QDateTime>
#include <QProcess>
#include <QTimeZone>
#include <csignal>
#include <gtest/gtest.h>

using corvex::test::runCli;
using corvex::test::waitUntil;

namespace {

// `corvex notifications listen ...` running beside the test.
class Listener
{
public:
    explicit Listener(const QStringList &names)
    {
        mProcess.start(QStringLiteral(CORVEX_CLI_PATH),
                       QStringList{QStringLiteral("notifications"), QStringLiteral("listen")} + names);
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
    Listener listener({QStringLiteral("TestProbe"), QStringLiteral("TestShown")});
    ASSERT_TRUE(listener.waitUntilListening(QStringLiteral("TestProbe")));
    const QVariantMap userInfo{
        {QStringLiteral("date"), QDateTime(QDate(2024, 2, 29), QTime(23, 5, 1, 7), QTimeZone::utc())},
        {QStringLiteral("data"), QByteArray("\x00\xff", 2)},
        {QStringLiteral("null"), PropertyList::nullMarker()},
        {QStringLiteral("nested"), QVariantMap{{QStringLiteral("list"), QVariantList{qint64(1), 2.5, true}}}},
        {QStringLiteral("text"), QStringLiteral("line\nbreak")},
    };
    DistributedNotificationCenter::defaultCenter().postNotificationName(QStringLiteral("TestNotShown"));
    DistributedNotificationCenter::defaultCenter().postNotificationName(QStringLiteral("TestShown"),
                                                                        userInfo);
    const QByteArray expected =
        "TestShown\t{\"data\":\"AP8=\",\"date\":\"2024-02-29T23:05:01.007Z\",\"nested\":"
        "{\"list\":[1,2.5,true]},\"null\":null,\"text\":\"line\\nbreak\"}\n";
    ASSERT_TRUE(waitUntil([&] { return listener.output().contains("TestShown"); }));
    const QByteArray out = listener.output();
    EXPECT_TRUE(out.endsWith(QByteArray("TestProbe\t{}\n").append(expected))) << out.constData();
    EXPECT_FALSE(out.contains("TestNotShown"));
}

TEST(NotificationsListen, EndsCleanlyOnInterruptAndTermination)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        Listener listener({});
        ASSERT_TRUE(listener.waitUntilListening(QStringLiteral("TestAnyName")));
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
        QStringLiteral("TestTyped"), &context,
        [&](const QString &, const QVariantMap &u) { received.append(u); });
    const corvex::test::ProcessResult result =
        runCli({QStringLiteral("notifications"), QStringLiteral("post"), QStringLiteral("TestTyped"),
                QStringLiteral("n=42"), QStringLiteral("neg=-7"), QStringLiteral("yes=true"),
                QStringLiteral("real=4.5"), QStringLiteral("huge=99999999999999999999"),
                QStringLiteral("empty="), QStringLiteral("eq=a=b"), QStringLiteral("quoted:=\"42\""),
                QStringLiteral("json:={\"k\": [1, 2.5, null, false]}")});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    ASSERT_TRUE(waitUntil([&] { return !received.isEmpty(); }));
    const QVariantMap expected{
        {QStringLiteral("n"), qint64(42)},
        {QStringLiteral("neg"), qint64(-7)},
        {QStringLiteral("yes"), true},
        {QStringLiteral("real"), QStringLiteral("4.5")},
        {QStringLiteral("huge"), QStringLiteral("99999999999999999999")},
        {QStringLiteral("empty"), QStringLiteral("")},
        {QStringLiteral("eq"), QStringLiteral("a=b")},
        {QStringLiteral("quoted"), QStringLiteral("42")},
        {QStringLiteral("json"),
         QVariantMap{{QStringLiteral("k"), QVariantList{qint64(1), 2.5, PropertyList::nullMarker(), false}}}},
    };
    EXPECT_TRUE(PropertyList::equal(received.first(), expected));
}

TEST(NotificationsPost, BadInputAndAMissingBusFailWithOneLine)
{
    const QStringList base{QStringLiteral("notifications"), QStringLiteral("post")};
    const QList<QStringList> bad{
        {QStringLiteral("notifications")},
        {QStringLiteral("notifications"), QStringLiteral("shout")},
        base,
        base + QStringList{QStringLiteral("Name"), QStringLiteral("novalue")},
        base + QStringList{QStringLiteral("Name"), QStringLiteral("=v")},
        base + QStringList{QStringLiteral("Name"), QStringLiteral("k=1"), QStringLiteral("k=2")},
        base + QStringList{QStringLiteral("Name"), QStringLiteral("k:={oops")},
        base + QStringList{QStringLiteral("Name"), QStringLiteral("k:=1 2")},
    };
    for (const QStringList &arguments : bad) {
        const corvex::test::ProcessResult result = runCli(arguments);
        EXPECT_NE(result.exitCode, 0) << arguments.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(result.err.count('\n'), 1) << result.err.constData();
    }

    const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + corvex::test::home().toUtf8() + "/no-bus-here");
    const corvex::test::ProcessResult post = runCli(base + QStringList{QStringLiteral("Name")});
    const corvex::test::ProcessResult listen =
        runCli({QStringLiteral("notifications"), QStringLiteral("listen")});
    qputenv("DBUS_SESSION_BUS_ADDRESS", address);
    for (const corvex::test::ProcessResult &result : {post, listen}) {
        EXPECT_NE(result.exitCode, 0);
        EXPECT_EQ(result.err.count('\n'), 1) << result.err.constData();
        EXPECT_TRUE(result.err.contains("D-Bus session bus")) << result.err.constData();
    }
}

} // namespace
