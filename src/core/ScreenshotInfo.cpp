// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ScreenshotInfo.h"

#include "foundation/Notifications.h"
#include "logging/Log.h"
#include "platform/Bookmark.h"
#include "platform/FileAttributes.h"
#include "platform/PropertyList.h"

namespace {

// An integer read the way a number object answers for its integer value: numbers are truncated, booleans
// are 0 or 1, a string gives its leading decimal integer (after blanks, with an optional sign), anything
// else 0.
qint64 integerValue(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::UShort:
        return value.toLongLong();
    case QMetaType::Double:
    case QMetaType::Float: {
        const double number = value.toDouble();
        if (!(number == number))
            return 0;
        if (number >= 9.2e18)
            return std::numeric_limits<qint64>::max();
        if (number <= -9.2e18)
            return std::numeric_limits<qint64>::min();
        return qint64(number);
    }
    case QMetaType::Bool:
        return value.toBool() ? 1 : 0;
    case QMetaType::QString: {
        const QString text = value.toString();
        qsizetype i = 0;
        while (i < text.size() && text.at(i).isSpace())
            ++i;
        const qsizetype start = i;
        if (i < text.size() && (text.at(i) == QLatin1Char('-') || text.at(i) == QLatin1Char('+')))
            ++i;
        while (i < text.size() && text.at(i) >= QLatin1Char('0') && text.at(i) <= QLatin1Char('9'))
            ++i;
        bool ok = false;
        const qint64 number = text.mid(start, i - start).toLongLong(&ok);
        return ok ? number : 0;
    }
    default:
        return 0;
    }
}

} // namespace

ScreenshotInfo::ScreenshotInfo(const QString &filePath, qint64 screenNumber)
    : mFilePath(filePath), mScreenNumber(screenNumber)
{
    CorvexError error;
    QVariantMap attributes = FileAttributes::attributesOfItemAtPath(mFilePath, &error);
    if (attributes.isEmpty())
        DDLogError(QStringLiteral("Could not get file attributes for %1.  %2")
                       .arg(mFilePath, error.localizedDescription()));
    else
        mFileAttributes = std::move(attributes);

    error = CorvexError();
    QByteArray bookmark = Bookmark::create(mFilePath, &error);
    if (bookmark.isEmpty())
        DDLogError(QStringLiteral("Could not get bookmark data for %1.  %2")
                       .arg(mFilePath, error.localizedDescription()));
    else
        mBookmarkData = std::move(bookmark);
}

ScreenshotInfo ScreenshotInfo::initWithNotificationDictionary(const QVariantMap &dictionary)
{
    ScreenshotInfo info;
    // The keys are read in this order: filePath, newFilePath, fileAttributes, screenNum, bookmarkData.
    info.mFilePath = dictionary.value(CorvexFilePathKey).toString();

    const QVariant target = dictionary.value(CorvexNewFilePathKey);
    if (target.metaType().id() == QMetaType::QString)
        info.mTargetFilePath = target.toString();

    const QVariant attributes = dictionary.value(CorvexFileAttributesKey);
    if (attributes.metaType().id() == QMetaType::QVariantMap)
        info.mFileAttributes = attributes.toMap();

    info.mScreenNumber = integerValue(dictionary.value(CorvexScreenNumberKey));

    const QVariant bookmark = dictionary.value(CorvexBookmarkDataKey);
    if (bookmark.metaType().id() == QMetaType::QByteArray)
        info.mBookmarkData = bookmark.toByteArray();
    return info;
}

QVariantMap ScreenshotInfo::notificationDictionary() const
{
    QVariantMap dictionary;
    dictionary.insert(CorvexFilePathKey, mFilePath.isNull() ? QString(QLatin1String("")) : mFilePath);
    dictionary.insert(CorvexFileAttributesKey,
                      mFileAttributes ? QVariant(*mFileAttributes) : PropertyList::nullMarker());
    dictionary.insert(CorvexScreenNumberKey, mScreenNumber);
    dictionary.insert(CorvexBookmarkDataKey,
                      mBookmarkData ? QVariant(*mBookmarkData) : PropertyList::nullMarker());
    return dictionary;
}

std::optional<QString> ScreenshotInfo::filePathByResolvingBookmarkData() const
{
    if (!mBookmarkData)
        return std::nullopt;
    // Resolution never asks the user anything and never mounts a volume; staleness is not looked at.
    return Bookmark::resolve(*mBookmarkData);
}

void ScreenshotInfo::setFilePath(const QString &filePath)
{
    if (filePath == mFilePath && filePath.isNull() == mFilePath.isNull())
        return;
    mFilePath = filePath;
}

void ScreenshotInfo::setTargetFilePath(const std::optional<QString> &targetFilePath)
{
    if (targetFilePath == mTargetFilePath)
        return;
    mTargetFilePath = targetFilePath;
}

bool ScreenshotInfo::operator==(const ScreenshotInfo &other) const
{
    const auto sameAttributes = [](const std::optional<QVariantMap> &a, const std::optional<QVariantMap> &b) {
        return a.has_value() == b.has_value() && (!a || PropertyList::equal(*a, *b));
    };
    return mFilePath == other.mFilePath && mScreenNumber == other.mScreenNumber &&
           sameAttributes(mFileAttributes, other.mFileAttributes) && mBookmarkData == other.mBookmarkData &&
           mTargetFilePath == other.mTargetFilePath;
}
