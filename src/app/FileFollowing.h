// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

// Watches one file with the shared file watcher for rename and delete, and reports either on the main thread
// (the watcher posts on its own thread). At most one path is watched at a time.
class FileFollowing : public QObject
{
    Q_OBJECT

public:
    // The watcher mask: rename (0x20) and delete (0x01).
    static constexpr quint32 WatchMask = 0x21;

    explicit FileFollowing(QObject *parent = nullptr);
    ~FileFollowing() override;

    // Watches the path instead of the one watched now. An empty path is ignored.
    void startWatching(const QString &path);
    // Stops watching the path when it is the one watched.
    void stopWatching(const QString &path);
    QString watchedPath() const { return mWatchedPath; }

Q_SIGNALS:
    void fileDeleted(const QString &path);
    void fileRenamed(const QString &path);

private:
    QString mWatchedPath;
    bool mWatching = false;
    quint64 mDeleteObserver = 0;
    quint64 mRenameObserver = 0;
};
