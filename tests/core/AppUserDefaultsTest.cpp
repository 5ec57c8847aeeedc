// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AppUserDefaults.h"

#include "TestSupport.h"
#include "core/FactoryDefaults.h"
#include "core/UserDefaults.h"
#include "platform/PreferenceStore.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QSize>
#include <QTemporaryDir>
#include <QTimeZone>
#include <gtest/gtest.h>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QString kDomain = u"com.example.App"_s;

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

TEST_F(AppUserDefaultsTest, ScalarGettersConvertObjectGettersDoNot)
{
    // A stored value, then what the bool, integer and double getters make of it.
    const struct
    {
        QVariant stored;
        bool asBool;
        qint64 asInteger;
        double asDouble;
    } cases[] = {{u"YES"_s, true, 0, 0},
                 {u"yes"_s, true, 0, 0},
                 {u"true"_s, true, 0, 0},
                 {u"NO"_s, false, 0, 0},
                 {u"  007"_s, true, 7, 7},
                 {u"12abc"_s, true, 12, 12},
                 {u"-3.75e1x"_s, true, -3, -37.5},
                 {u"abc12"_s, false, 0, 0},
                 {u"99999999999999999999999"_s, true, std::numeric_limits<qint64>::max(), 1e23},
                 {2.9, true, 2, 2.9},
                 {qint64(2), true, 2, 2},
                 {true, true, 1, 1},
                 {QDateTime(QDate(2024, 1, 1), QTime(0, 0), QTimeZone::utc()), false, 0, 0},
                 {QByteArray("1"), false, 0, 0},
                 {QVariant(), false, 0, 0}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.stored.toString().toStdString());
        if (c.stored.isValid())
            store(u"key"_s, c.stored);
        else
            mDefaults.removeObjectForKey(u"key"_s);
        EXPECT_EQ(mDefaults.boolForKey(u"key"_s), c.asBool);
        EXPECT_EQ(mDefaults.integerForKey(u"key"_s), c.asInteger);
        EXPECT_DOUBLE_EQ(mDefaults.doubleForKey(u"key"_s), c.asDouble);
    }
    store(u"real"_s, 2.9);
    EXPECT_FLOAT_EQ(mDefaults.floatForKey(u"real"_s), 2.9f);

    // The object getters give only their own type.
    store(u"string"_s, u"text"_s);
    store(u"empty"_s, QString());
    store(u"number"_s, qint64(5));
    store(u"strings"_s, QVariantList{u"a"_s, u"b"_s});
    store(u"mixed"_s, QVariantList{u"a"_s, qint64(1), u"b"_s});
    store(u"none"_s, QVariantList{});
    store(u"dict"_s, QVariantMap{{u"k"_s, true}});
    store(u"data"_s, QByteArray());

    EXPECT_EQ(mDefaults.stringForKey(u"string"_s), u"text"_s);
    EXPECT_FALSE(mDefaults.stringForKey(u"empty"_s).isNull());
    EXPECT_TRUE(mDefaults.stringForKey(u"number"_s).isNull());
    EXPECT_TRUE(mDefaults.stringForKey(u"absent"_s).isNull());

    EXPECT_EQ(mDefaults.stringArrayForKey(u"strings"_s), (QStringList{u"a"_s, u"b"_s}));
    EXPECT_FALSE(mDefaults.stringArrayForKey(u"mixed"_s).has_value());
    ASSERT_TRUE(mDefaults.stringArrayForKey(u"none"_s).has_value());
    EXPECT_TRUE(mDefaults.stringArrayForKey(u"none"_s)->isEmpty());
    EXPECT_FALSE(mDefaults.stringArrayForKey(u"string"_s).has_value());

    EXPECT_EQ(mDefaults.arrayForKey(u"mixed"_s)->size(), 3);
    EXPECT_FALSE(mDefaults.arrayForKey(u"dict"_s).has_value());
    EXPECT_TRUE(mDefaults.dictionaryForKey(u"dict"_s)->value(u"k"_s).toBool());
    EXPECT_FALSE(mDefaults.dictionaryForKey(u"strings"_s).has_value());
    // Empty data is there; a string is not data.
    EXPECT_FALSE(mDefaults.dataForKey(u"data"_s).isNull());
    EXPECT_TRUE(mDefaults.dataForKey(u"string"_s).isNull());
}

TEST_F(AppUserDefaultsTest, WritesReachTheDiskBeforeTheCallReturns)
{
    mDefaults.setInteger(-8, u"int"_s);
    mDefaults.setFloat(1.5f, u"float"_s);
    mDefaults.setDouble(0.25, u"double"_s);
    mDefaults.setBool(true, u"bool"_s);
    mDefaults.setObject(u"x"_s, u"gone"_s);
    mDefaults.removeObjectForKey(u"gone"_s);
    mDefaults.setObject(QVariant::fromValue(QSize(1, 1)), u"refused"_s);

    PreferenceStore otherProcess(mFolder.path());
    const QVariantMap expected{
        {u"int"_s, qint64(-8)}, {u"float"_s, 1.5}, {u"double"_s, 0.25}, {u"bool"_s, true}};
    EXPECT_TRUE(PropertyList::equal(otherProcess.dictionary(kDomain), expected));
    EXPECT_TRUE(mDefaults.synchronize());
}

TEST_F(AppUserDefaultsTest, RegistrationDictionaryIsTheFallbackAndIsReplacedWhole)
{
    mDefaults.registerDefaults({{u"flag"_s, true}, {u"name"_s, u"reg"_s}});
    EXPECT_TRUE(mDefaults.boolForKey(u"flag"_s));
    mDefaults.setBool(false, u"flag"_s);
    EXPECT_FALSE(mDefaults.boolForKey(u"flag"_s)) << "a stored value wins";
    mDefaults.removeObjectForKey(u"flag"_s);
    EXPECT_TRUE(mDefaults.boolForKey(u"flag"_s));

    mDefaults.registerDefaults({{u"other"_s, qint64(3)}});
    EXPECT_FALSE(mDefaults.objectForKey(u"flag"_s).isValid());
    EXPECT_TRUE(mDefaults.stringForKey(u"name"_s).isNull());
    EXPECT_EQ(mDefaults.integerForKey(u"other"_s), 3);
}

TEST_F(AppUserDefaultsTest, SharedCorvexDefaultsSeeOnlyWhatIsStored)
{
    AppUserDefaults &shared = AppUserDefaults::sharedCorvexDefaults();
    // The standard preferences register the factory defaults; the shared instance ignores them.
    UserDefaults standard(u"com.ostrel.Corvex"_s);
    standard.registerDefaults(factoryDefaults());
    EXPECT_TRUE(standard.boolForKey(u"showCorvexWindow"_s));
    EXPECT_FALSE(shared.boolForKey(u"showCorvexWindow"_s));
    EXPECT_FALSE(shared.objectForKey(u"autoReformatExtension"_s).isValid());

    // Both see each other's writes at once.
    standard.setBool(true, u"autoRename"_s);
    EXPECT_TRUE(shared.boolForKey(u"autoRename"_s));
    shared.setObject(u"png"_s, u"autoReformatExtension"_s);
    EXPECT_EQ(standard.stringForKey(u"autoReformatExtension"_s), u"png"_s);
}

TEST_F(AppUserDefaultsTest, ScreenshotBookmarksAreKeptInOneDictionary)
{
    const QString bookmarks = u"screenshotBookmarks"_s;
    mDefaults.setScreenshotBookmarkData(QByteArray(), u"missing"_s);
    ASSERT_TRUE(mDefaults.dictionaryForKey(bookmarks).has_value())
        << "absent data stores an empty dictionary";
    EXPECT_TRUE(mDefaults.dictionaryForKey(bookmarks)->isEmpty());

    mDefaults.setScreenshotBookmarkData(QByteArray("one"), u"k1"_s);
    mDefaults.setScreenshotBookmarkData(QByteArray("two"), u"k2"_s);
    EXPECT_EQ(mDefaults.screenshotBookmarkDataForKey(u"k1"_s), QByteArray("one"));
    mDefaults.setScreenshotBookmarkData(QByteArray(), u"k1"_s);
    EXPECT_TRUE(mDefaults.screenshotBookmarkDataForKey(u"k1"_s).isNull());
    EXPECT_EQ(mDefaults.screenshotBookmarkDataForKey(u"k2"_s), QByteArray("two"));

    // Another process adds its own bookmark meanwhile: it is kept.
    PreferenceStore otherProcess(mFolder.path());
    QVariantMap theirs = otherProcess.value(kDomain, bookmarks).toMap();
    theirs.insert(u"theirs"_s, QByteArray("3"));
    otherProcess.setValue(kDomain, bookmarks, theirs);
    ASSERT_TRUE(otherProcess.synchronize(kDomain));
    mDefaults.setScreenshotBookmarkData(QByteArray("four"), u"k4"_s);
    EXPECT_EQ(mDefaults.screenshotBookmarkDataForKey(u"theirs"_s), QByteArray("3"));

    store(bookmarks, u"not a dictionary"_s);
    EXPECT_TRUE(mDefaults.screenshotBookmarkDataForKey(u"k2"_s).isNull());
    mDefaults.setScreenshotBookmarkData(QByteArray("five"), u"k5"_s);
    EXPECT_EQ(mDefaults.dictionaryForKey(bookmarks)->keys(), QStringList{u"k5"_s});

    store(bookmarks, QVariantMap{{u"text"_s, u"not data"_s}});
    EXPECT_TRUE(mDefaults.screenshotBookmarkDataForKey(u"text"_s).isNull());
}

TEST_F(AppUserDefaultsTest, ScreencaptureDefaultsFallBackOnTheDesktopTool)
{
    qputenv("XDG_CURRENT_DESKTOP", "GNOME");
    const QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    corvex::test::writeFile(config + u"/user-dirs.dirs"_s, "XDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    AppUserDefaults &screencapture = AppUserDefaults::sharedScreencaptureDefaults();
    EXPECT_TRUE(screencapture.stringForKey(u"location"_s).startsWith(QDir::homePath() + "/Bilder/"));
    EXPECT_EQ(screencapture.stringForKey(u"type"_s), u"png"_s);
    EXPECT_FALSE(screencapture.stringForKey(u"name"_s).isEmpty());
    EXPECT_FALSE(screencapture.objectForKey(u"other"_s).isValid());

    // A stored value wins; the raw domain has no fallbacks.
    auto raw = AppUserDefaults::userDefaultsWithBundleIdentifier(u"com.apple.screencapture"_s);
    EXPECT_FALSE(raw->objectForKey(u"type"_s).isValid());
    raw->setObject(u"jpg"_s, u"type"_s);
    EXPECT_EQ(screencapture.stringForKey(u"type"_s), u"jpg"_s);

    // The desktop's own setting changing is seen without a restart.
    corvex::test::writeFile(config + u"/user-dirs.dirs"_s, "XDG_PICTURES_DIR=\"$HOME/Fotos\"\n");
    EXPECT_TRUE(screencapture.stringForKey(u"location"_s).startsWith(QDir::homePath() + "/Fotos/"));
    qunsetenv("XDG_CURRENT_DESKTOP");
}

} // namespace
