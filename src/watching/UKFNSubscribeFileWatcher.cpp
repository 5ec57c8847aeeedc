// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/UKFNSubscribeFileWatcher.h"
#include "watching/Inotify.h"

#include "watching/NotificationCenter.h"
#include "watching/UKFileWatcherDelegate.h"

#include <QFile>
#include <QVariantMap>
#include <cerrno>
#include <cstdio>

namespace {

constexpr quint32 SubscriptionMask = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE |
                                     IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;

} // namespace

UKFNSubscribeFileWatcher::UKFNSubscribeFileWatcher()
    : mInotify(std::make_unique<Inotify>([this] { readChanges(); }))
{
}

UKFNSubscribeFileWatcher::~UKFNSubscribeFileWatcher()
{
    std::lock_guard lock(mMutex);
    for (const Subscription &subscription : std::as_const(subscriptions))
        unsubscribeLocked(subscription);
    subscriptions.clear();
}

UKFNSubscribeFileWatcher *UKFNSubscribeFileWatcher::sharedFileWatcher()
{
    static UKFNSubscribeFileWatcher *shared = new UKFNSubscribeFileWatcher;
    return shared;
}

void UKFNSubscribeFileWatcher::addPath(const QString &path)
{
    std::unique_lock lock(mMutex);
    const int wd = mInotify->addWatch(path, SubscriptionMask);
    if (wd < 0) {
        const long errorNumber = errno;
        lock.unlock();
        std::fprintf(stderr, "UKFNSubscribeFileWatcher addPath: %s failed due to error ID=%ld.\n",
                     path.toLocal8Bit().constData(), errorNumber);
        std::fflush(stderr);
        return;
    }
    const auto existing = std::find_if(subscriptions.begin(), subscriptions.end(),
                                       [&](const Subscription &s) { return s.path == path; });
    if (existing != subscriptions.end()) {
        // The same path twice: the kernel handed back the same watch, which stays.
        existing->wd = wd;
        return;
    }
    subscriptions.append({path, wd});
}

void UKFNSubscribeFileWatcher::removePath(const QString &path)
{
    std::lock_guard lock(mMutex);
    const auto found = std::find_if(subscriptions.begin(), subscriptions.end(),
                                    [&](const Subscription &s) { return s.path == path; });
    if (found == subscriptions.end())
        return;
    const Subscription subscription = *found;
    subscriptions.erase(found);
    unsubscribeLocked(subscription);
}

void UKFNSubscribeFileWatcher::unsubscribeLocked(const Subscription &subscription)
{
    // Two paths of one folder share its kernel watch: it goes with the last of them.
    const bool shared = std::any_of(subscriptions.cbegin(), subscriptions.cend(),
                                    [&](const Subscription &s) { return s.wd == subscription.wd; });
    if (!shared)
        mInotify->removeWatch(subscription.wd);
}

QStringList UKFNSubscribeFileWatcher::subscribedPaths() const
{
    std::lock_guard lock(mMutex);
    QStringList paths;
    for (const Subscription &subscription : subscriptions)
        paths.append(subscription.path);
    return paths;
}

UKFileWatcherDelegate *UKFNSubscribeFileWatcher::delegate() const
{
    std::lock_guard lock(mMutex);
    return mDelegate;
}

void UKFNSubscribeFileWatcher::setDelegate(UKFileWatcherDelegate *delegate)
{
    std::lock_guard lock(mMutex);
    mDelegate = delegate;
}

void UKFNSubscribeFileWatcher::readChanges()
{
    QList<int> changed;
    QList<int> dropped;
    mInotify->readAll([&](const inotify_event &event) {
        if (event.mask & IN_IGNORED)
            dropped.append(event.wd);
        else if (event.wd >= 0 && !changed.contains(event.wd))
            changed.append(event.wd);
    });

    QStringList paths;
    {
        std::lock_guard lock(mMutex);
        for (const Subscription &subscription : std::as_const(subscriptions)) {
            if (changed.contains(subscription.wd))
                paths.append(subscription.path);
        }
        // A watch the kernel dropped (the folder was deleted): its subscriptions stay but hear nothing more.
        for (Subscription &subscription : subscriptions) {
            if (dropped.contains(subscription.wd))
                subscription.wd = -1;
        }
    }
    for (const QString &path : std::as_const(paths))
        sendDelegateMessage(path);
}

void UKFNSubscribeFileWatcher::sendDelegateMessage(const QString &path)
{
    NotificationCenter::workspaceCenter().post(UKKQueueFileWrittenToNotification, this,
                                               QVariantMap{{UKFileWatcherPathKey, path}});
    if (UKFileWatcherDelegate *target = delegate())
        target->watcher(this, UKKQueueFileWrittenToNotification, path);
}
