// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogFileInfo.h"
#include "RefusingAttributes.h"
#include "TestSupport.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class DDLogFileInfoTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        mDirectory = corvex::test::home() + u"/info-"_s +
                     QString::fromLatin1(::testing::UnitTest::GetInstance()->current_test_info()->name());
        QDir().mkpath(mDirectory);
    }
    QString path(const QString &name) const { return mDirectory + QLatin1Char('/') + name; }

    QString mDirectory;
    const RefusingAttributes mRefusing;
};

} // namespace

TEST_F(DDLogFileInfoTest, AttributesAreReadOnceUntilReset)
{
    const QString file = corvex::test::writeFile(path(u"log-ABCDEF.txt"_s), "12345");
    const QDateTime before = QDateTime::currentDateTime();
    DDLogFileInfo info(file);
    EXPECT_EQ(info.filePath(), file);
    EXPECT_EQ(info.fileName(), u"log-ABCDEF.txt"_s);
    EXPECT_EQ(info.fileSize(), 5u);
    EXPECT_EQ(info.fileAttributes().value(u"NSFileSize"_s).toULongLong(), 5u);
    EXPECT_EQ(info.fileAttributes().value(u"NSFileType"_s).toString(), u"NSFileTypeRegular"_s);
    EXPECT_TRUE(info.creationDate().isValid());
    EXPECT_LE(qAbs(info.creationDate().secsTo(before)), 5);
    EXPECT_GE(info.age(), 0.0);
    EXPECT_LT(info.age(), 60.0);

    QFile append(file);
    ASSERT_TRUE(append.open(QIODevice::Append));
    append.write("678");
    append.close();
    EXPECT_EQ(info.fileSize(), 5u) << "cached";
    info.reset();
    EXPECT_EQ(info.fileSize(), 8u);

    DDLogFileInfo missing(path(u"missing.txt"_s));
    EXPECT_TRUE(missing.fileAttributes().isEmpty());
    EXPECT_EQ(missing.fileSize(), 0u);
    EXPECT_EQ(missing.age(), 0.0);
}

TEST_F(DDLogFileInfoTest, ArchivedFlagIsAnEmptyUserAttribute)
{
    const QString file = corvex::test::writeFile(path(u"log-000001.txt"_s), "x");
    DDLogFileInfo info(file);
    EXPECT_FALSE(info.isArchived());
    info.setIsArchived(true);
    EXPECT_TRUE(info.isArchived());
    const ExtendedAttributes &attributes = ExtendedAttributes::fileSystem();
    EXPECT_EQ(attributes.size(file, u"user.vofungudip.log.archived"_s), 0);
    EXPECT_EQ(attributes.value(file, u"vofungudip.log.archived"_s), QByteArray(""));
    EXPECT_FALSE(QFile::exists(path(u".log-000001.txt.archived"_s)));
    info.setIsArchived(false);
    EXPECT_FALSE(info.isArchived());
    EXPECT_LT(attributes.size(file, u"vofungudip.log.archived"_s), 0);

    // Removing a missing attribute is not an error; a file that is not there is, told to the system log.
    DDLogFileInfo missing(path(u"log-000003.txt"_s));
    testing::internal::CaptureStderr();
    info.removeExtendedAttributeWithName(u"vofungudip.log.archived"_s);
    missing.setIsArchived(true);
    missing.setIsArchived(false);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "DDLogFileInfo: setxattr(vofungudip.log.archived, log-000003.txt): error = -1\n"
              "DDLogFileInfo: removexattr(vofungudip.log.archived, log-000003.txt): error = -1\n");
}

TEST_F(DDLogFileInfoTest, FlagFileStandsInWhereTheFileSystemRefusesAttributes)
{
    const QString file = corvex::test::writeFile(path(u"log-000002.txt"_s), "x");
    const QString flag = path(u".log-000002.txt.archived"_s);
    DDLogFileInfo refused(file, mRefusing);
    EXPECT_EQ(refused.flagFilePathForAttribute(DDLogFileInfo::ArchivedAttributeName), flag);

    testing::internal::CaptureStderr();
    refused.setIsArchived(true);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(QFile::exists(flag));
    EXPECT_TRUE(refused.isArchived());

    // Readers honour either form.
    DDLogFileInfo info(file);
    EXPECT_LT(ExtendedAttributes::fileSystem().size(file, DDLogFileInfo::ArchivedAttributeName), 0);
    EXPECT_TRUE(info.isArchived());

    // Clearing the flag removes both forms.
    info.addExtendedAttributeWithName(DDLogFileInfo::ArchivedAttributeName);
    info.setIsArchived(false);
    EXPECT_FALSE(QFile::exists(flag));
    EXPECT_FALSE(info.isArchived());
}

TEST_F(DDLogFileInfoTest, RenamingMovesTheFileAndItsFlag)
{
    const QString file = corvex::test::writeFile(path(u"log-000004.txt"_s), "abc");
    DDLogFileInfo info(file, mRefusing);
    info.setIsArchived(true);
    EXPECT_EQ(info.fileSize(), 3u);

    info.renameFile(u"log-000004.txt"_s); // same name: nothing happens
    EXPECT_TRUE(QFile::exists(file));

    info.renameFile(u"log-000005.txt"_s);
    EXPECT_EQ(info.filePath(), path(u"log-000005.txt"_s));
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_TRUE(QFile::exists(path(u"log-000005.txt"_s)));
    EXPECT_TRUE(QFile::exists(path(u".log-000005.txt.archived"_s)));
    EXPECT_TRUE(info.isArchived());

    // A failed move still takes the new path.
    DDLogFileInfo gone(path(u"log-000006.txt"_s));
    testing::internal::CaptureStderr();
    gone.renameFile(u"log-000007.txt"_s);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::StartsWith("DDLogFileInfo: Error renaming file (log-000006.txt): "));
    EXPECT_EQ(gone.fileName(), u"log-000007.txt"_s);
}

TEST_F(DDLogFileInfoTest, ComparisonPutsTheLaterFileFirst)
{
    const QString older = corvex::test::writeFile(path(u"log-00000A.txt"_s), "a");
    // Creation times follow the kernel's coarse clock: the second file is made once a new one is born later.
    const QDateTime born = QFileInfo(older).birthTime();
    ASSERT_TRUE(corvex::test::waitUntil([&] {
        QFile::remove(path(u"probe"_s));
        return QFileInfo(corvex::test::writeFile(path(u"probe"_s), "")).birthTime() > born;
    }));
    const QString newer = corvex::test::writeFile(path(u"log-00000B.txt"_s), "b");
    DDLogFileInfo a(older);
    DDLogFileInfo b(newer);
    EXPECT_EQ(b.reverseCompareByCreationDate(a), -1);
    EXPECT_EQ(a.reverseCompareByCreationDate(b), 1);
    EXPECT_EQ(a.reverseCompareByCreationDate(DDLogFileInfo(older)), 0);
    EXPECT_EQ(b.reverseCompareByModificationDate(a), -1);
    EXPECT_TRUE(a.isEqual(DDLogFileInfo(older)));
    EXPECT_FALSE(a == b);
}
