// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariantMap>
#include <optional>

// The record of one screenshot file as it travels between the agent and the application: its path, the
// screen it was taken on, its file attributes and a bookmark as read when the record was made, and the path
// it should be given. A value type: copies share nothing a caller could change.
//
// Absent values: fileAttributes, bookmarkData and targetFilePath are std::optional (empty = absent). A record
// built from a dictionary without "filePath" has a null filePath.
class ScreenshotInfo
{
public:
    // An empty record: no path, screen 0, nothing else.
    ScreenshotInfo() = default;

    // Makes a record for the file: reads its attributes and makes a bookmark of it. Either failing is logged
    // as an error and leaves that value absent; the record is always made.
    ScreenshotInfo(const QString &filePath, qint64 screenNumber);

    // Makes a record from the user info of "CorvexScreenshotMatched". Values of the wrong type are ignored
    // and leave their field absent ("screenNum" missing or unreadable gives 0); nothing fails.
    static ScreenshotInfo initWithNotificationDictionary(const QVariantMap &dictionary);

    // The dictionary for "CorvexScreenshotMatched", with exactly the keys "filePath", "fileAttributes",
    // "screenNum" and "bookmarkData" (the null marker standing for an absent value). The target path is not
    // part of it.
    QVariantMap notificationDictionary() const;

    // The path the bookmark finds the file at now, or nothing when there is no bookmark or it finds nothing.
    std::optional<QString> filePathByResolvingBookmarkData() const;

    QString filePath() const { return mFilePath; }
    qint64 screenNumber() const { return mScreenNumber; }
    std::optional<QVariantMap> fileAttributes() const { return mFileAttributes; }
    std::optional<QByteArray> bookmarkData() const { return mBookmarkData; }
    std::optional<QString> targetFilePath() const { return mTargetFilePath; }

    // Setters; giving the value already held changes nothing.
    void setFilePath(const QString &filePath);
    void setTargetFilePath(const std::optional<QString> &targetFilePath);

    bool operator==(const ScreenshotInfo &other) const;

private:
    QString mFilePath;
    qint64 mScreenNumber = 0;
    std::optional<QVariantMap> mFileAttributes;
    std::optional<QByteArray> mBookmarkData;
    std::optional<QString> mTargetFilePath;
};
