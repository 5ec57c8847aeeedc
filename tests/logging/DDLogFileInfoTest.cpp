// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogFileInfo.h"
#include "StderrCapture.h"
#include "TestSupport.h"
#include "platform/ExtendedAttributes.h"
#include "platform/ExtendedAttributes_p.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

class DDLogFileInfoTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        mDirectory = corvex::test::home() + QStringLiteral("/info-") +
                     QString::fromLatin1(::testing::UnitTest::GetInstance()->current_test_info()->name());
        QDir().mkpath(mDirectory);
    }
    void TearDown() override { extended_attributes_private::setUserAttributesRefused(false); }

    QString path(const QString &name) const { return mDirectory + QLatin1Char('/') + name; }

    QString mDirectory;
};

} // namespace

TEST_F(DDLogFileInfoTest, AttributesAreReadOnceUntilReset)
{
    const QString file = corvex::test::writeFile(path(QStringLiteral("log-ABCDEF.txt")), "12345");
    const QDateTime before = QDateTime::currentDateTime();
    DDLogFileInfo info(file);
    EXPECT_EQ(info.filePath(), file);
    EXPECT_EQ(info.fileName(), QStringLiteral("log-ABCDEF.txt"));
    EXPECT_EQ(info.fileSize(), 5u);
    EXPECT_EQ(info.fileAttributes().value(QStringLiteral("NSFileSize")).toULongLong(), 5u);
    EXPECT_EQ(info.fileAttributes().value(QStringLiteral("NSFileType")).toString(),
              QStringLiteral("NSFileTypeRegular"));
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

    DDLogFileInfo missing(path(QStringLiteral("missing.txt")));
    EXPECT_TRUE(missing.fileAttributes().isEmpty());
    EXPECT_EQ(missing.fileSize(), 0u);
    EXPECT_EQ(missing.age(), 0.0);
}

TEST_F(DDLogFileInfoTest, ArchivedFlagIsAnEmptyUserAttribute)
{
    const QString file = corvex::test::writeFile(path(QStringLiteral("log-000001.txt")), "x");
    DDLogFileInfo info(file);
    EXPECT_FALSE(info.isArchived());
    info.setIsArchived(true);
    EXPECT_TRUE(info.isArchived());
    EXPECT_EQ(ExtendedAttributes::size(file, QStringLiteral("user.vofungudip.log.archived")), 0);
    EXPECT_EQ(ExtendedAttributes::value(file, QStringLiteral("vofungudip.log.archived")), QByteArray(""));
    EXPECT_FALSE(QFile::exists(path(QStringLiteral(".log-000001.txt.archived"))));
    info.setIsArchived(false);
    EXPECT_FALSE(info.isArchived());
    EXPECT_LT(ExtendedAttributes::size(file, QStringLiteral("vofungudip.log.archived")), 0);

    StderrCapture capture;
    info.removeExtendedAttributeWithName(QStringLiteral("vofungudip.log.archived")); // missing: not an error
    capture.restore();
    EXPECT_TRUE(capture.text().isEmpty()) << qPrintable(capture.text());
}

TEST_F(DDLogFileInfoTest, FlagFileStandsInWhereTheFileSystemRefusesAttributes)
{
    const QString file = corvex::test::writeFile(path(QStringLiteral("log-000002.txt")), "x");
    const QString flag = path(QStringLiteral(".log-000002.txt.archived"));
    DDLogFileInfo info(file);
    EXPECT_EQ(info.flagFilePathForAttribute(DDLogFileInfo::ArchivedAttributeName), flag);

    extended_attributes_private::setUserAttributesRefused(true);
    StderrCapture capture;
    info.setIsArchived(true);
    capture.restore();
    EXPECT_TRUE(capture.text().isEmpty()) << qPrintable(capture.text());
    EXPECT_TRUE(QFile::exists(flag));
    EXPECT_TRUE(info.isArchived());

    // Readers honour either form.
    extended_attributes_private::setUserAttributesRefused(false);
    EXPECT_LT(ExtendedAttributes::size(file, DDLogFileInfo::ArchivedAttributeName), 0);
    EXPECT_TRUE(DDLogFileInfo(file).isArchived());

    // Clearing the flag removes both forms.
    info.addExtendedAttributeWithName(DDLogFileInfo::ArchivedAttributeName);
    info.setIsArchived(false);
    EXPECT_FALSE(QFile::exists(flag));
    EXPECT_FALSE(info.isArchived());
}

TEST_F(DDLogFileInfoTest, AttributeFailuresGoToTheSystemLog)
{
    DDLogFileInfo missing(path(QStringLiteral("log-000003.txt")));
    StderrCapture capture;
    missing.setIsArchived(true);
    missing.setIsArchived(false);
    capture.restore();
    EXPECT_TRUE(capture.text().contains(
        QStringLiteral("DDLogFileInfo: setxattr(vofungudip.log.archived, log-000003.txt): error = -1")))
        << qPrintable(capture.text());
    EXPECT_TRUE(capture.text().contains(
        QStringLiteral("DDLogFileInfo: removexattr(vofungudip.log.archived, log-000003.txt): error = -1")))
        << qPrintable(capture.text());
}

TEST_F(DDLogFileInfoTest, RenamingMovesTheFileAndItsFlag)
{
    const QString file = corvex::test::writeFile(path(QStringLiteral("log-000004.txt")), "abc");
    DDLogFileInfo info(file);
    extended_attributes_private::setUserAttributesRefused(true);
    info.setIsArchived(true);
    extended_attributes_private::setUserAttributesRefused(false);
    EXPECT_EQ(info.fileSize(), 3u);

    info.renameFile(QStringLiteral("log-000004.txt")); // same name: nothing happens
    EXPECT_TRUE(QFile::exists(file));

    info.renameFile(QStringLiteral("log-000005.txt"));
    EXPECT_EQ(info.filePath(), path(QStringLiteral("log-000005.txt")));
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_TRUE(QFile::exists(path(QStringLiteral("log-000005.txt"))));
    EXPECT_TRUE(QFile::exists(path(QStringLiteral(".log-000005.txt.archived"))));
    EXPECT_TRUE(info.isArchived());

    // A failed move still takes the new path.
    DDLogFileInfo gone(path(QStringLiteral("log-000006.txt")));
    StderrCapture capture;
    gone.renameFile(QStringLiteral("log-000007.txt"));
    capture.restore();
    EXPECT_EQ(gone.fileName(), QStringLiteral("log-000007.txt"));
    EXPECT_TRUE(
        capture.text().startsWith(QStringLiteral("DDLogFileInfo: Error renaming file (log-000006.txt): ")))
        << qPrintable(capture.text());
}

TEST_F(DDLogFileInfoTest, ComparisonPutsTheLaterFileFirst)
{
    const QString older = corvex::test::writeFile(path(QStringLiteral("log-00000A.txt")), "a");
    const QString newer = corvex::test::writeFile(path(QStringLiteral("log-00000B.txt")), "b");
    DDLogFileInfo a(older);
    DDLogFileInfo b(newer);
    EXPECT_EQ(b.reverseCompareByCreationDate(a), -1);
    EXPECT_EQ(a.reverseCompareByCreationDate(b), 1);
    EXPECT_EQ(a.reverseCompareByCreationDate(DDLogFileInfo(older)), 0);
    EXPECT_EQ(b.reverseCompareByModificationDate(a), -1);
    EXPECT_TRUE(a.isEqual(DDLogFileInfo(older)));
    EXPECT_FALSE(a == b);
}
