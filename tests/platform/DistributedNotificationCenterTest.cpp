// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DistributedNotificationCenter.h"
#include "TestSupport.h"
#include "platform/PropertyList.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDateTime>
#include <QSize>
#include <QThread>
#include <QTimeZone>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

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
    const QDBusMessage reply = bus.call(
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus.Debug.Stats"_s, u"GetAllMatchRules"_s));
    if (reply.type() != QDBusMessage::ReplyMessage)
        return {u"unavailable"_s};
    const QDBusArgument argument = reply.arguments().value(0).value<QDBusArgument>();
    QMap<QString, QStringList> rules;
    argument >> rules;
    return rules.value(bus.baseService());
}

// The payload is a binary property list (each type's round trip is PropertyListTest's): what it keeps that
// other forms lose arrives as it was posted.
TEST(DistributedNotifications, UserInfoArrivesExactly)
{
    const QVariantMap userInfo{
        {u"string"_s, u"Grüße\t“quoted”\n"_s},
        {u"odd milliseconds"_s, QDateTime(QDate(2024, 2, 29), QTime(23, 5, 1, 7), QTimeZone::utc())},
        {u"null"_s, PropertyList::nullMarker()},
        {u"nested"_s, QVariantMap{{u"list"_s, QVariantList{qint64(1), 3.25, QVariantMap{}}}}},
    };
    Recorder recorder(u"TestUserInfo"_s);
    ASSERT_TRUE(center().postNotificationName(u"TestUserInfo"_s, userInfo));
    ASSERT_TRUE(waitUntil([&] { return !recorder.received.isEmpty(); }));
    EXPECT_TRUE(PropertyList::equal(recorder.received.first().userInfo, userInfo));

    ASSERT_TRUE(center().postNotificationName(u"TestUserInfo"_s));
    ASSERT_TRUE(waitUntil([&] { return recorder.received.size() == 2; }));
    EXPECT_TRUE(recorder.received.at(1).userInfo.isEmpty());
}

TEST(DistributedNotifications, ValuesThatAreNotPropertyListsAreNotPosted)
{
    Recorder recorder(u"TestInvalid"_s);
    EXPECT_FALSE(center().postNotificationName(u"TestInvalid"_s, {{u"size"_s, QSize(1, 2)}}));
    EXPECT_FALSE(center().postNotificationName(QString()));
    ASSERT_TRUE(center().postNotificationName(u"TestInvalid"_s, {{u"ok"_s, true}}));
    // Notifications arrive in turn: anything the refused posts sent would come before this last one.
    ASSERT_TRUE(center().postNotificationName(u"TestInvalid"_s, {{u"last"_s, true}}));
    ASSERT_TRUE(waitUntil([&] {
        return !recorder.received.isEmpty() && recorder.received.last().userInfo.contains(u"last"_s);
    }));
    ASSERT_EQ(recorder.received.size(), 2);
    EXPECT_EQ(recorder.received.first().userInfo.value(u"ok"_s), QVariant(true));
}

TEST(DistributedNotifications, ObserversRunOnTheMainThreadWhateverThreadPostedOrObserved)
{
    Recorder recorder(u"TestThreads"_s);
    QList<Received> fromWorkerObserver;
    QThread *worker = QThread::create([&] {
        center().addObserver(u"TestThreads"_s, &recorder, [&](const QString &n, const QVariantMap &u) {
            fromWorkerObserver.append({n, u, QThread::currentThread() == qApp->thread()});
        });
        center().postNotificationName(u"TestThreads"_s, {{u"n"_s, qint64(7)}});
    });
    worker->start();
    ASSERT_TRUE(waitUntil([&] { return worker->isFinished(); }));
    delete worker;
    ASSERT_TRUE(waitUntil([&] { return !recorder.received.isEmpty() && !fromWorkerObserver.isEmpty(); }));
    EXPECT_TRUE(recorder.received.first().onMainThread);
    EXPECT_TRUE(fromWorkerObserver.first().onMainThread);
}

TEST(DistributedNotifications, NamedObserversSeeTheirNameAndAnEmptyNameSeesAll)
{
    Recorder alpha(u"TestAlpha"_s);
    Recorder all{QString()};
    ASSERT_TRUE(center().postNotificationName(u"TestBeta"_s));
    ASSERT_TRUE(center().postNotificationName(u"TestAlpha"_s));
    ASSERT_TRUE(waitUntil([&] { return !alpha.received.isEmpty(); }));
    ASSERT_TRUE(waitUntil([&] { return all.received.size() >= 2; }));
    // A last notification, for the empty name only: once it is in, every earlier one is.
    ASSERT_TRUE(center().postNotificationName(u"TestLast"_s));
    ASSERT_TRUE(
        waitUntil([&] { return !all.received.isEmpty() && all.received.last().name == u"TestLast"_s; }));
    all.received.removeLast();
    ASSERT_EQ(alpha.received.size(), 1);
    EXPECT_EQ(alpha.received.first().name, u"TestAlpha"_s);
    QStringList names;
    for (const Received &r : std::as_const(all.received))
        names.append(r.name);
    EXPECT_EQ(names, QStringList({u"TestBeta"_s, u"TestAlpha"_s}));
}

TEST(DistributedNotifications, TheBusOnlySendsObservedNames)
{
    const QString rule = u"arg0='TestRuleName'"_s;
    const auto hasRule = [&] { return ownMatchRules().join(QLatin1Char('\n')).contains(rule); };
    if (ownMatchRules() == QStringList{u"unavailable"_s})
        GTEST_SKIP() << "this bus daemon does not list match rules";
    EXPECT_FALSE(hasRule());
    auto first = std::make_unique<Recorder>(u"TestRuleName"_s);
    auto second = std::make_unique<Recorder>(u"TestRuleName"_s);
    EXPECT_TRUE(hasRule());
    first.reset();
    EXPECT_TRUE(hasRule()); // still observed
    second.reset();
    EXPECT_FALSE(hasRule());
}

TEST(DistributedNotifications, RemovedObserversAndDestroyedContextsHearNothing)
{
    Recorder removed(u"TestStop"_s);
    center().removeObserver(removed.id());
    int callsAfterContextDestroyed = 0;
    auto gone = std::make_unique<QObject>();
    center().addObserver(u"TestStop"_s, gone.get(),
                         [&](const QString &, const QVariantMap &) { ++callsAfterContextDestroyed; });
    gone.reset();

    // An observer that removes a later one during a delivery: the later one is not called.
    int laterCalls = 0;
    int laterId = 0;
    QObject context;
    center().addObserver(u"TestStop"_s, &context,
                         [&](const QString &, const QVariantMap &) { center().removeObserver(laterId); });
    laterId = center().addObserver(u"TestStop"_s, &context,
                                   [&](const QString &, const QVariantMap &) { ++laterCalls; });
    Recorder witness(u"TestStop"_s);

    ASSERT_TRUE(center().postNotificationName(u"TestStop"_s));
    ASSERT_TRUE(waitUntil([&] { return !witness.received.isEmpty(); }));
    EXPECT_TRUE(removed.received.isEmpty());
    EXPECT_EQ(callsAfterContextDestroyed, 0);
    EXPECT_EQ(laterCalls, 0);
}

} // namespace
