// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Trash.h"
#include "TestSupport.h"
#include "foundation/CorvexError.h"
#include "platform/FileMove.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::readFile;

TEST(Trash, ItemGoesToTheTrashWithItsInfoAndASecondOfTheSameNameBesideIt)
{
    QTemporaryDir dir;
    const QString file = corvex::test::writeFile(dir.filePath(u"50% done.png"_s), "pixels");
    QString trashed;
    ASSERT_TRUE(Trash::moveItemToTrash(file, &trashed));
    EXPECT_FALSE(QFileInfo::exists(file));
    EXPECT_EQ(trashed, qEnvironmentVariable("XDG_DATA_HOME") + u"/Trash/files/50% done.png"_s);
    EXPECT_EQ(readFile(trashed), QByteArray("pixels"));
    const QByteArray info =
        readFile(qEnvironmentVariable("XDG_DATA_HOME") + u"/Trash/info/50% done.png.trashinfo"_s);
    EXPECT_TRUE(info.startsWith("[Trash Info]\n"));
    EXPECT_TRUE(info.contains(
        QByteArray(QByteArray("Path=") + QFile::encodeName(dir.path()) + "/50%25%20done.png\n")))
        << info.constData();
    EXPECT_TRUE(info.contains("DeletionDate="));

    // The same name again: both are kept.
    QString second;
    ASSERT_TRUE(Trash::moveItemToTrash(corvex::test::writeFile(file, "again"), &second));
    EXPECT_NE(second, trashed);
    EXPECT_EQ(readFile(trashed), QByteArray("pixels"));
    EXPECT_EQ(readFile(second), QByteArray("again"));
}

TEST(Trash, MissingDataFolderIsCreatedInsteadOfTrashingIntoTheCurrentFolder)
{
    QTemporaryDir dir;
    const QByteArray saved = qgetenv("XDG_DATA_HOME");
    const QString dataHome = dir.filePath(u"not-yet/share"_s);
    qputenv("XDG_DATA_HOME", QFile::encodeName(dataHome));
    const QString cwd = QDir::currentPath();
    QDir::setCurrent(dir.path());
    const QString file = corvex::test::writeFile(dir.filePath(u"shot.png"_s), "x");
    QString trashed;
    const bool moved = Trash::moveItemToTrash(file, &trashed);
    QDir::setCurrent(cwd);
    qputenv("XDG_DATA_HOME", saved);
    ASSERT_TRUE(moved);
    EXPECT_EQ(trashed, dataHome + u"/Trash/files/shot.png"_s);
    EXPECT_FALSE(QDir(dir.path()).exists(u".Trash"_s));
}

TEST(Trash, MissingItemFails)
{
    QTemporaryDir dir;
    CorvexError error;
    QString trashed = u"untouched"_s;
    EXPECT_FALSE(Trash::moveItemToTrash(dir.filePath(u"nothing.png"_s), &trashed, &error));
    EXPECT_EQ(trashed, u"untouched"_s);
    EXPECT_EQ(error.domain(), CorvexError::CocoaErrorDomain);
    EXPECT_EQ(error.code(), CorvexError::FileNoSuchFileError);
}

TEST(FileMove, RenamesAndRefusesToReplace)
{
    QTemporaryDir dir;
    const QString source = corvex::test::writeFile(dir.filePath(u"a.png"_s), "first");
    const QString destination = dir.filePath(u"b.png"_s);
    ASSERT_TRUE(FileMove::moveItemAtPath(source, destination));
    EXPECT_FALSE(QFileInfo::exists(source));
    EXPECT_EQ(readFile(destination), QByteArray("first"));

    const QString other = corvex::test::writeFile(dir.filePath(u"c.png"_s), "second");
    CorvexError error;
    EXPECT_FALSE(FileMove::moveItemAtPath(other, destination, &error));
    EXPECT_EQ(error.code(), CorvexError::FileWriteFileExistsError);
    EXPECT_EQ(readFile(destination), QByteArray("first"));
    EXPECT_EQ(readFile(other), QByteArray("second"));

    EXPECT_FALSE(FileMove::moveItemAtPath(dir.filePath(u"none.png"_s), dir.filePath(u"d.png"_s), &error));
    EXPECT_EQ(error.code(), CorvexError::FileNoSuchFileError);
    EXPECT_FALSE(FileMove::moveItemAtPath(other, dir.filePath(u"no/folder.png"_s), &error));
    EXPECT_TRUE(QFileInfo::exists(other));
}

TEST(FileMove, AcrossFileSystemsCopiesThenRemoves)
{
    // /dev/shm is a memory file system on Linux: a different device from the temporary folder's.
    QTemporaryDir dir;
    QTemporaryDir shm(u"/dev/shm/corvex-test-XXXXXX"_s);
    struct stat a
    {
    }, b{};
    if (!shm.isValid() || ::stat(QFile::encodeName(dir.path()).constData(), &a) != 0 ||
        ::stat(QFile::encodeName(shm.path()).constData(), &b) != 0 || a.st_dev == b.st_dev)
        GTEST_SKIP() << "no second file system here";
    const QByteArray bytes(3 * 1024 * 1024 + 7, 'q');
    const QString source = corvex::test::writeFile(dir.filePath(u"big.tiff"_s), bytes);
    ::chmod(QFile::encodeName(source).constData(), 0640);
    const struct timespec times[2] = {{1000000000, 0}, {1300000000, 0}};
    ::utimensat(AT_FDCWD, QFile::encodeName(source).constData(), times, 0);
    const QString destination = shm.filePath(u"big.tiff"_s);
    ASSERT_TRUE(FileMove::moveItemAtPath(source, destination));
    EXPECT_FALSE(QFileInfo::exists(source));
    EXPECT_EQ(readFile(destination), bytes);
    struct stat moved
    {
    };
    ASSERT_EQ(::stat(QFile::encodeName(destination).constData(), &moved), 0);
    EXPECT_EQ(moved.st_mode & 07777, 0640u);
    EXPECT_EQ(moved.st_mtim.tv_sec, 1300000000);
}

} // namespace
