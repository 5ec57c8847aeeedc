// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/Inotify.h"
#include "watching/UKKQueue.h"
#include "watching/UKKQueue_p.h"

#include "watching/NotificationCenter.h"
#include "watching/UKMainThreadProxy.h"

#include <QVariantMap>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <optional>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

struct PostingOrder
{
    quint32 flag;
    const QString &name;
};

// The order in which the notifications of one change are posted.
const PostingOrder kPostingOrder[] = {
    {UKKQueue::NOTE_RENAME, UKKQueueFileRenamedNotification},
    {UKKQueue::NOTE_WRITE, UKKQueueFileWrittenToNotification},
    {UKKQueue::NOTE_DELETE, UKKQueueFileDeletedNotification},
    {UKKQueue::NOTE_ATTRIB, UKKQueueFileAttributesChangedNotification},
    {UKKQueue::NOTE_EXTEND, UKKQueueFileSizeIncreasedNotification},
    {UKKQueue::NOTE_LINK, UKKQueueFileLinkCountChangedNotification},
    {UKKQueue::NOTE_REVOKE, UKKQueueFileAccessRevocationNotification},
};

void logLine(const char *text)
{
    std::fprintf(stderr, "%s\n", text);
    std::fflush(stderr);
}

bool sameTime(const timespec &a, const timespec &b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool namesFile(const QByteArray &nativePath, const struct stat &known, struct stat *now)
{
    return stat(nativePath.constData(), now) == 0 && now->st_dev == known.st_dev &&
           now->st_ino == known.st_ino;
}

} // namespace

UKKQueuePrivate::~UKKQueuePrivate()
{
    if (wakeFD >= 0)
        close(wakeFD);
}

void UKKQueuePrivate::addEntryLocked(UKKQueueEntry entry, const struct stat *status)
{
    UKKQueueWatchedFile &file = files[entry.wd];
    if (file.entries == 0 && status) {
        file.identityKnown = true;
        file.status = *status;
    }
    ++file.entries;
    entry.id = nextEntryId++;
    entries.append(std::move(entry));
}

int UKKQueuePrivate::releaseWatchLocked(const UKKQueueEntry &entry)
{
    const auto file = files.find(entry.wd);
    if (entry.wd < 0 || file == files.end())
        return -1;
    if (--file->entries > 0)
        return -1;
    files.erase(file);
    return entry.wd;
}

void UKKQueuePrivate::watcherThread()
{
    pollfd waits[2] = {{inotify->descriptor(), POLLIN, 0}, {wakeFD, POLLIN, 0}};
    alignas(inotify_event) char buffer[64 * 1024];
    while (keepThreadRunning) {
        const int ready = poll(waits, 2, WaitTimeoutMilliseconds);
        if (ready < 1 || !keepThreadRunning)
            continue;
        if (waits[1].revents & POLLIN) {
            quint64 count = 0;
            [[maybe_unused]] const ssize_t drained = read(wakeFD, &count, sizeof count);
        }
        if (!(waits[0].revents & POLLIN))
            continue;
        const ssize_t length = read(inotify->descriptor(), buffer, sizeof buffer);
        if (length > 0)
            processEvents(buffer, size_t(length));
    }
    threadFinished = true;
    UKMainThreadProxy::conditionChanged();
}

void UKKQueuePrivate::processEvents(const char *buffer, size_t length)
{
    QList<int> order;
    QHash<int, UKKQueueRawChange> changes;
    QList<int> dropped;
    Inotify::forEach(buffer, length, [&](const inotify_event &event) {
        if (event.mask & IN_Q_OVERFLOW) {
            logLine("UKKQueue: the kernel's event queue overflowed; some changes were not reported");
            return;
        }
        if (event.mask & IN_IGNORED) {
            dropped.append(event.wd);
            return;
        }
        if (!changes.contains(event.wd))
            order.append(event.wd);
        UKKQueueRawChange &change = changes[event.wd];
        if (event.len == 0) {
            change.mask |= event.mask;
        } else if (event.mask & (IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO)) {
            change.entriesChanged = true;
            change.subfoldersChanged = change.subfoldersChanged || (event.mask & IN_ISDIR);
        }
    });

    QList<UKKQueueDelivery> deliveries;
    for (const int wd : std::as_const(order))
        deliveries += interpret(wd, changes.value(wd));

    if (!dropped.isEmpty()) {
        // The kernel has dropped these watches (file deleted, file system unmounted, or removed by us): the
        // entries stay listed until removed, but no longer own a watch.
        std::lock_guard lock(mutex);
        for (const int wd : std::as_const(dropped)) {
            files.remove(wd);
            for (UKKQueueEntry &entry : entries) {
                if (entry.wd == wd)
                    entry.wd = -1;
            }
        }
    }
    deliver(deliveries);
}

QList<UKKQueueDelivery> UKKQueuePrivate::interpret(int wd, const UKKQueueRawChange &change)
{
    QList<UKKQueueEntry> sharing;
    UKKQueueWatchedFile before;
    {
        std::lock_guard lock(mutex);
        const auto file = files.constFind(wd);
        if (file == files.cend())
            return {};
        before = *file;
        for (const UKKQueueEntry &entry : std::as_const(entries)) {
            if (entry.wd == wd)
                sharing.append(entry);
        }
    }

    // Which entries' paths still name the file, and its status now (looked at without the lock held).
    QList<bool> named(sharing.size(), false);
    std::optional<struct stat> now;
    if (before.identityKnown) {
        for (qsizetype i = 0; i < sharing.size(); ++i) {
            struct stat status
            {
            };
            named[i] = namesFile(sharing.at(i).nativePath, before.status, &status);
            if (named[i] && !now)
                now = status;
        }
    }

    const quint32 raw = change.mask;
    quint32 common = 0;
    if (raw & IN_MOVE_SELF)
        common |= UKKQueue::NOTE_RENAME;
    if ((raw & IN_MODIFY) || change.entriesChanged)
        common |= UKKQueue::NOTE_WRITE;
    if (change.subfoldersChanged)
        common |= UKKQueue::NOTE_LINK;
    if (raw & IN_UNMOUNT)
        common |= UKKQueue::NOTE_REVOKE;
    if ((raw & IN_MODIFY) && now && now->st_size > before.status.st_size)
        common |= UKKQueue::NOTE_EXTEND;

    // An attribute event with the file still in view: a link-count change, other attribute changes, or both.
    quint32 attributeFlags = UKKQueue::NOTE_ATTRIB;
    if (now) {
        const struct stat &old = before.status;
        const bool linksChanged = now->st_nlink != old.st_nlink;
        const bool othersChanged = now->st_mode != old.st_mode || now->st_uid != old.st_uid ||
                                   now->st_gid != old.st_gid || !sameTime(now->st_atim, old.st_atim) ||
                                   (!(raw & IN_MODIFY) && !sameTime(now->st_mtim, old.st_mtim));
        attributeFlags = (linksChanged ? quint32(UKKQueue::NOTE_LINK) : 0u) |
                         (othersChanged || !linksChanged ? quint32(UKKQueue::NOTE_ATTRIB) : 0u);
    }

    QList<UKKQueueDelivery> deliveries;
    std::lock_guard lock(mutex);
    const auto file = files.find(wd);
    if (file == files.end())
        return {};
    if (now)
        file->status = *now;
    for (qsizetype i = 0; i < sharing.size(); ++i) {
        const auto entry = std::find_if(entries.begin(), entries.end(),
                                        [&](const UKKQueueEntry &e) { return e.id == sharing.at(i).id; });
        if (entry == entries.end())
            continue;
        quint32 flags = common;
        bool deleted = false;
        if (raw & IN_DELETE_SELF) {
            deleted = true;
            if (raw & IN_ATTRIB)
                flags |= UKKQueue::NOTE_LINK;
        } else if (raw & IN_ATTRIB) {
            if (before.identityKnown && !named.at(i) && !entry->movedAway && !(raw & IN_MOVE_SELF)) {
                // Its path lost the file without a rename: unlinked (or replaced) while still open elsewhere.
                deleted = true;
                flags |= UKKQueue::NOTE_LINK;
            } else {
                flags |= attributeFlags;
            }
        }
        if (deleted && !entry->deleteReported) {
            flags |= UKKQueue::NOTE_DELETE;
            entry->deleteReported = true;
        }
        if (named.at(i))
            entry->movedAway = false;
        else if (raw & IN_MOVE_SELF)
            entry->movedAway = true;
        flags &= entry->mask;
        if (flags)
            deliveries.append({entry->id, entry->path, flags});
    }
    return deliveries;
}

void UKKQueuePrivate::deliver(const QList<UKKQueueDelivery> &deliveries)
{
    for (const UKKQueueDelivery &delivery : deliveries) {
        if (!keepThreadRunning)
            return;
        {
            // An entry removed since its event was read is not told any more.
            std::lock_guard lock(mutex);
            if (std::none_of(entries.cbegin(), entries.cend(),
                             [&](const UKKQueueEntry &entry) { return entry.id == delivery.entryId; }))
                continue;
        }
        try {
            for (const PostingOrder &kind : kPostingOrder) {
                if (delivery.flags & kind.flag)
                    postNotification(kind.name, delivery.path);
            }
        } catch (const std::exception &exception) {
            std::fprintf(stderr, "Error in UKKQueue watcherThread: %s\n", exception.what());
        } catch (...) {
            logLine("Error in UKKQueue watcherThread: unknown exception");
        }
    }
}

void UKKQueuePrivate::postNotification(const QString &name, const QString &path)
{
    std::shared_ptr<DelegateProxy> proxy;
    UKKQueue *watcher = nullptr;
    {
        std::lock_guard lock(mutex);
        proxy = delegateProxy;
        watcher = q;
    }
    if (proxy)
        proxy->perform(&UKFileWatcherDelegate::watcher, static_cast<UKFileWatcher *>(watcher), name, path);
    {
        std::lock_guard lock(mutex);
        if (delegateProxy && !alwaysNotify)
            return;
    }
    NotificationCenter::workspaceCenter().post(name, watcher, QVariantMap{{UKFileWatcherPathKey, path}});
}
