// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Bookmark.h"
#include "TestSupport.h"
#include "platform/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// A fresh tree per test: <home>/<test>/shots/shot.png beside an empty folder <home>/<test>/other.
class BookmarkTest : public testing::Test
{
protected:
    void SetUp() override
    {
        mRoot = corvex::test::home() + QLatin1Char('/') +
                QString::fromUtf8(testing::UnitTest::GetInstance()->current_test_info()->name());
        mFile = corvex::test::writeFile(mRoot + u"/shots/shot.png"_s, "pixels");
        QDir().mkpath(mRoot + u"/other"_s);
        mData = Bookmark::create(mFile);
        ASSERT_FALSE(mData.isEmpty());
    }
    void TearDown() override { QDir(mRoot).removeRecursively(); }

    QString mRoot, mFile;
    QByteArray mData;
};

TEST_F(BookmarkTest, FindsTheFileWhereItIsAndStaleWhereItWasMoved)
{
    bool stale = true;
    EXPECT_EQ(Bookmark::resolve(mData, &stale), mFile);
    EXPECT_FALSE(stale);
    const QString trash = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Trash"_s;
    // Each move starts from the recorded place: renamed in its folder (to a hidden name too), in a sibling
    // folder, in the parent folder, in a subfolder of a sibling, in the Trash.
    for (const QString &destination :
         QStringList{mRoot + u"/shots/My diagram.png"_s, mRoot + u"/shots/.hidden.png"_s,
                     mRoot + u"/other/shot.png"_s, mRoot + u"/moved up.png"_s,
                     mRoot + u"/other/2026/March/shot.png"_s, trash + u"/files/shot.png"_s}) {
        SCOPED_TRACE(destination.toStdString());
        QDir().mkpath(QFileInfo(destination).path());
        ASSERT_TRUE(QFile::rename(mFile, destination));
        stale = false;
        EXPECT_EQ(Bookmark::resolve(mData, &stale), destination);
        EXPECT_TRUE(stale);
        ASSERT_TRUE(QFile::rename(destination, mFile));
    }
}

TEST_F(BookmarkTest, FindsTheFileAfterItsFolderWasRenamed)
{
    ASSERT_TRUE(QDir().rename(mRoot + u"/shots"_s, mRoot + u"/renamed shots"_s));
    EXPECT_EQ(Bookmark::resolve(mData), mRoot + u"/renamed shots/shot.png"_s);
}

TEST_F(BookmarkTest, DeletedFileIsNotFoundEvenWhenALookAlikeExistsElsewhere)
{
    corvex::test::writeFile(mRoot + u"/other/shot.png"_s, "pixels");
    ASSERT_TRUE(QFile::remove(mFile));
    bool stale = false;
    EXPECT_EQ(Bookmark::resolve(mData, &stale), std::nullopt);
}

TEST_F(BookmarkTest, ANewFileWithTheInodeOfTheRecordedOneIsNotIt)
{
    // The recorded file's inode taken by a file born later (the kernel reuses the numbers of deleted files):
    // the bookmark's birth time is moved, which is what such a file would show.
    QVariantMap recorded = PropertyList::parse(mData).toMap();
    ASSERT_TRUE(recorded.contains(u"birthTime"_s)) << "this file system keeps no birth times";
    recorded.insert(u"birthTime"_s, recorded.value(u"birthTime"_s).toLongLong() - 1000000000);
    const QByteArray older = PropertyList::serialize(recorded, PropertyList::Format::Binary);
    ASSERT_TRUE(QFile::rename(mFile, mRoot + u"/other/shot.png"_s));
    bool stale = false;
    EXPECT_EQ(Bookmark::resolve(older, &stale), std::nullopt);
    EXPECT_EQ(Bookmark::resolve(mData, &stale), mRoot + u"/other/shot.png"_s);
}

TEST_F(BookmarkTest, FileReplacedInPlaceResolvesToTheRecordedPath)
{
    // An editor's save: a new file is written and renamed over the old one.
    const QString temporary = corvex::test::writeFile(mRoot + u"/shots/.shot.png.new"_s, "edited");
    ASSERT_TRUE(QFile::remove(mFile));
    ASSERT_TRUE(QFile::rename(temporary, mFile));
    bool stale = false;
    EXPECT_EQ(Bookmark::resolve(mData, &stale), mFile);
    EXPECT_TRUE(stale);
}

TEST(BookmarkData, MissingFileGivesNoDataAndANoSuchFileError)
{
    CorvexError error;
    EXPECT_TRUE(Bookmark::create(corvex::test::home() + u"/nothing.png"_s, &error).isEmpty());
    EXPECT_EQ(error.domain(), CorvexError::CocoaErrorDomain);
    EXPECT_EQ(error.code(), CorvexError::FileReadNoSuchFileError);
}

TEST(BookmarkData, GarbageResolvesToNothing)
{
    const QString path = corvex::test::writeFile(corvex::test::home() + u"/g/real.png"_s, "x");
    const QByteArray good = Bookmark::create(path);
    const QVariantMap map = PropertyList::parse(good).toMap();
    ASSERT_EQ(Bookmark::resolve(good), path);

    QList<QByteArray> garbage{QByteArray(), QByteArray("bplist00"), QByteArray(64, '\xff'),
                              good.left(good.size() / 2),
                              PropertyList::serialize(QVariantList{path}, PropertyList::Format::Binary)};
    // Each identifying key missing, of the wrong type, or (the version) of another value.
    const QStringList keys{u"CorvexBookmarkVersion"_s, u"path"_s, u"device"_s, u"inode"_s};
    for (const QString &key : keys) {
        ASSERT_TRUE(map.contains(key)) << key.toStdString();
        QVariantMap changed = map;
        changed.remove(key);
        garbage.append(PropertyList::serialize(changed, PropertyList::Format::Binary));
        changed.insert(key, u"1"_s);
        garbage.append(PropertyList::serialize(changed, PropertyList::Format::Binary));
    }
    QVariantMap future = map;
    future.insert(u"CorvexBookmarkVersion"_s, qint64(2));
    garbage.append(PropertyList::serialize(future, PropertyList::Format::Binary));

    for (const QByteArray &bytes : std::as_const(garbage)) {
        bool stale = true;
        EXPECT_EQ(Bookmark::resolve(bytes, &stale), std::nullopt) << bytes.toHex().constData();
        EXPECT_FALSE(stale);
    }
}

} // namespace
