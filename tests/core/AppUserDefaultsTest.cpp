// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AppUserDefaults.h"

#include "core/FactoryDefaults.h"
#include "platform/PreferenceStore.h"
#include "platform/PropertyList.h"
#include "TestSupport.h"
#include "core/UserDefaults.h"

#include <QDateTime>
#include <QDir>
#include <QSize>
#include <QTemporaryDir>
#include <QTimeZone>
#include <gtest/gtest.h>
#include <limits>

namespace {

const QString kDomain = QStringLiteral("com.example.App");

class AppUserDefaultsTest : public testing::Test
{
protected:
    QTemporaryDir mFolder;
    PreferenceStore mStore{mFolder.path()};
    AppUserDefaults mDefaults{kDomain, mStore};

    // Stores a raw value the way another program would have left it.
    void store(const QString &key, const QVariant &value)
    {
        ASSERT_TRUE(mStore.setValue(kDomain, key, value));
        ASSERT_TRUE(mStore.synchronize(kDomain));
    }
};

TEST_F(AppUserDefaultsTest, ScalarGettersConvertNumbersAndStrings)
{
    store(QStringLiteral("yes"), QStringLiteral("YES"));
    store(QStringLiteral("lowerYes"), QStringLiteral("yes"));
    store(QStringLiteral("true"), QStringLiteral("true"));
    store(QStringLiteral("no"), QStringLiteral("NO"));
    store(QStringLiteral("zeros"), QStringLiteral("  007"));
    store(QStringLiteral("mixed"), QStringLiteral("12abc"));
    store(QStringLiteral("negative"), QStringLiteral("-3.75e1x"));
    store(QStringLiteral("word"), QStringLiteral("abc12"));
    store(QStringLiteral("huge"), QStringLiteral("99999999999999999999999"));
    store(QStringLiteral("real"), 2.9);
    store(QStringLiteral("int"), qint64(2));
    store(QStringLiteral("bool"), true);
    store(QStringLiteral("date"), QDateTime(QDate(2024, 1, 1), QTime(0, 0), QTimeZone::utc()));
    store(QStringLiteral("data"), QByteArray("1"));

    EXPECT_TRUE(mDefaults.boolForKey(QStringLiteral("yes")));
    EXPECT_TRUE(mDefaults.boolForKey(QStringLiteral("lowerYes")));
    EXPECT_TRUE(mDefaults.boolForKey(QStringLiteral("true")));
    EXPECT_FALSE(mDefaults.boolForKey(QStringLiteral("no")));
    EXPECT_TRUE(mDefaults.boolForKey(QStringLiteral("zeros")));
    EXPECT_FALSE(mDefaults.boolForKey(QStringLiteral("word")));
    EXPECT_TRUE(mDefaults.boolForKey(QStringLiteral("int")));
    EXPECT_TRUE(mDefaults.boolForKey(QStringLiteral("real")));
    EXPECT_FALSE(mDefaults.boolForKey(QStringLiteral("date")));
    EXPECT_FALSE(mDefaults.boolForKey(QStringLiteral("data")));
    EXPECT_FALSE(mDefaults.boolForKey(QStringLiteral("absent")));

    EXPECT_EQ(mDefaults.integerForKey(QStringLiteral("mixed")), 12);
    EXPECT_EQ(mDefaults.integerForKey(QStringLiteral("zeros")), 7);
    EXPECT_EQ(mDefaults.integerForKey(QStringLiteral("negative")), -3);
    EXPECT_EQ(mDefaults.integerForKey(QStringLiteral("word")), 0);
    EXPECT_EQ(mDefaults.integerForKey(QStringLiteral("huge")), std::numeric_limits<qint64>::max());
    EXPECT_EQ(mDefaults.integerForKey(QStringLiteral("real")), 2);
    EXPECT_EQ(mDefaults.integerForKey(QStringLiteral("bool")), 1);
    EXPECT_EQ(mDefaults.integerForKey(QStringLiteral("date")), 0);

    EXPECT_DOUBLE_EQ(mDefaults.doubleForKey(QStringLiteral("negative")), -37.5);
    EXPECT_DOUBLE_EQ(mDefaults.doubleForKey(QStringLiteral("mixed")), 12.0);
    EXPECT_DOUBLE_EQ(mDefaults.doubleForKey(QStringLiteral("int")), 2.0);
    EXPECT_FLOAT_EQ(mDefaults.floatForKey(QStringLiteral("real")), 2.9f);
    EXPECT_DOUBLE_EQ(mDefaults.doubleForKey(QStringLiteral("date")), 0.0);
}

TEST_F(AppUserDefaultsTest, ObjectGettersGiveOnlyTheirOwnType)
{
    store(QStringLiteral("string"), QStringLiteral("text"));
    store(QStringLiteral("empty"), QString());
    store(QStringLiteral("number"), qint64(5));
    store(QStringLiteral("strings"), QVariantList{QStringLiteral("a"), QStringLiteral("b")});
    store(QStringLiteral("mixed"), QVariantList{QStringLiteral("a"), qint64(1), QStringLiteral("b")});
    store(QStringLiteral("none"), QVariantList{});
    store(QStringLiteral("dict"), QVariantMap{{QStringLiteral("k"), true}});
    store(QStringLiteral("data"), QByteArray());

    EXPECT_EQ(mDefaults.stringForKey(QStringLiteral("string")), QStringLiteral("text"));
    EXPECT_FALSE(mDefaults.stringForKey(QStringLiteral("empty")).isNull());
    EXPECT_TRUE(mDefaults.stringForKey(QStringLiteral("number")).isNull());
    EXPECT_TRUE(mDefaults.stringForKey(QStringLiteral("absent")).isNull());

    EXPECT_EQ(mDefaults.stringArrayForKey(QStringLiteral("strings")),
              (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    EXPECT_FALSE(mDefaults.stringArrayForKey(QStringLiteral("mixed")).has_value());
    ASSERT_TRUE(mDefaults.stringArrayForKey(QStringLiteral("none")).has_value());
    EXPECT_TRUE(mDefaults.stringArrayForKey(QStringLiteral("none"))->isEmpty());
    EXPECT_FALSE(mDefaults.stringArrayForKey(QStringLiteral("string")).has_value());

    EXPECT_EQ(mDefaults.arrayForKey(QStringLiteral("mixed"))->size(), 3);
    EXPECT_FALSE(mDefaults.arrayForKey(QStringLiteral("dict")).has_value());
    EXPECT_TRUE(mDefaults.dictionaryForKey(QStringLiteral("dict"))->value(QStringLiteral("k")).toBool());
    EXPECT_FALSE(mDefaults.dictionaryForKey(QStringLiteral("strings")).has_value());
    // Empty data is there; a string is not data.
    EXPECT_FALSE(mDefaults.dataForKey(QStringLiteral("data")).isNull());
    EXPECT_TRUE(mDefaults.dataForKey(QStringLiteral("string")).isNull());
}

TEST_F(AppUserDefaultsTest, WritesReachTheDiskBeforeTheCallReturns)
{
    mDefaults.setInteger(-8, QStringLiteral("int"));
    mDefaults.setFloat(1.5f, QStringLiteral("float"));
    mDefaults.setDouble(0.25, QStringLiteral("double"));
    mDefaults.setBool(true, QStringLiteral("bool"));
    mDefaults.setObject(QStringLiteral("x"), QStringLiteral("gone"));
    mDefaults.removeObjectForKey(QStringLiteral("gone"));
    mDefaults.setObject(QVariant::fromValue(QSize(1, 1)), QStringLiteral("refused"));

    PreferenceStore otherProcess(mFolder.path());
    const QVariantMap expected{{QStringLiteral("int"), qint64(-8)},
                               {QStringLiteral("float"), 1.5},
                               {QStringLiteral("double"), 0.25},
                               {QStringLiteral("bool"), true}};
    EXPECT_TRUE(PropertyList::equal(otherProcess.dictionary(kDomain), expected));
    EXPECT_TRUE(mDefaults.synchronize());
}

TEST_F(AppUserDefaultsTest, RegistrationDictionaryIsTheFallbackAndIsReplacedWhole)
{
    mDefaults.registerDefaults(
        {{QStringLiteral("flag"), true}, {QStringLiteral("name"), QStringLiteral("reg")}});
    EXPECT_TRUE(mDefaults.boolForKey(QStringLiteral("flag")));
    mDefaults.setBool(false, QStringLiteral("flag"));
    EXPECT_FALSE(mDefaults.boolForKey(QStringLiteral("flag"))) << "a stored value wins";
    mDefaults.removeObjectForKey(QStringLiteral("flag"));
    EXPECT_TRUE(mDefaults.boolForKey(QStringLiteral("flag")));

    mDefaults.registerDefaults({{QStringLiteral("other"), qint64(3)}});
    EXPECT_FALSE(mDefaults.objectForKey(QStringLiteral("flag")).isValid());
    EXPECT_TRUE(mDefaults.stringForKey(QStringLiteral("name")).isNull());
    EXPECT_EQ(mDefaults.integerForKey(QStringLiteral("other")), 3);
}

TEST_F(AppUserDefaultsTest, SharedCorvexDefaultsSeeOnlyWhatIsStored)
{
    AppUserDefaults &shared = AppUserDefaults::sharedCorvexDefaults();
    EXPECT_EQ(&shared, &AppUserDefaults::sharedCorvexDefaults());
    EXPECT_EQ(shared.bundleIdentifier(), QStringLiteral("com.ostrel.Corvex"));
    // The standard preferences register the factory defaults; the shared instance ignores them.
    UserDefaults standard(QStringLiteral("com.ostrel.Corvex"));
    standard.registerDefaults(factoryDefaults());
    EXPECT_TRUE(standard.boolForKey(QStringLiteral("showCorvexWindow")));
    EXPECT_FALSE(shared.boolForKey(QStringLiteral("showCorvexWindow")));
    EXPECT_FALSE(shared.objectForKey(QStringLiteral("autoReformatExtension")).isValid());

    // Both see each other's writes at once.
    standard.setBool(true, QStringLiteral("autoRename"));
    EXPECT_TRUE(shared.boolForKey(QStringLiteral("autoRename")));
    shared.setObject(QStringLiteral("png"), QStringLiteral("autoReformatExtension"));
    EXPECT_EQ(standard.stringForKey(QStringLiteral("autoReformatExtension")), QStringLiteral("png"));
    shared.removeObjectForKey(QStringLiteral("autoRename"));
    shared.removeObjectForKey(QStringLiteral("autoReformatExtension"));
}

TEST_F(AppUserDefaultsTest, ScreenshotBookmarksAreKeptInOneDictionary)
{
    const QString bookmarks = QStringLiteral("screenshotBookmarks");
    mDefaults.setScreenshotBookmarkData(QByteArray(), QStringLiteral("missing"));
    ASSERT_TRUE(mDefaults.dictionaryForKey(bookmarks).has_value())
        << "absent data stores an empty dictionary";
    EXPECT_TRUE(mDefaults.dictionaryForKey(bookmarks)->isEmpty());

    mDefaults.setScreenshotBookmarkData(QByteArray("one"), QStringLiteral("k1"));
    mDefaults.setScreenshotBookmarkData(QByteArray("two"), QStringLiteral("k2"));
    EXPECT_EQ(mDefaults.screenshotBookmarkDataForKey(QStringLiteral("k1")), QByteArray("one"));
    mDefaults.setScreenshotBookmarkData(QByteArray(), QStringLiteral("k1"));
    EXPECT_TRUE(mDefaults.screenshotBookmarkDataForKey(QStringLiteral("k1")).isNull());
    EXPECT_EQ(mDefaults.screenshotBookmarkDataForKey(QStringLiteral("k2")), QByteArray("two"));

    // Another process adds its own bookmark meanwhile: it is kept.
    PreferenceStore otherProcess(mFolder.path());
    QVariantMap theirs = otherProcess.value(kDomain, bookmarks).toMap();
    theirs.insert(QStringLiteral("theirs"), QByteArray("3"));
    otherProcess.setValue(kDomain, bookmarks, theirs);
    ASSERT_TRUE(otherProcess.synchronize(kDomain));
    mDefaults.setScreenshotBookmarkData(QByteArray("four"), QStringLiteral("k4"));
    EXPECT_EQ(mDefaults.screenshotBookmarkDataForKey(QStringLiteral("theirs")), QByteArray("3"));

    store(bookmarks, QStringLiteral("not a dictionary"));
    EXPECT_TRUE(mDefaults.screenshotBookmarkDataForKey(QStringLiteral("k2")).isNull());
    mDefaults.setScreenshotBookmarkData(QByteArray("five"), QStringLiteral("k5"));
    EXPECT_EQ(mDefaults.dictionaryForKey(bookmarks)->keys(), QStringList{QStringLiteral("k5")});

    store(bookmarks, QVariantMap{{QStringLiteral("text"), QStringLiteral("not data")}});
    EXPECT_TRUE(mDefaults.screenshotBookmarkDataForKey(QStringLiteral("text")).isNull());
}

TEST_F(AppUserDefaultsTest, ScreencaptureDefaultsFallBackOnTheDesktopTool)
{
    qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    corvex::test::writeFile(config + QStringLiteral("/user-dirs.dirs"),
                            "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    AppUserDefaults &screencapture = AppUserDefaults::sharedScreencaptureDefaults();
    EXPECT_TRUE(
        screencapture.stringForKey(QStringLiteral("location")).startsWith(QDir::homePath() + "/Bilder/"));
    EXPECT_EQ(screencapture.stringForKey(QStringLiteral("type")), QStringLiteral("png"));
    EXPECT_FALSE(screencapture.stringForKey(QStringLiteral("name")).isEmpty());
    EXPECT_FALSE(screencapture.objectForKey(QStringLiteral("other")).isValid());

    // A stored value wins; the raw domain has no fallbacks.
    auto raw = AppUserDefaults::userDefaultsWithBundleIdentifier(QStringLiteral("com.apple.screencapture"));
    EXPECT_FALSE(raw->objectForKey(QStringLiteral("type")).isValid());
    raw->setObject(QStringLiteral("jpg"), QStringLiteral("type"));
    EXPECT_EQ(screencapture.stringForKey(QStringLiteral("type")), QStringLiteral("jpg"));
    raw->removeObjectForKey(QStringLiteral("type"));

    // The desktop's own setting changing is seen without a restart.
    corvex::test::writeFile(config + QStringLiteral("/user-dirs.dirs"), "XDG_PICTURES_DIR=\"$HOME/Fotos\"\n");
    EXPECT_TRUE(
        screencapture.stringForKey(QStringLiteral("location")).startsWith(QDir::homePath() + "/Fotos/"));
    qunsetenv("XDG_CURRENT_DESKTOP");
}

} // namespace
