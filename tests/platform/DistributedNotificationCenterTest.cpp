// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DistributedNotificationCenter.h"
#include "platform/PropertyList.h"
#include "TestSupport.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDateTime>
#include <QSize>
#include <QThread>
#include <QTimeZone>
#include <gtest/gtest.h>

using corvex::test::waitUntil;

namespace {

struct Received
{
    QString name;
    QVariantMap userInfo;
    bool onMainThread = false;
};

// Records what one observer receives; the registration ends with the recorder.
class Recorder : public QObject
{
public:
    explicit Recorder(const QString &name)
    {
        mId = DistributedNotificationCenter::defaultCenter().addObserver(
            name, this, [this](const QString &n, const QVariantMap &userInfo) {
                received.append({n, userInfo, QThread::currentThread() == qApp->thread()});
            });
    }
    int id() const { return mId; }
    QList<Received> received;

private:
    int mId = 0;
};

DistributedNotificationCenter &center()
{
    return DistributedNotificationCenter::defaultCenter();
}

// The bus's match rules of this process's connection.
QStringList ownMatchRules()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QDBusMessage reply = bus.call(QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus.Debug.Stats"), QStringLiteral("GetAllMatchRules")));
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {QStringLiteral("unavailable")};
    const QDBusArgument argument = reply.arguments().value(0).value<QDBusArgument>();
    QMap<QString, QStringList> rules;
    argument >> rules;
    return rules.value(bus.baseService());
}

TEST(DistributedNotifications, EveryPropertyListTypeArrivesExactly)
{
    QVariantMap nested{
        {QStringLiteral("list"), QVariantList{qint64(1), QStringLiteral("two"), 3.25, QVariantMap{}}}};
    const QVariantMap userInfo{
        {QStringLiteral("string"), QStringLiteral("Grüße\t“quoted”\n")},
        {QStringLiteral("integer"), qint64(-42)},
        {QStringLiteral("large"), qint64(1) << 53},
        {QStringLiteral("real"), 0.1},
        {QStringLiteral("bool"), false},
        {QStringLiteral("data"), QByteArray("\x00\x01\xfe\xff", 4)},
        {QStringLiteral("date"), QDateTime(QDate(2013, 3, 5), QTime(9, 7, 11, 250), QTimeZone::utc())},
        {QStringLiteral("odd milliseconds"),
         QDateTime(QDate(2024, 2, 29), QTime(23, 5, 1, 7), QTimeZone::utc())},
        {QStringLiteral("null"), PropertyList::nullMarker()},
        {QStringLiteral("nested"), nested},
        {QStringLiteral("empty"), QVariantList{}},
    };
    Recorder recorder(QStringLiteral("TestEveryType"));
    ASSERT_TRUE(center().postNotificationName(QStringLiteral("TestEveryType"), userInfo));
    ASSERT_TRUE(waitUntil([&] { return !recorder.received.isEmpty(); }));
    EXPECT_TRUE(PropertyList::equal(recorder.received.first().userInfo, userInfo));

    ASSERT_TRUE(center().postNotificationName(QStringLiteral("TestEveryType")));
    ASSERT_TRUE(waitUntil([&] { return recorder.received.size() == 2; }));
    EXPECT_TRUE(recorder.received.at(1).userInfo.isEmpty());
}

TEST(DistributedNotifications, ValuesThatAreNotPropertyListsAreNotPosted)
{
    Recorder recorder(QStringLiteral("TestInvalid"));
    EXPECT_FALSE(center().postNotificationName(QStringLiteral("TestInvalid"),
                                               {{QStringLiteral("size"), QSize(1, 2)}}));
    EXPECT_FALSE(center().postNotificationName(QString()));
    ASSERT_TRUE(center().postNotificationName(QStringLiteral("TestInvalid"), {{QStringLiteral("ok"), true}}));
    ASSERT_TRUE(waitUntil([&] { return !recorder.received.isEmpty(); }));
    corvex::test::spin(std::chrono::milliseconds(100));
    ASSERT_EQ(recorder.received.size(), 1);
    EXPECT_EQ(recorder.received.first().userInfo.value(QStringLiteral("ok")), QVariant(true));
}

TEST(DistributedNotifications, ObserversRunOnTheMainThreadWhateverThreadPostedOrObserved)
{
    Recorder recorder(QStringLiteral("TestThreads"));
    QList<Received> fromWorkerObserver;
    QThread *worker = QThread::create([&] {
        center().addObserver(
            QStringLiteral("TestThreads"), &recorder, [&](const QString &n, const QVariantMap &u) {
                fromWorkerObserver.append({n, u, QThread::currentThread() == qApp->thread()});
            });
        center().postNotificationName(QStringLiteral("TestThreads"), {{QStringLiteral("n"), qint64(7)}});
    });
    worker->start();
    ASSERT_TRUE(waitUntil([&] { return worker->isFinished(); }));
    delete worker;
    ASSERT_TRUE(waitUntil([&] { return !recorder.received.isEmpty() && !fromWorkerObserver.isEmpty(); }));
    EXPECT_TRUE(recorder.received.first().onMainThread);
    EXPECT_TRUE(fromWorkerObserver.first().onMainThread);
    EXPECT_EQ(recorder.received.first().userInfo.value(QStringLiteral("n")), QVariant(qint64(7)));
}

TEST(DistributedNotifications, NamedObserversSeeTheirNameAndAnEmptyNameSeesAll)
{
    Recorder alpha(QStringLiteral("TestAlpha"));
    Recorder all{QString()};
    ASSERT_TRUE(center().postNotificationName(QStringLiteral("TestBeta")));
    ASSERT_TRUE(center().postNotificationName(QStringLiteral("TestAlpha")));
    ASSERT_TRUE(waitUntil([&] { return !alpha.received.isEmpty(); }));
    ASSERT_TRUE(waitUntil([&] { return all.received.size() >= 2; }));
    corvex::test::spin(std::chrono::milliseconds(100));
    ASSERT_EQ(alpha.received.size(), 1);
    EXPECT_EQ(alpha.received.first().name, QStringLiteral("TestAlpha"));
    QStringList names;
    for (const Received &r : std::as_const(all.received))
        names.append(r.name);
    EXPECT_EQ(names, QStringList({QStringLiteral("TestBeta"), QStringLiteral("TestAlpha")}));
}

TEST(DistributedNotifications, TheBusOnlySendsObservedNames)
{
    const QString rule = QStringLiteral("arg0='TestRuleName'");
    const auto hasRule = [&] { return ownMatchRules().join(QLatin1Char('\n')).contains(rule); };
    if (ownMatchRules() == QStringList{QStringLiteral("unavailable")})
        GTEST_SKIP() << "this bus daemon does not list match rules";
    EXPECT_FALSE(hasRule());
    auto first = std::make_unique<Recorder>(QStringLiteral("TestRuleName"));
    auto second = std::make_unique<Recorder>(QStringLiteral("TestRuleName"));
    EXPECT_TRUE(hasRule());
    first.reset();
    EXPECT_TRUE(hasRule()); // still observed
    second.reset();
    EXPECT_FALSE(hasRule());
}

TEST(DistributedNotifications, RemovedObserversAndDestroyedContextsHearNothing)
{
    Recorder removed(QStringLiteral("TestStop"));
    center().removeObserver(removed.id());
    int callsAfterContextDestroyed = 0;
    auto gone = std::make_unique<QObject>();
    center().addObserver(QStringLiteral("TestStop"), gone.get(),
                         [&](const QString &, const QVariantMap &) { ++callsAfterContextDestroyed; });
    gone.reset();

    // An observer that removes a later one during a delivery: the later one is not called.
    int laterCalls = 0;
    int laterId = 0;
    QObject context;
    center().addObserver(QStringLiteral("TestStop"), &context,
                         [&](const QString &, const QVariantMap &) { center().removeObserver(laterId); });
    laterId = center().addObserver(QStringLiteral("TestStop"), &context,
                                   [&](const QString &, const QVariantMap &) { ++laterCalls; });
    Recorder witness(QStringLiteral("TestStop"));

    ASSERT_TRUE(center().postNotificationName(QStringLiteral("TestStop")));
    ASSERT_TRUE(waitUntil([&] { return !witness.received.isEmpty(); }));
    EXPECT_TRUE(removed.received.isEmpty());
    EXPECT_EQ(callsAfterContextDestroyed, 0);
    EXPECT_EQ(laterCalls, 0);
}

TEST(DistributedNotifications, AnotherProcessesPostArrives)
{
    Recorder recorder(QStringLiteral("TestFromCli"));
    const corvex::test::ProcessResult result = corvex::test::runCli(
        {QStringLiteral("notifications"), QStringLiteral("post"), QStringLiteral("TestFromCli"),
         QStringLiteral("count=3"), QStringLiteral("label=three")});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    ASSERT_TRUE(waitUntil([&] { return !recorder.received.isEmpty(); }));
    const QVariantMap expected{{QStringLiteral("count"), qint64(3)},
                               {QStringLiteral("label"), QStringLiteral("three")}};
    EXPECT_TRUE(PropertyList::equal(recorder.received.first().userInfo, expected));
    EXPECT_TRUE(recorder.received.first().onMainThread);
}

} // namespace
