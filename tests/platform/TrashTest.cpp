// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/Trash.h"
#include "foundation/CorvexError.h"
#include "platform/FileMove.h"
#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(Trash, ItemGoesToTheTrashWithItsInfo)
{
    QTemporaryDir dir;
    const QString file = corvex::test::writeFile(dir.filePath(QStringLiteral("50% done.png")), "pixels");
    QString trashed;
    ASSERT_TRUE(Trash::moveItemToTrash(file, &trashed));
    EXPECT_FALSE(QFileInfo::exists(file));
    EXPECT_TRUE(QDir::isAbsolutePath(trashed));
    EXPECT_EQ(trashed, qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files/50% done.png"));
    EXPECT_EQ(contents(trashed), QByteArray("pixels"));
    const QByteArray info = contents(qEnvironmentVariable("XDG_DATA_HOME") +
                                     QStringLiteral("/Trash/info/50% done.png.trashinfo"));
    EXPECT_TRUE(info.startsWith("[Trash Info]\n"));
    EXPECT_TRUE(info.contains(
        QByteArray(QByteArray("Path=") + QFile::encodeName(dir.path()) + "/50%25%20done.png\n")))
        << info.constData();
    EXPECT_TRUE(info.contains("DeletionDate="));
}

TEST(Trash, SameNameTwiceKeepsBoth)
{
    QTemporaryDir dir;
    QString first, second;
    ASSERT_TRUE(Trash::moveItemToTrash(
        corvex::test::writeFile(dir.filePath(QStringLiteral("twice.png")), "one"), &first));
    ASSERT_TRUE(Trash::moveItemToTrash(
        corvex::test::writeFile(dir.filePath(QStringLiteral("twice.png")), "two"), &second));
    EXPECT_NE(first, second);
    EXPECT_EQ(contents(first), QByteArray("one"));
    EXPECT_EQ(contents(second), QByteArray("two"));
}

TEST(Trash, MissingDataFolderIsCreatedInsteadOfTrashingIntoTheCurrentFolder)
{
    QTemporaryDir dir;
    const QByteArray saved = qgetenv("XDG_DATA_HOME");
    const QString dataHome = dir.filePath(QStringLiteral("not-yet/share"));
    qputenv("XDG_DATA_HOME", QFile::encodeName(dataHome));
    const QString cwd = QDir::currentPath();
    QDir::setCurrent(dir.path());
    const QString file = corvex::test::writeFile(dir.filePath(QStringLiteral("shot.png")), "x");
    QString trashed;
    const bool moved = Trash::moveItemToTrash(file, &trashed);
    QDir::setCurrent(cwd);
    qputenv("XDG_DATA_HOME", saved);
    ASSERT_TRUE(moved);
    EXPECT_EQ(trashed, dataHome + QStringLiteral("/Trash/files/shot.png"));
    EXPECT_FALSE(QDir(dir.path()).exists(QStringLiteral(".Trash")));
}

TEST(Trash, MissingItemFails)
{
    QTemporaryDir dir;
    CorvexError error;
    QString trashed = QStringLiteral("untouched");
    EXPECT_FALSE(Trash::moveItemToTrash(dir.filePath(QStringLiteral("nothing.png")), &trashed, &error));
    EXPECT_EQ(trashed, QStringLiteral("untouched"));
    EXPECT_EQ(error.domain(), CorvexError::CocoaErrorDomain);
    EXPECT_EQ(error.code(), CorvexError::FileNoSuchFileError);
}

TEST(FileMove, RenamesAndRefusesToReplace)
{
    QTemporaryDir dir;
    const QString source = corvex::test::writeFile(dir.filePath(QStringLiteral("a.png")), "first");
    const QString destination = dir.filePath(QStringLiteral("b.png"));
    ASSERT_TRUE(FileMove::moveItemAtPath(source, destination));
    EXPECT_FALSE(QFileInfo::exists(source));
    EXPECT_EQ(contents(destination), QByteArray("first"));

    const QString other = corvex::test::writeFile(dir.filePath(QStringLiteral("c.png")), "second");
    CorvexError error;
    EXPECT_FALSE(FileMove::moveItemAtPath(other, destination, &error));
    EXPECT_EQ(error.code(), CorvexError::FileWriteFileExistsError);
    EXPECT_EQ(contents(destination), QByteArray("first"));
    EXPECT_EQ(contents(other), QByteArray("second"));

    EXPECT_FALSE(FileMove::moveItemAtPath(dir.filePath(QStringLiteral("none.png")),
                                          dir.filePath(QStringLiteral("d.png")), &error));
    EXPECT_EQ(error.code(), CorvexError::FileNoSuchFileError);
    EXPECT_FALSE(FileMove::moveItemAtPath(other, dir.filePath(QStringLiteral("no/folder.png")), &error));
    EXPECT_TRUE(QFileInfo::exists(other));
}

TEST(FileMove, AcrossFileSystemsCopiesThenRemoves)
{
    // /dev/shm is a memory file system on Linux: a different device from the temporary folder's.
    QTemporaryDir dir;
    QTemporaryDir shm(QStringLiteral("/dev/shm/corvex-test-XXXXXX"));
    struct stat a
    {
    }, b{};
    if (!shm.isValid() || ::stat(QFile::encodeName(dir.path()).constData(), &a) != 0 ||
        ::stat(QFile::encodeName(shm.path()).constData(), &b) != 0 || a.st_dev == b.st_dev)
        GTEST_SKIP() << "no second file system here";
    const QByteArray bytes(3 * 1024 * 1024 + 7, 'q');
    const QString source = corvex::test::writeFile(dir.filePath(QStringLiteral("big.tiff")), bytes);
    ::chmod(QFile::encodeName(source).constData(), 0640);
    const struct timespec times[2] = {{1000000000, 0}, {1300000000, 0}};
    ::utimensat(AT_FDCWD, QFile::encodeName(source).constData(), times, 0);
    const QString destination = shm.filePath(QStringLiteral("big.tiff"));
    ASSERT_TRUE(FileMove::moveItemAtPath(source, destination));
    EXPECT_FALSE(QFileInfo::exists(source));
    EXPECT_EQ(contents(destination), bytes);
    struct stat moved
    {
    };
    ASSERT_EQ(::stat(QFile::encodeName(destination).constData(), &moved), 0);
    EXPECT_EQ(moved.st_mode & 07777, 0640u);
    EXPECT_EQ(moved.st_mtim.tv_sec, 1300000000);
}

} // namespace
