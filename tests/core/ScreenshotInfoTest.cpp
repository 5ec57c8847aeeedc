// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ScreenshotInfo.h"
#include "logging/DDLog.h"
#include "logging/DDLogMessage.h"
#include "logging/DDLogger.h"
#include "platform/FileAttributes.h"
#include "foundation/Notifications.h"
#include "platform/PropertyList.h"
#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>
#include <mutex>

namespace {

// Keeps the error messages logged while it is installed.
class ErrorCapture
{
public:
    ErrorCapture() { DDLog::addLogger(mLogger); }
    ~ErrorCapture() { DDLog::removeLogger(mLogger), DDLog::flushLog(); }
    QStringList errors() const
    {
        DDLog::flushLog();
        std::lock_guard lock(mLogger->mutex);
        return mLogger->errors;
    }

private:
    struct Logger : DDLogger
    {
        void logMessage(const DDLogMessage &message) override
        {
            std::lock_guard lock(mutex);
            if (message.logFlag() == DDLogFlagError)
                errors.append(message.logMsg());
        }
        std::mutex mutex;
        QStringList errors;
    };
    std::shared_ptr<Logger> mLogger = std::make_shared<Logger>();
};

QString makeShot(const QString &name)
{
    return corvex::test::writeFile(corvex::test::home() + QStringLiteral("/Desktop/") + name,
                                   "not really a PNG");
}

TEST(ScreenshotInfoFromFile, ExistingFileGetsAttributesAndAWorkingBookmark)
{
    ErrorCapture capture;
    const QString path = makeShot(QStringLiteral("Screen Shot 1.png"));
    const ScreenshotInfo info(path, 2);
    EXPECT_EQ(info.filePath(), path);
    EXPECT_EQ(info.screenNumber(), 2);
    ASSERT_TRUE(info.fileAttributes().has_value());
    EXPECT_EQ(info.fileAttributes()->value(FileAttributes::SizeKey).toLongLong(), 16);
    EXPECT_TRUE(info.fileAttributes()->value(FileAttributes::CreationDateKey).toDateTime().isValid());
    ASSERT_TRUE(info.bookmarkData().has_value());
    EXPECT_FALSE(info.targetFilePath().has_value());
    EXPECT_TRUE(capture.errors().isEmpty());

    // The bookmark follows the file through a rename.
    const QString renamed = QFileInfo(path).path() + QStringLiteral("/renamed.png");
    ASSERT_TRUE(QFile::rename(path, renamed));
    EXPECT_EQ(info.filePathByResolvingBookmarkData(), renamed);
}

TEST(ScreenshotInfoFromFile, MissingFileIsStillARecordWithTwoErrorLines)
{
    ErrorCapture capture;
    const QString path = corvex::test::home() + QStringLiteral("/Desktop/gone.png");
    const ScreenshotInfo info(path, 1);
    EXPECT_EQ(info.filePath(), path);
    EXPECT_EQ(info.screenNumber(), 1);
    EXPECT_FALSE(info.fileAttributes().has_value());
    EXPECT_FALSE(info.bookmarkData().has_value());
    EXPECT_FALSE(info.filePathByResolvingBookmarkData().has_value());
    const QString reason =
        QStringLiteral("The file “gone.png” couldn’t be opened because there is no such file.");
    EXPECT_EQ(capture.errors(),
              QStringList({QStringLiteral("Could not get file attributes for %1.  %2").arg(path, reason),
                           QStringLiteral("Could not get bookmark data for %1.  %2").arg(path, reason)}));
}

TEST(ScreenshotInfoDictionary, ValuesOfTheWrongTypeLeaveFieldsAbsent)
{
    QVariantMap dictionary{{CorvexFilePathKey, QStringLiteral("/tmp/a.png")},
                           {CorvexNewFilePathKey, qint64(5)},
                           {CorvexFileAttributesKey, QStringLiteral("not a dictionary")},
                           {CorvexBookmarkDataKey, PropertyList::nullMarker()}};
    ScreenshotInfo info = ScreenshotInfo::initWithNotificationDictionary(dictionary);
    EXPECT_EQ(info.filePath(), QStringLiteral("/tmp/a.png"));
    EXPECT_FALSE(info.targetFilePath().has_value());
    EXPECT_FALSE(info.fileAttributes().has_value());
    EXPECT_FALSE(info.bookmarkData().has_value());
    EXPECT_EQ(info.screenNumber(), 0); // no "screenNum"

    dictionary.insert(CorvexFileAttributesKey, PropertyList::nullMarker());
    dictionary.insert(CorvexBookmarkDataKey, QStringLiteral("text, not data"));
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
    EXPECT_EQ(screen(QStringLiteral(" 4th")), 4);
    EXPECT_EQ(screen(QStringLiteral("screen")), 0);
    EXPECT_EQ(screen(PropertyList::nullMarker()), 0);
}

TEST(ScreenshotInfoDictionary, AbsentValuesGoOutAsTheNullMarkerAndTheTargetStaysHome)
{
    QVariantMap in{{CorvexFilePathKey, QStringLiteral("/tmp/b.png")},
                   {CorvexScreenNumberKey, qint64(2)},
                   {CorvexNewFilePathKey, QStringLiteral("/tmp/c.png")},
                   {CorvexBookmarkDataKey, PropertyList::nullMarker()}};
    const ScreenshotInfo info = ScreenshotInfo::initWithNotificationDictionary(in);
    ASSERT_EQ(info.targetFilePath(), QStringLiteral("/tmp/c.png"));

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

TEST(ScreenshotInfoDictionary, FileRecordSurvivesTheWireExactly)
{
    const ScreenshotInfo info(makeShot(QStringLiteral("wire.png")), 1);
    const QVariantMap out = info.notificationDictionary();
    const QVariant wire = PropertyList::parse(PropertyList::serialize(out, PropertyList::Format::Binary));
    const ScreenshotInfo back = ScreenshotInfo::initWithNotificationDictionary(wire.toMap());
    EXPECT_EQ(back, info);
    EXPECT_TRUE(PropertyList::equal(back.notificationDictionary(), out));
    EXPECT_EQ(back.filePathByResolvingBookmarkData(), info.filePath());
}

TEST(ScreenshotInfoSetters, SameValueKeepsTheHeldStringAndNewValuesReplaceIt)
{
    ScreenshotInfo info =
        ScreenshotInfo::initWithNotificationDictionary({{CorvexFilePathKey, QStringLiteral("/a")}});
    const QString held = info.filePath();
    info.setFilePath(QString::fromUtf8("/a")); // equal, but another buffer
    EXPECT_EQ(info.filePath().constData(), held.constData());
    info.setFilePath(QStringLiteral("/b"));
    EXPECT_EQ(info.filePath(), QStringLiteral("/b"));

    info.setTargetFilePath(QStringLiteral("/t"));
    const QString target = *info.targetFilePath();
    info.setTargetFilePath(QString::fromUtf8("/t"));
    EXPECT_EQ(info.targetFilePath()->constData(), target.constData());
    info.setTargetFilePath(std::nullopt);
    EXPECT_FALSE(info.targetFilePath().has_value());
}

} // namespace
