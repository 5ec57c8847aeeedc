// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/UserDefaultBookmarks.h"
#include "core/BookmarkException.h"
#include "core/BookmarkItem.h"
#include "TestSupport.h"
#include "core/UserDefaults.h"

#include <QDir>
#include <gtest/gtest.h>
#include <ostream>

void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

namespace {

using IndexSet = UserDefaultBookmarks::IndexSet;

// Favourite lists under a key of their own for each test, over real folders A, B, C, ... in the test home.
class UserDefaultBookmarksTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        static int run = 0;
        mKey = QStringLiteral("favoriteFolderBookmarks-test-%1").arg(++run);
        mRoot = corvex::test::home() + QStringLiteral("/favourites-%1").arg(run);
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
        UserDefaultBookmarks list = listOf(QStringLiteral("ABCDE"));
        list.moveBookmarkItemsAtIndexes(example.indexes, example.to);
        EXPECT_EQ(namesOf(list), QString::fromLatin1(example.result)) << "moved to " << example.to;
    }

    // A move writes nothing until saved.
    UserDefaultBookmarks list = listOf(QStringLiteral("ABC"));
    list.moveBookmarkItemsAtIndexes({2}, 0);
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), QStringLiteral("ABC"));
    list.save();
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), QStringLiteral("CAB"));
}

TEST_F(UserDefaultBookmarksTest, InsertAndRemoveSaveAtOnce)
{
    UserDefaultBookmarks list = listOf(QStringLiteral("AB"));
    list.insertURLs({folder(QStringLiteral("X")), folder(QStringLiteral("Y"))}, 1);
    EXPECT_EQ(namesOf(list), QStringLiteral("AXYB"));
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), QStringLiteral("AXYB"));

    // The same folder twice is kept twice.
    list.insertURL(folder(QStringLiteral("A")), 4);
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), QStringLiteral("AXYBA"));

    list.removeBookmarkItemsAtIndexes({0, 2});
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), QStringLiteral("XBA"));
    EXPECT_EQ(list.bookmarkItemsAtIndexes({0, 2}).at(1)->URL()->fileName(), QStringLiteral("A"));
}

TEST_F(UserDefaultBookmarksTest, StoredDataIsKeptAsItIsAndFollowsMovedFolders)
{
    // Data saved back without any URL request is the very same data, bookmark or not.
    UserDefaultBookmarks first = listOf(QStringLiteral("AB"));
    QVariantList data = stored();
    data.append(QByteArray("not a bookmark"));
    UserDefaults::standardUserDefaults().setObject(data, mKey);
    UserDefaultBookmarks reread(mKey);
    EXPECT_EQ(reread.count(), 3);
    reread.save();
    EXPECT_EQ(stored(), data);

    // A favourite renamed in the file manager is found under its new name.
    ASSERT_TRUE(QDir().rename(mRoot + QStringLiteral("/A"), mRoot + QStringLiteral("/A moved")));
    UserDefaultBookmarks afterRename(mKey);
    EXPECT_EQ(afterRename.bookmarkItemAtIndex(0)->URL(),
              QUrl::fromLocalFile(mRoot + QStringLiteral("/A moved")));

    // Missing or not an array: an empty list.
    UserDefaults::standardUserDefaults().setObject(QStringLiteral("text"), mKey);
    EXPECT_EQ(UserDefaultBookmarks(mKey).count(), 0);
    UserDefaults::standardUserDefaults().setObject(QVariant(), mKey);
    EXPECT_EQ(UserDefaultBookmarks(mKey).count(), 0);
}

TEST_F(UserDefaultBookmarksTest, ContainsComparesFilePathsExactly)
{
    UserDefaultBookmarks list = listOf(QStringLiteral("AB"));
    const QUrl b = folder(QStringLiteral("B"));
    EXPECT_TRUE(list.containsURL(b));
    EXPECT_FALSE(list.containsURL(folder(QStringLiteral("C"))));
    QUrl network = b;
    network.setScheme(QStringLiteral("smb"));
    network.setHost(QStringLiteral("server"));
    EXPECT_FALSE(list.containsURL(network));
    EXPECT_FALSE(list.containsURL(QUrl::fromLocalFile(b.toLocalFile() + QLatin1Char('/'))));

    // An item whose folder is gone is skipped rather than failing the question.
    QVariantList data = stored();
    data.prepend(QByteArray("unresolvable"));
    UserDefaults::standardUserDefaults().setObject(data, mKey);
    EXPECT_TRUE(UserDefaultBookmarks(mKey).containsURL(b));
}

TEST_F(UserDefaultBookmarksTest, ProgrammingErrorsThrow)
{
    BookmarkItem empty;
    try {
        empty.bookmarkData();
        ADD_FAILURE() << "no exception";
    } catch (const BookmarkException &exception) {
        EXPECT_EQ(exception.name(), QStringLiteral("NSInternalInconsistencyException"));
        EXPECT_EQ(exception.reason(), QStringLiteral("Can not create bookmark data without a URL"));
    }
    try {
        empty.URL();
        ADD_FAILURE() << "no exception";
    } catch (const BookmarkException &exception) {
        EXPECT_EQ(exception.kind(), BookmarkException::InternalInconsistency);
        EXPECT_EQ(exception.reason(), QStringLiteral("Can not create a URL without bookmark data"));
    }

    UserDefaultBookmarks list = listOf(QStringLiteral("AB"));
    const auto kindOf = [](const std::function<void()> &operation) {
        try {
            operation();
        } catch (const BookmarkException &exception) {
            return int(exception.kind());
        }
        return -1;
    };
    EXPECT_EQ(kindOf([&] { list.bookmarkItemAtIndex(2); }), BookmarkException::Range);
    EXPECT_EQ(kindOf([&] { list.bookmarkItemsAtIndexes({1, 5}); }), BookmarkException::Range);
    EXPECT_EQ(kindOf([&] { list.insertURL(folder(QStringLiteral("C")), 3); }), BookmarkException::Range);
    EXPECT_EQ(kindOf([&] { list.removeBookmarkItemsAtIndexes({0, 2}); }), BookmarkException::Range);
    EXPECT_EQ(kindOf([&] { list.moveBookmarkItemsAtIndexes({0}, 3); }), BookmarkException::Range);
    EXPECT_EQ(kindOf([&] { list.insertURLs({}, 7); }), -1); // nothing to insert: only saved
    EXPECT_EQ(namesOf(list), QStringLiteral("AB"));

    // A folder that cannot be bookmarked cannot be saved; the list stays as it was.
    EXPECT_EQ(kindOf([&] { list.insertURL(QUrl::fromLocalFile(mRoot + QStringLiteral("/gone")), 0); }),
              BookmarkException::InvalidArgument);
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(namesOf(UserDefaultBookmarks(mKey)), QStringLiteral("AB"));

    // A bookmark that no longer resolves makes URLs() fail.
    QVariantList data = stored();
    data.append(QByteArray("unresolvable"));
    UserDefaults::standardUserDefaults().setObject(data, mKey);
    UserDefaultBookmarks broken(mKey);
    EXPECT_EQ(kindOf([&] { broken.URLs(); }), BookmarkException::InvalidArgument);
}

} // namespace
