// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/UserDefaultBookmarks.h"
#include "TestSupport.h"
#include "core/BookmarkException.h"
#include "core/BookmarkItem.h"
#include "core/UserDefaults.h"

#include <QDir>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

namespace {

using IndexSet = UserDefaultBookmarks::IndexSet;

// Favourite lists under a key of their own for each test, over real folders A, B, C, ... in the test home.
class UserDefaultBookmarksTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        static int run = 0;
        mKey = u"favoriteFolderBookmarks-test-%1"_s.arg(++run);
        mRoot = corvex::test::home() + u"/favourites-%1"_s.arg(run);
    }

    QUrl folder(const QString &name)
    {
        QDir().mkpath(mRoot + QLatin1Char('/') + name);
        return QUrl::fromLocalFile(mRoot + QLatin1Char('/') + name);
    }

    // A fresh list holding the named folders, in order (saved).
    UserDefaultBookmarks listOf(const QString &names)
    {
        UserDefaults::standardUserDefaults().setObject(QVariant(), mKey);
        UserDefaultBookmarks list(mKey);
        QList<QUrl> urls;
        for (const QChar name : names)
            urls.append(folder(name));
        list.insertURLs(urls, 0);
        return list;
    }

    // The folder names of the list's URLs, joined.
    QString namesOf(const UserDefaultBookmarks &list) const
    {
        QString names;
        for (const QUrl &url : list.URLs())
            names += url.fileName();
        return names;
    }

    QVariantList stored() const
    {
        return UserDefaults::standardUserDefaults().arrayForKey(mKey).value_or(QVariantList());
    }

    QString mKey;
    QString mRoot;
};

TEST_F(UserDefaultBookmarksTest, MovesFollowTableDragArithmetic)
{
    const struct
    {
        IndexSet indexes;
        qsizetype to;
        const char *result;
    } cases[] = {
        {{1, 3}, 0, "BDACE"}, {{0, 1}, 4, "CDABE"}, {{2}, 2, "ABCDE"},    {{2}, 3, "ABCDE"},
        {{4}, 0, "EABCD"},    {{0}, 5, "BCDEA"},    {{0, 4}, 2, "BAECD"}, {{}, 3, "ABCDE"},
    };
    for (const auto &example : cases) {
        UserDefaultBookmarks list = listOf(u"ABCDE"_s);
        list.moveBookmarkItemsAtIndexes(example.indexes, example.to);
        EXPECT_EQ(namesOf(list), QString::fromLatin1(example.result)) << "moved to " << example.to;
    }

    // A move writes nothing until saved.
    UserDefaultBookmarks list = listOf(u"ABC"_s);
    list.moveBookmarkItemsAtIndexes({2}, 0);
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), u"ABC"_s);
    list.save();
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), u"CAB"_s);
}

TEST_F(UserDefaultBookmarksTest, InsertAndRemoveSaveAtOnceAndContainsComparesPaths)
{
    UserDefaultBookmarks list = listOf(u"AB"_s);
    list.insertURLs({folder(u"X"_s), folder(u"Y"_s)}, 1);
    EXPECT_EQ(namesOf(list), u"AXYB"_s);
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), u"AXYB"_s);

    // The same folder twice is kept twice.
    list.insertURL(folder(u"A"_s), 4);
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), u"AXYBA"_s);

    list.removeBookmarkItemsAtIndexes({0, 2});
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), u"XBA"_s);
    EXPECT_EQ(list.bookmarkItemsAtIndexes({0, 2}).at(1)->URL()->fileName(), u"A"_s);

    // Whether the list holds a folder compares file paths exactly.
    const QUrl b = folder(u"B"_s);
    EXPECT_TRUE(list.containsURL(b));
    EXPECT_FALSE(list.containsURL(folder(u"Y"_s)));
    QUrl network = b;
    network.setScheme(u"smb"_s);
    network.setHost(u"server"_s);
    EXPECT_FALSE(list.containsURL(network));
    EXPECT_FALSE(list.containsURL(QUrl::fromLocalFile(b.toLocalFile() + QLatin1Char('/'))));
}

TEST_F(UserDefaultBookmarksTest, StoredDataIsKeptAsItIsAndFollowsMovedFolders)
{
    // Data saved back without any URL request is the very same data, bookmark or not.
    UserDefaultBookmarks first = listOf(u"AB"_s);
    QVariantList data = stored();
    data.append(QByteArray("not a bookmark"));
    UserDefaults::standardUserDefaults().setObject(data, mKey);
    UserDefaultBookmarks reread(mKey);
    EXPECT_EQ(reread.count(), 3);
    reread.save();
    EXPECT_EQ(stored(), data);

    // A favourite renamed in the file manager is found under its new name.
    ASSERT_TRUE(QDir().rename(mRoot + u"/A"_s, mRoot + u"/A moved"_s));
    UserDefaultBookmarks afterRename(mKey);
    EXPECT_EQ(afterRename.bookmarkItemAtIndex(0)->URL(), QUrl::fromLocalFile(mRoot + u"/A moved"_s));

    // Missing or not an array: an empty list.
    UserDefaults::standardUserDefaults().setObject(u"text"_s, mKey);
    EXPECT_EQ(UserDefaultBookmarks(mKey).count(), 0);
    UserDefaults::standardUserDefaults().setObject(QVariant(), mKey);
    EXPECT_EQ(UserDefaultBookmarks(mKey).count(), 0);
}

TEST_F(UserDefaultBookmarksTest, ProgrammingErrorsThrow)
{
    // What an operation throws, as "name: reason"; empty when it throws nothing.
    const auto thrown = [](const std::function<void()> &operation) -> QString {
        try {
            operation();
        } catch (const BookmarkException &exception) {
            return exception.name() + u": "_s + exception.reason();
        }
        return {};
    };
    const auto nameOf = [&](const std::function<void()> &operation) {
        return thrown(operation).section(u':', 0, 0);
    };
    BookmarkItem empty;
    EXPECT_EQ(thrown([&] { empty.bookmarkData(); }),
              u"NSInternalInconsistencyException: Can not create bookmark data without a URL"_s);
    EXPECT_EQ(thrown([&] { empty.URL(); }),
              u"NSInternalInconsistencyException: Can not create a URL without bookmark data"_s);

    UserDefaultBookmarks list = listOf(u"AB"_s);
    const QString range = u"NSRangeException"_s, invalid = u"NSInvalidArgumentException"_s;
    EXPECT_EQ(nameOf([&] { list.bookmarkItemAtIndex(2); }), range);
    EXPECT_EQ(nameOf([&] { list.bookmarkItemsAtIndexes({1, 5}); }), range);
    EXPECT_EQ(nameOf([&] { list.insertURL(folder(u"C"_s), 3); }), range);
    EXPECT_EQ(nameOf([&] { list.removeBookmarkItemsAtIndexes({0, 2}); }), range);
    EXPECT_EQ(nameOf([&] { list.moveBookmarkItemsAtIndexes({0}, 3); }), range);
    EXPECT_EQ(nameOf([&] { list.insertURLs({}, 7); }), QString()); // nothing to insert: only saved
    EXPECT_EQ(namesOf(list), u"AB"_s);

    // A folder that cannot be bookmarked cannot be saved; the list stays as it was.
    EXPECT_EQ(nameOf([&] { list.insertURL(QUrl::fromLocalFile(mRoot + u"/gone"_s), 0); }), invalid);
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), u"AB"_s);

    // A bookmark that no longer resolves makes URLs() fail; containsURL() skips it.
    QVariantList data = stored();
    data.prepend(QByteArray("unresolvable"));
    UserDefaults::standardUserDefaults().setObject(data, mKey);
    UserDefaultBookmarks broken(mKey);
    EXPECT_EQ(nameOf([&] { broken.URLs(); }), invalid);
    EXPECT_TRUE(broken.containsURL(folder(u"B"_s)));
}

} // namespace
