// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class UKFileWatcherDelegate;

// The notifications a file watcher posts on the workspace notification centre (NotificationCenter::
// workspaceCenter()), with the watcher as the object and the watched path under "path" in the user info.
inline const QString UKKQueueFileRenamedNotification = QStringLiteral("UKKQueueFileRenamedNotification");
inline const QString UKKQueueFileWrittenToNotification = QStringLiteral("UKKQueueFileWrittenToNotification");
inline const QString UKKQueueFileDeletedNotification = QStringLiteral("UKKQueueFileDeletedNotification");
inline const QString UKKQueueFileAttributesChangedNotification =
    QStringLiteral("UKKQueueFileAttributesChangedNotification");
inline const QString UKKQueueFileSizeIncreasedNotification =
    QStringLiteral("UKKQueueFileSizeIncreasedNotification");
inline const QString UKKQueueFileLinkCountChangedNotification =
    QStringLiteral("UKKQueueFileLinkCountChangedNotification");
inline const QString UKKQueueFileAccessRevocationNotification =
    QStringLiteral("UKKQueueFileAccessRevocationNotification");
inline const QString UKFileWatcherPathKey = QStringLiteral("path");

// What every file watcher offers: watching and unwatching paths, and a delegate told about each change.
class UKFileWatcher
{
public:
    virtual ~UKFileWatcher() = default;

    // Starts watching the path (with the watcher's default choice of changes).
    virtual void addPath(const QString &path) = 0;
    // Stops watching the path; a path that is not watched is ignored.
    virtual void removePath(const QString &path) = 0;

    // The delegate is not owned; clear it before destroying it.
    virtual UKFileWatcherDelegate *delegate() const = 0;
    virtual void setDelegate(UKFileWatcherDelegate *delegate) = 0;
};
