// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/UserDefaults.h"

#include "TestSupport.h"
#include "core/AppUserDefaults.h"
#include "core/ArgumentDomain.h"
#include "core/FactoryDefaults.h"
#include "core/TypedPreferences.h"
#include "platform/PreferenceStore.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>
#include <thread>

namespace {

const QString kDomain = QStringLiteral("com.example.Standard");

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
        {QStringLiteral("-screenNum"), QStringLiteral("1"), QStringLiteral("stray"),
         QStringLiteral("-filePath"), QStringLiteral("/tmp/a b (1).png"), QStringLiteral("-count"),
         QStringLiteral("<integer>3</integer>"), QStringLiteral("-list"),
         QStringLiteral("(a, \"b c\", <0aff>)"), QStringLiteral("-dict"), QStringLiteral("{k = v; n = (1);}"),
         QStringLiteral("-broken"), QStringLiteral("(a,"), QStringLiteral("-negative"), QStringLiteral("-5"),
         QStringLiteral("-last")});
    EXPECT_EQ(domain.value(QStringLiteral("screenNum")), QVariant(QStringLiteral("1")));
    EXPECT_EQ(domain.value(QStringLiteral("filePath")).toString(), QStringLiteral("/tmp/a b (1).png"));
    EXPECT_EQ(domain.value(QStringLiteral("count")).metaType().id(), QMetaType::LongLong);
    EXPECT_EQ(domain.value(QStringLiteral("count")).toLongLong(), 3);
    EXPECT_EQ(domain.value(QStringLiteral("list")).toList(),
              (QVariantList{QStringLiteral("a"), QStringLiteral("b c"), QByteArray("\x0a\xff")}));
    const QVariantMap dict = domain.value(QStringLiteral("dict")).toMap();
    EXPECT_EQ(dict.value(QStringLiteral("k")).toString(), QStringLiteral("v"));
    EXPECT_EQ(dict.value(QStringLiteral("n")).toList(), QVariantList{QStringLiteral("1")});
    EXPECT_EQ(domain.value(QStringLiteral("broken")).toString(), QStringLiteral("(a,"));
    EXPECT_EQ(domain.value(QStringLiteral("negative")).toString(), QStringLiteral("-5"));
    EXPECT_FALSE(domain.contains(QStringLiteral("last")));
    EXPECT_FALSE(domain.contains(QStringLiteral("stray")));
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
    UserDefaults defaults(
        kDomain,
        {QStringLiteral("-screenNum"), QStringLiteral("2"), QStringLiteral("-flag"), QStringLiteral("NO")},
        &mStore);
    defaults.registerDefaults({{QStringLiteral("screenNum"), qint64(9)},
                               {QStringLiteral("flag"), true},
                               {QStringLiteral("name"), QStringLiteral("registered")}});
    defaults.setInteger(5, QStringLiteral("screenNum"));
    defaults.setObject(QStringLiteral("stored"), QStringLiteral("name"));
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("screenNum")), 2);
    EXPECT_FALSE(defaults.boolForKey(QStringLiteral("flag")));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("name")), QStringLiteral("stored"));
    defaults.removeObjectForKey(QStringLiteral("name"));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("name")), QStringLiteral("registered"));
    // The write went to the domain even though the argument hides it.
    EXPECT_EQ(mStore.value(kDomain, QStringLiteral("screenNum")).toLongLong(), 5);

    const QVariantMap all = defaults.dictionaryRepresentation();
    EXPECT_EQ(all.value(QStringLiteral("screenNum")).toString(), QStringLiteral("2"));
    EXPECT_EQ(all.value(QStringLiteral("name")).toString(), QStringLiteral("registered"));
}

TEST_F(UserDefaultsTest, FactoryDefaultsFillTheRegistrationDomain)
{
    const QVariantMap factory = factoryDefaults();
    EXPECT_EQ(factory.size(), 20);
    UserDefaults defaults(kDomain, {}, &mStore);
    defaults.registerDefaults(factory);
    EXPECT_TRUE(defaults.boolForKey(QStringLiteral("showCorvexWindow")));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("autoReformatExtension")), QStringLiteral("jpg"));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("openWithBundleIdentifier")),
              QStringLiteral("com.apple.Preview"));
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("logFontSize")), 9);
    EXPECT_FALSE(defaults.objectForKey(QStringLiteral("autoRenameFormat")).isValid());
    EXPECT_FALSE(defaults.objectForKey(QStringLiteral("checkForUpdates")).isValid());
    // Nothing of it is written.
    EXPECT_FALSE(mStore.domainExists(kDomain));
}

TEST_F(UserDefaultsTest, ValueChangedForEveryEffectiveChangeInThisProcess)
{
    UserDefaults defaults(kDomain, {QStringLiteral("-pinned"), QStringLiteral("1")}, &mStore);
    AppUserDefaults sameDomain(kDomain, mStore);
    QSignalSpy spy(&defaults, &UserDefaults::valueChanged);

    defaults.setBool(true, QStringLiteral("a"));
    defaults.setBool(true, QStringLiteral("a"));                    // no change
    defaults.setInteger(2, QStringLiteral("pinned"));               // hidden by the argument
    sameDomain.setObject(QStringLiteral("x"), QStringLiteral("b")); // another user of the domain
    defaults.registerDefaults({{QStringLiteral("c"), qint64(1)}, {QStringLiteral("a"), false}});
    defaults.registerDefaults({{QStringLiteral("c"), qint64(1)}}); // the same again
    defaults.removeObjectForKey(QStringLiteral("a"));              // falls back on registered false
    defaults.setObject(qint64(1), QStringLiteral("c"));            // stored 1 replaces registered 1
    EXPECT_EQ(keysOf(spy), (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"),
                                        QStringLiteral("a")}));
}

TEST_F(UserDefaultsTest, ValueChangedArrivesOnTheObjectsThreadForWritesFromOtherThreads)
{
    UserDefaults defaults(kDomain, {}, &mStore);
    QList<bool> onMainThread;
    QObject::connect(&defaults, &UserDefaults::valueChanged, &defaults, [&](const QString &) {
        onMainThread.append(QThread::currentThread() == defaults.thread());
    });
    std::thread worker([&] { defaults.setInteger(3, QStringLiteral("fromWorker")); });
    worker.join();
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("fromWorker")), 3);
    ASSERT_TRUE(corvex::test::waitUntil([&] { return !onMainThread.isEmpty(); }));
    EXPECT_EQ(onMainThread, QList<bool>{true});
}

TEST_F(UserDefaultsTest, AnotherProcessesWriteIsAnnouncedWithoutAskingForIt)
{
    // The shared store, so that `corvex defaults` (another process) writes the same files.
    const QString domain = QStringLiteral("com.example.Watched");
    UserDefaults defaults(domain);
    defaults.setObject(QStringLiteral("old"), QStringLiteral("kept"));
    defaults.setObject(QStringLiteral("before"), QStringLiteral("changed"));
    QSignalSpy spy(&defaults, &UserDefaults::valueChanged);

    auto result = corvex::test::runCli({QStringLiteral("defaults"), QStringLiteral("write"), domain,
                                        QStringLiteral("changed"), QStringLiteral("after")});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    ASSERT_TRUE(corvex::test::waitUntil([&] { return spy.count() >= 1; }, std::chrono::milliseconds(3000)));
    EXPECT_EQ(keysOf(spy), QStringList{QStringLiteral("changed")});
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("changed")), QStringLiteral("after"));
    EXPECT_EQ(defaults.stringForKey(QStringLiteral("kept")), QStringLiteral("old"));

    // An explicit synchronize reveals a change too, and announces it once.
    result = corvex::test::runCli({QStringLiteral("defaults"), QStringLiteral("write"), domain,
                                   QStringLiteral("added"), QStringLiteral("-int"), QStringLiteral("4")});
    ASSERT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_TRUE(defaults.synchronize());
    EXPECT_EQ(defaults.integerForKey(QStringLiteral("added")), 4);
    // A later write's announcement comes after any second one of the same change.
    result = corvex::test::runCli({QStringLiteral("defaults"), QStringLiteral("write"), domain,
                                   QStringLiteral("last"), QStringLiteral("x")});
    ASSERT_TRUE(corvex::test::waitUntil([&] { return keysOf(spy).contains(QStringLiteral("last")); }));
    EXPECT_EQ(keysOf(spy),
              (QStringList{QStringLiteral("changed"), QStringLiteral("added"), QStringLiteral("last")}));
}

TEST_F(UserDefaultsTest, StandardDefaultsUseTheSetDomainAndTheProcessArguments)
{
    ASSERT_TRUE(UserDefaults::setStandardDomain(QStringLiteral("com.example.StandardDomain")));
    UserDefaults &standard = UserDefaults::standardUserDefaults();
    EXPECT_EQ(&standard, &UserDefaults::standardUserDefaults());
    EXPECT_EQ(standard.domain(), QStringLiteral("com.example.StandardDomain"));
    EXPECT_EQ(UserDefaults::standardDomain(), standard.domain());
    EXPECT_FALSE(UserDefaults::setStandardDomain(QStringLiteral("com.example.Late")));
    EXPECT_EQ(standard.thread(), QCoreApplication::instance()->thread());
    standard.setBool(true, QStringLiteral("flag"));
    EXPECT_TRUE(PreferenceStore::shared().value(standard.domain(), QStringLiteral("flag")).toBool());
}

} // namespace
