// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileAttributes.h"
#include "TestSupport.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTimeZone>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QString homePath(const char *name)
{
    return corvex::test::home() + QLatin1Char('/') + QString::fromUtf8(name);
}

TEST(FileAttributes, RegularFileDescribesItselfInPropertyListValues)
{
    const QString path = corvex::test::writeFile(homePath("attrs/shot.png"), QByteArray(1234, 'x'));
    const QByteArray native = QFile::encodeName(path);
    ASSERT_EQ(chmod(native.constData(), 0640), 0);
    // A modification time with milliseconds: 2021-06-01 12:00:00.789 UTC.
    const struct timespec times[2] = {{1622548800, 789000000}, {1622548800, 789000000}};
    ASSERT_EQ(utimensat(AT_FDCWD, native.constData(), times, 0), 0);
    struct stat info
    {
    };
    ASSERT_EQ(stat(native.constData(), &info), 0);

    CorvexError error;
    const QVariantMap attributes = FileAttributes::attributesOfItemAtPath(path, &error);
    EXPECT_EQ(attributes.value(FileAttributes::SizeKey), QVariant(qint64(1234)));
    EXPECT_EQ(attributes.value(FileAttributes::TypeKey), QVariant(FileAttributes::TypeRegular));
    EXPECT_EQ(attributes.value(FileAttributes::PosixPermissionsKey), QVariant(qint64(0640)));
    EXPECT_EQ(attributes.value(FileAttributes::OwnerAccountIDKey), QVariant(qint64(getuid())));
    EXPECT_EQ(attributes.value(FileAttributes::GroupOwnerAccountIDKey), QVariant(qint64(info.st_gid)));
    EXPECT_EQ(attributes.value(FileAttributes::SystemNumberKey), QVariant(qint64(info.st_dev)));
    EXPECT_EQ(attributes.value(FileAttributes::SystemFileNumberKey), QVariant(qint64(info.st_ino)));
    EXPECT_EQ(attributes.value(FileAttributes::ReferenceCountKey), QVariant(qint64(1)));
    EXPECT_EQ(attributes.value(FileAttributes::ExtensionHiddenKey), QVariant(false));
    const QDateTime modified(QDate(2021, 6, 1), QTime(12, 0, 0, 789), QTimeZone::utc());
    EXPECT_EQ(attributes.value(FileAttributes::ModificationDateKey).toDateTime(), modified);
    // The birth time (just now) where the file system keeps it, else the modification time.
    const QDateTime created = attributes.value(FileAttributes::CreationDateKey).toDateTime();
    EXPECT_TRUE(created == modified || qAbs(created.secsTo(QDateTime::currentDateTimeUtc())) < 120)
        << created.toString(Qt::ISODateWithMs).toStdString();

    EXPECT_TRUE(PropertyList::isPropertyListValue(attributes));
}

TEST(FileAttributes, FoldersAndLinksAreTypedAndLinksAreNotFollowed)
{
    const QString folder = homePath("attrs-types");
    QDir().mkpath(folder);
    const QString link = folder + u"/link"_s;
    ASSERT_TRUE(QFile::link(folder, link));
    EXPECT_EQ(FileAttributes::attributesOfItemAtPath(folder).value(FileAttributes::TypeKey),
              QVariant(FileAttributes::TypeDirectory));
    EXPECT_EQ(FileAttributes::attributesOfItemAtPath(link).value(FileAttributes::TypeKey),
              QVariant(FileAttributes::TypeSymbolicLink));
}

TEST(FileAttributes, HiddenExtensionFollowsTheExtendedAttribute)
{
    const QString path = corvex::test::writeFile(homePath("attrs/hidden.png"), "x");
    const QByteArray native = QFile::encodeName(path);
    if (setxattr(native.constData(), FileAttributes::HideExtensionAttribute, "1", 1, 0) != 0)
        GTEST_SKIP() << "this file system keeps no user extended attributes";
    EXPECT_EQ(FileAttributes::attributesOfItemAtPath(path).value(FileAttributes::ExtensionHiddenKey),
              QVariant(true));
    ASSERT_EQ(setxattr(native.constData(), FileAttributes::HideExtensionAttribute, "no", 2, 0), 0);
    EXPECT_EQ(FileAttributes::attributesOfItemAtPath(path).value(FileAttributes::ExtensionHiddenKey),
              QVariant(false));
}

TEST(FileAttributes, MissingItemIsAReadingNoSuchFileError)
{
    CorvexError error;
    const QString path = homePath("attrs/none.png");
    EXPECT_TRUE(FileAttributes::attributesOfItemAtPath(path, &error).isEmpty());
    EXPECT_EQ(error.domain(), CorvexError::CocoaErrorDomain);
    EXPECT_EQ(error.code(), 260);
    EXPECT_EQ(error.filePath(), path);
}

} // namespace
