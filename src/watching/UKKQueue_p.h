// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "watching/UKFileWatcherDelegate.h"
#include "watching/UKMainThreadTargetProxy.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <atomic>
#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <thread>

class Inotify;
class UKKQueue;

// One watched path (an entry of watchedPaths). Several entries may share one kernel watch: the kernel keeps
// one watch per file, whatever the path it was reached by.
struct UKKQueueEntry
{
    quint64 id = 0;
    QString path;                // as the client gave it
    QByteArray nativePath;       // absolute, for looking at the file again
    quint32 mask = 0;            // the changes the client wants to hear about
    int wd = -1;                 // the kernel watch; -1 once the kernel dropped it
    bool movedAway = false;      // a rename was seen and the path no longer names the file
    bool deleteReported = false; // its deletion was already posted
};

// What is known about one watched file: how many entries use its kernel watch, and its status when last seen
// (to tell link-count changes from other attribute changes, and growth from other writes).
struct UKKQueueWatchedFile
{
    int entries = 0;
    bool identityKnown = false;
    struct stat status
    {
    };
};

// The kernel events of one read for one watch, merged.
struct UKKQueueRawChange
{
    quint32 mask = 0;               // inotify bits of events about the watched file itself
    bool entriesChanged = false;    // (a folder) entries came or went
    bool subfoldersChanged = false; // (a folder) subfolders came or went
};

struct UKKQueueDelivery
{
    quint64 entryId = 0;
    QString path;
    quint32 flags = 0;
};

class UKKQueuePrivate
{
public:
    using DelegateProxy = UKMainThreadTargetProxy<UKFileWatcherDelegate>;
    static constexpr int WaitTimeoutMilliseconds = 5000;

    UKKQueuePrivate() = default;
    ~UKKQueuePrivate();

    // The watcher thread's loop: waits (at most WaitTimeoutMilliseconds at a time) for kernel events or the
    // wake-up descriptor, reads and delivers, until keepThreadRunning is cleared; then closes the queue.
    void watcherThread();
    // Turns one read's worth of kernel events into deliveries and delivers them.
    void processEvents(const char *buffer, size_t length);
    QList<UKKQueueDelivery> interpret(int wd, const UKKQueueRawChange &change);
    void deliver(const QList<UKKQueueDelivery> &deliveries);
    void postNotification(const QString &name, const QString &path);
    // Registers the entry (the lock is held; its kernel watch is made).
    void addEntryLocked(UKKQueueEntry entry, const struct stat *status);
    // Takes the entry's share of its kernel watch; returns the watch to remove when it was the last one.
    int releaseWatchLocked(const UKKQueueEntry &entry);

    UKKQueue *q = nullptr;
    std::unique_ptr<Inotify> inotify;
    int wakeFD = -1;

    mutable std::mutex mutex; // guards everything below
    QList<UKKQueueEntry> entries;
    QHash<int, UKKQueueWatchedFile> files;
    quint64 nextEntryId = 1;
    UKFileWatcherDelegate *delegate = nullptr;
    std::shared_ptr<DelegateProxy> delegateProxy;
    bool alwaysNotify = false;

    std::atomic<bool> keepThreadRunning{true};
    std::atomic<bool> threadFinished{false};
    std::thread thread;
};
