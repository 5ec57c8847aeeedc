// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/UserDefaults.h"

#include "TestSupport.h"
#include "core/AppUserDefaults.h"
#include "core/ArgumentDomain.h"
#include "core/FactoryDefaults.h"
#include "core/TypedPreferences.h"
#include "platform/PreferenceStore.h"
#include "platform/PropertyList.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>
#include <thread>

using namespace Qt::StringLiterals;

namespace {

const QString kDomain = u"com.example.Standard"_s;

QStringList keysOf(const QSignalSpy &spy)
{
    QStringList keys;
    for (const QList<QVariant> &call : spy)
        keys.append(call.at(0).toString());
    return keys;
}

TEST(ArgumentDomain, ParsesKeyValuePairsAndPropertyListValues)
{
    const QVariantMap domain = ArgumentDomain::parse(
        {u"-screenNum"_s, u"1"_s, u"stray"_s, u"-filePath"_s, u"/tmp/a b (1).png"_s, u"-count"_s,
         u"<integer>3</integer>"_s, u"-list"_s, u"(a, \"b c\", <0aff>)"_s, u"-dict"_s, u"{k = v; n = (1);}"_s,
         u"-broken"_s, u"(a,"_s, u"-negative"_s, u"-5"_s, u"-last"_s});
    // A stray word and a last key without a value are left out; a value that is no well-formed property list
    // stays text, and so does one that starts with "-".
    const QVariantMap expected{{u"screenNum"_s, u"1"_s},
                               {u"filePath"_s, u"/tmp/a b (1).png"_s},
                               {u"count"_s, qint64(3)},
                               {u"list"_s, QVariantList{u"a"_s, u"b c"_s, QByteArray("\x0a\xff")}},
                               {u"dict"_s, QVariantMap{{u"k"_s, u"v"_s}, {u"n"_s, QVariantList{u"1"_s}}}},
                               {u"broken"_s, u"(a,"_s},
                               {u"negative"_s, u"-5"_s}};
    EXPECT_TRUE(PropertyList::equal(domain, expected))
        << PropertyList::serialize(domain, PropertyList::Format::Xml).constData();
}

class UserDefaultsTest : public testing::Test
{
protected:
    QTemporaryDir mFolder;
    PreferenceStore mStore{mFolder.path()};
};

TEST(TypedPreferences, ARealReadAsAnIntegerIsTruncatedAndHeldToTheIntegerRange)
{
    constexpr qint64 max = std::numeric_limits<qint64>::max(), min = std::numeric_limits<qint64>::min();
    constexpr double two63 = 9223372036854775808.0, inf = std::numeric_limits<double>::infinity();
    const QList<std::pair<double, qint64>> cases{
        {2.9, 2},      {-2.9, -2},  {two63, max},
        {-two63, min}, {1e19, max}, {-1e19, min},
        {inf, max},    {-inf, min}, {std::numeric_limits<double>::quiet_NaN(), 0}};
    for (const auto &[real, integer] : cases)
        EXPECT_EQ(TypedPreferences::integerValue(QVariant(real)), integer) << real;
}

TEST_F(UserDefaultsTest, ArgumentsWinOverTheDomainWhichWinsOverRegistration)
{
    UserDefaults defaults(kDomain, {u"-screenNum"_s, u"2"_s, u"-flag"_s, u"NO"_s}, &mStore);
    defaults.registerDefaults({{u"screenNum"_s, qint64(9)}, {u"flag"_s, true}, {u"name"_s, u"registered"_s}});
    defaults.setInteger(5, u"screenNum"_s);
    defaults.setObject(u"stored"_s, u"name"_s);
    EXPECT_EQ(defaults.integerForKey(u"screenNum"_s), 2);
    EXPECT_FALSE(defaults.boolForKey(u"flag"_s));
    EXPECT_EQ(defaults.stringForKey(u"name"_s), u"stored"_s);
    defaults.removeObjectForKey(u"name"_s);
    EXPECT_EQ(defaults.stringForKey(u"name"_s), u"registered"_s);
    // The write went to the domain even though the argument hides it.
    EXPECT_EQ(mStore.value(kDomain, u"screenNum"_s).toLongLong(), 5);

    const QVariantMap all = defaults.dictionaryRepresentation();
    EXPECT_EQ(all.value(u"screenNum"_s).toString(), u"2"_s);
    EXPECT_EQ(all.value(u"name"_s).toString(), u"registered"_s);
}

TEST_F(UserDefaultsTest, FactoryDefaultsFillTheRegistrationDomain)
{
    const QVariantMap factory = factoryDefaults();
    EXPECT_EQ(factory.size(), 20);
    UserDefaults defaults(kDomain, {}, &mStore);
    defaults.registerDefaults(factory);
    EXPECT_TRUE(defaults.boolForKey(u"showCorvexWindow"_s));
    EXPECT_EQ(defaults.stringForKey(u"autoReformatExtension"_s), u"jpg"_s);
    EXPECT_EQ(defaults.stringForKey(u"openWithBundleIdentifier"_s), u"com.apple.Preview"_s);
    EXPECT_EQ(defaults.integerForKey(u"logFontSize"_s), 9);
    EXPECT_FALSE(defaults.objectForKey(u"autoRenameFormat"_s).isValid());
    EXPECT_FALSE(defaults.objectForKey(u"checkForUpdates"_s).isValid());
    // Nothing of it is written.
    EXPECT_FALSE(mStore.domainExists(kDomain));
}

TEST_F(UserDefaultsTest, ValueChangedForEveryEffectiveChangeOnTheObjectsThread)
{
    UserDefaults defaults(kDomain, {u"-pinned"_s, u"1"_s}, &mStore);
    AppUserDefaults sameDomain(kDomain, mStore);
    QSignalSpy spy(&defaults, &UserDefaults::valueChanged);

    defaults.setBool(true, u"a"_s);
    defaults.setBool(true, u"a"_s);       // no change
    defaults.setInteger(2, u"pinned"_s);  // hidden by the argument
    sameDomain.setObject(u"x"_s, u"b"_s); // another user of the domain
    defaults.registerDefaults({{u"c"_s, qint64(1)}, {u"a"_s, false}});
    defaults.registerDefaults({{u"c"_s, qint64(1)}}); // the same again
    defaults.removeObjectForKey(u"a"_s);              // falls back on registered false
    defaults.setObject(qint64(1), u"c"_s);            // stored 1 replaces registered 1
    EXPECT_EQ(keysOf(spy), (QStringList{u"a"_s, u"b"_s, u"c"_s, u"a"_s}));

    // A write from another thread is announced on the object's thread.
    QList<bool> onMainThread;
    QObject::connect(&defaults, &UserDefaults::valueChanged, &defaults, [&](const QString &) {
        onMainThread.append(QThread::currentThread() == defaults.thread());
    });
    std::thread worker([&] { defaults.setInteger(3, u"fromWorker"_s); });
    worker.join();
    EXPECT_EQ(defaults.integerForKey(u"fromWorker"_s), 3);
    ASSERT_TRUE(corvex::test::waitUntil([&] { return !onMainThread.isEmpty(); }));
    EXPECT_EQ(onMainThread, QList<bool>{true});
}

TEST_F(UserDefaultsTest, AnotherProcessesWriteIsAnnouncedWithoutAskingForIt)
{
    // The shared store, so that `corvex defaults` (another process) writes the same files.
    const QString domain = u"com.example.Watched"_s;
    UserDefaults defaults(domain);
    defaults.setObject(u"old"_s, u"kept"_s);
    defaults.setObject(u"before"_s, u"changed"_s);
    QSignalSpy spy(&defaults, &UserDefaults::valueChanged);

    auto result = corvex::test::runCli({u"defaults"_s, u"write"_s, domain, u"changed"_s, u"after"_s});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    ASSERT_TRUE(corvex::test::waitUntil([&] { return spy.count() >= 1; }, std::chrono::milliseconds(3000)));
    EXPECT_EQ(keysOf(spy), QStringList{u"changed"_s});
    EXPECT_EQ(defaults.stringForKey(u"changed"_s), u"after"_s);
    EXPECT_EQ(defaults.stringForKey(u"kept"_s), u"old"_s);

    // An explicit synchronize reveals a change too, and announces it once.
    result = corvex::test::runCli({u"defaults"_s, u"write"_s, domain, u"added"_s, u"-int"_s, u"4"_s});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.integerForKey(u"added"_s), 4);
    // A later write's announcement comes after any second one of the same change.
    result = corvex::test::runCli({u"defaults"_s, u"write"_s, domain, u"last"_s, u"x"_s});
    ASSERT_TRUE(corvex::test::waitUntil([&] { return keysOf(spy).contains(u"last"_s); }));
    EXPECT_EQ(keysOf(spy), (QStringList{u"changed"_s, u"added"_s, u"last"_s}));
}

TEST_F(UserDefaultsTest, StandardDefaultsUseTheSetDomainAndTheProcessArguments)
{
    ASSERT_TRUE(UserDefaults::setStandardDomain(u"com.example.StandardDomain"_s));
    UserDefaults &standard = UserDefaults::standardUserDefaults();
    EXPECT_EQ(standard.domain(), u"com.example.StandardDomain"_s);
    EXPECT_FALSE(UserDefaults::setStandardDomain(u"com.example.Late"_s));
    EXPECT_EQ(standard.thread(), QCoreApplication::instance()->thread());
    standard.setBool(true, u"flag"_s);
    EXPECT_TRUE(PreferenceStore::shared().value(standard.domain(), u"flag"_s).toBool());
}

} // namespace
