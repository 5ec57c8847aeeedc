// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "watching/UKFileWatcher.h"

#include <QList>
#include <QString>
#include <memory>
#include <mutex>

class Inotify;

// A file watcher that subscribes to changes of whole folders: whenever something in a watched folder changes
// (an entry added, removed, renamed, written or given new attributes) or the folder itself changes, it posts
// "UKKQueueFileWrittenToNotification" for the folder's path on the workspace notification centre and then
// tells its delegate directly (no main-thread hand-off). Changes that arrive together are reported once.
//
// The watcher reports on the thread it was made on, from that thread's event loop.
class UKFNSubscribeFileWatcher final : public UKFileWatcher
{
public:
    UKFNSubscribeFileWatcher();
    // Unsubscribes every path.
    ~UKFNSubscribeFileWatcher() override;
    UKFNSubscribeFileWatcher(const UKFNSubscribeFileWatcher &) = delete;
    UKFNSubscribeFileWatcher &operator=(const UKFNSubscribeFileWatcher &) = delete;

    // The process-wide instance, made on the first call (on that caller's thread, which then reports).
    static UKFNSubscribeFileWatcher *sharedFileWatcher();

    // Subscribes to changes of the path (a folder, or a file). Adding a path again replaces its earlier
    // subscription. A path that cannot be subscribed to is reported on stderr with the error number.
    void addPath(const QString &path) override;
    // Ends the subscription of the path; an unknown path is ignored.
    void removePath(const QString &path) override;

    // The paths subscribed to, in the order added.
    QStringList subscribedPaths() const;

    UKFileWatcherDelegate *delegate() const override;
    void setDelegate(UKFileWatcherDelegate *delegate) override;

private:
    struct Subscription
    {
        QString path;
        int wd = -1;
    };
    void readChanges();
    void sendDelegateMessage(const QString &path);
    void unsubscribeLocked(const Subscription &subscription);

    std::unique_ptr<Inotify> mInotify;
    mutable std::mutex mMutex;
    QList<Subscription> subscriptions;
    UKFileWatcherDelegate *mDelegate = nullptr;
};
