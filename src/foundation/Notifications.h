// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The distributed notifications that the application and the agent exchange, and the keys of the screenshot
// dictionary that "CorvexScreenshotMatched" carries. All travel through DistributedNotificationCenter.

// The agent (or the application, for a screenshot named on its command line) announces a screenshot for the
// renaming window. User info: the screenshot dictionary (see the keys below and ScreenshotInfo).
inline const QString CorvexScreenshotMatchedNotification = QStringLiteral("CorvexScreenshotMatched");
// The application asks the agent to show or hide its status (tray) icon. No user info.
inline const QString CorvexShowStatusMenuNotification = QStringLiteral("CorvexShowStatusMenu");
inline const QString CorvexHideStatusMenuNotification = QStringLiteral("CorvexHideStatusMenu");
// The application has synchronised its preferences after a change the agent cares about. No user info.
inline const QString CorvexDefaultsChangedNotification = QStringLiteral("CorvexDefaultsChanged");
// One log message of the application, for the agent's log file. User info: the message dictionary.
inline const QString CorvexAppLogNotification = QStringLiteral("CorvexAppLog");
// The agent has archived its log file; the log window reopens it. No user info.
inline const QString CorvexDidArchiveLogFileNotification = QStringLiteral("CorvexDidArchiveLogFile");

// Keys of the screenshot dictionary.
inline const QString CorvexFilePathKey = QStringLiteral("filePath");      // string
inline const QString CorvexScreenNumberKey = QStringLiteral("screenNum"); // integer
inline const QString CorvexFileAttributesKey =
    QStringLiteral("fileAttributes");                                        // dictionary or the null marker
inline const QString CorvexBookmarkDataKey = QStringLiteral("bookmarkData"); // data or the null marker
inline const QString CorvexNewFilePathKey = QStringLiteral("newFilePath");   // string, optional
