// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FileFollowing.h"

#include "watching/NotificationCenter.h"
#include "watching/UKKQueue.h"

#include <QPointer>

FileFollowing::FileFollowing(QObject *parent) : QObject(parent)
{
    // The watcher posts on its own thread; the signals are queued to the main thread, where the window's
    // record of its path is read and written.
    NotificationCenter &center = NotificationCenter::workspaceCenter();
    const auto relay = [this](void (FileFollowing::*signal)(const QString &)) {
        return [this, signal](const NotificationCenter::Notification &notification) {
            const QString path = notification.userInfo.value(UKFileWatcherPathKey).toString();
            QMetaObject::invokeMethod(
                this,
                [this, signal, path] {
                    Q_EMIT(this->*signal)
                    (path);
                },
                Qt::QueuedConnection);
        };
    };
    mDeleteObserver = center.addObserver(UKKQueueFileDeletedNotification, nullptr, this,
                                         relay(&FileFollowing::fileDeleted));
    mRenameObserver = center.addObserver(UKKQueueFileRenamedNotification, nullptr, this,
                                         relay(&FileFollowing::fileRenamed));
}

FileFollowing::~FileFollowing()
{
    stopWatching(mWatchedPath);
    NotificationCenter &center = NotificationCenter::workspaceCenter();
    if (mDeleteObserver)
        center.removeObserver(mDeleteObserver);
    if (mRenameObserver)
        center.removeObserver(mRenameObserver);
}

void FileFollowing::startWatching(const QString &path)
{
    if (path.isEmpty())
        return;
    if (mWatching)
        stopWatching(mWatchedPath);
    if (UKKQueue *queue = UKKQueue::sharedFileWatcher())
        queue->addPathToQueueNotifyingAbout(path, WatchMask);
    mWatching = true;
    mWatchedPath = path;
}

void FileFollowing::stopWatching(const QString &path)
{
    if (!mWatching || path != mWatchedPath)
        return;
    if (UKKQueue *queue = UKKQueue::sharedFileWatcher())
        queue->removePathFromQueue(path);
    mWatching = false;
    mWatchedPath.clear();
}
