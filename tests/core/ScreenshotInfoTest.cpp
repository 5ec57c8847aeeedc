// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ScreenshotInfo.h"
#include "CapturingLogger.h"
#include "TestSupport.h"
#include "foundation/Notifications.h"
#include "platform/FileAttributes.h"
#include "platform/PropertyList.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString makeShot(const QString &name)
{
    return corvex::test::writeFile(corvex::test::home() + u"/Desktop/"_s + name, "not really a PNG");
}

TEST(ScreenshotInfoFromFile, ExistingFileGetsAttributesAndAWorkingBookmark)
{
    LogCapture capture;
    const QString path = makeShot(u"Screen Shot 1.png"_s);
    const ScreenshotInfo info(path, 2);
    EXPECT_EQ(info.filePath(), path);
    EXPECT_EQ(info.screenNumber(), 2);
    ASSERT_TRUE(info.fileAttributes().has_value());
    EXPECT_EQ(info.fileAttributes()->value(FileAttributes::SizeKey).toLongLong(), 16);
    EXPECT_TRUE(info.fileAttributes()->value(FileAttributes::CreationDateKey).toDateTime().isValid());
    ASSERT_TRUE(info.bookmarkData().has_value());
    EXPECT_FALSE(info.targetFilePath().has_value());
    EXPECT_TRUE(capture.messages(DDLogFlagError).isEmpty());

    // Through the wire format and back, the record is the same, bookmark and all.
    const QVariantMap out = info.notificationDictionary();
    const ScreenshotInfo back = ScreenshotInfo::initWithNotificationDictionary(
        PropertyList::parse(PropertyList::serialize(out, PropertyList::Format::Binary)).toMap());
    EXPECT_EQ(back, info);
    EXPECT_TRUE(PropertyList::equal(back.notificationDictionary(), out));

    // The bookmark follows the file through a rename.
    const QString renamed = QFileInfo(path).path() + u"/renamed.png"_s;
    ASSERT_TRUE(QFile::rename(path, renamed));
    EXPECT_EQ(info.filePathByResolvingBookmarkData(), renamed);
    EXPECT_EQ(back.filePathByResolvingBookmarkData(), renamed);
}

TEST(ScreenshotInfoFromFile, MissingFileIsStillARecordWithTwoErrorLines)
{
    LogCapture capture;
    const QString path = corvex::test::home() + u"/Desktop/gone.png"_s;
    const ScreenshotInfo info(path, 1);
    EXPECT_EQ(info.filePath(), path);
    EXPECT_EQ(info.screenNumber(), 1);
    EXPECT_FALSE(info.fileAttributes().has_value());
    EXPECT_FALSE(info.bookmarkData().has_value());
    EXPECT_FALSE(info.filePathByResolvingBookmarkData().has_value());
    const QString reason = u"The file “gone.png” couldn’t be opened because there is no such file."_s;
    EXPECT_EQ(capture.messages(DDLogFlagError),
              QStringList({u"Could not get file attributes for %1.  %2"_s.arg(path, reason),
                           u"Could not get bookmark data for %1.  %2"_s.arg(path, reason)}));
}

TEST(ScreenshotInfoDictionary, ValuesOfTheWrongTypeLeaveFieldsAbsent)
{
    QVariantMap dictionary{{CorvexFilePathKey, u"/tmp/a.png"_s},
                           {CorvexNewFilePathKey, qint64(5)},
                           {CorvexFileAttributesKey, u"not a dictionary"_s},
                           {CorvexBookmarkDataKey, PropertyList::nullMarker()}};
    ScreenshotInfo info = ScreenshotInfo::initWithNotificationDictionary(dictionary);
    EXPECT_EQ(info.filePath(), u"/tmp/a.png"_s);
    EXPECT_FALSE(info.targetFilePath().has_value());
    EXPECT_FALSE(info.fileAttributes().has_value());
    EXPECT_FALSE(info.bookmarkData().has_value());
    EXPECT_EQ(info.screenNumber(), 0); // no "screenNum"

    dictionary.insert(CorvexFileAttributesKey, PropertyList::nullMarker());
    dictionary.insert(CorvexBookmarkDataKey, u"text, not data"_s);
    info = ScreenshotInfo::initWithNotificationDictionary(dictionary);
    EXPECT_FALSE(info.fileAttributes().has_value());
    EXPECT_FALSE(info.bookmarkData().has_value());
}

TEST(ScreenshotInfoDictionary, ScreenNumberIsReadAsAnInteger)
{
    const auto screen = [](const QVariant &value) {
        return ScreenshotInfo::initWithNotificationDictionary({{CorvexScreenNumberKey, value}})
            .screenNumber();
    };
    EXPECT_EQ(screen(qint64(3)), 3);
    EXPECT_EQ(screen(2.9), 2);
    EXPECT_EQ(screen(u" 4th"_s), 4);
    EXPECT_EQ(screen(u"screen"_s), 0);
    EXPECT_EQ(screen(PropertyList::nullMarker()), 0);
}

TEST(ScreenshotInfoDictionary, AbsentValuesGoOutAsTheNullMarkerAndTheTargetStaysHome)
{
    QVariantMap in{{CorvexFilePathKey, u"/tmp/b.png"_s},
                   {CorvexScreenNumberKey, qint64(2)},
                   {CorvexNewFilePathKey, u"/tmp/c.png"_s},
                   {CorvexBookmarkDataKey, PropertyList::nullMarker()}};
    const ScreenshotInfo info = ScreenshotInfo::initWithNotificationDictionary(in);
    ASSERT_EQ(info.targetFilePath(), u"/tmp/c.png"_s);

    const QVariantMap out = info.notificationDictionary();
    EXPECT_EQ(out.keys(), QStringList({CorvexBookmarkDataKey, CorvexFileAttributesKey, CorvexFilePathKey,
                                       CorvexScreenNumberKey}));
    EXPECT_TRUE(PropertyList::isNullMarker(out.value(CorvexBookmarkDataKey)));
    EXPECT_TRUE(PropertyList::isNullMarker(out.value(CorvexFileAttributesKey)));
    EXPECT_TRUE(PropertyList::equal(out.value(CorvexScreenNumberKey), qint64(2)));

    // Through the wire format and back: everything but the target survives.
    const QVariant wire = PropertyList::parse(PropertyList::serialize(out, PropertyList::Format::Binary));
    ScreenshotInfo back = ScreenshotInfo::initWithNotificationDictionary(wire.toMap());
    EXPECT_FALSE(back.targetFilePath().has_value());
    back.setTargetFilePath(info.targetFilePath());
    EXPECT_EQ(back, info);
}

} // namespace
