// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/CorvexError.h"
#include "watching/UKFileWatcher.h"

#include <QStringList>
#include <memory>

class UKKQueuePrivate;

// Watches individual files and folders and turns each change into notifications: the renamed, written-to,
// deleted, attributes-changed, size-increased, link-count-changed and access-revoked notifications (see
// UKFileWatcher.h), posted in that order when one change has several sides.
//
// The watcher waits for the kernel's file-change events (inotify) on a thread of its own, which sleeps while
// nothing happens. Without a delegate every change is posted on the workspace notification centre from that
// thread (its observers run there). With a delegate the delegate is told instead, on the main thread, while
// the watcher thread waits for it; setAlwaysNotify(true) makes the watcher post the notification as well,
// after the delegate. The path in each notification is the watched path exactly as it was added, also after
// the file has been renamed.
//
// How kernel events become notifications: a rename of the watched file (also a move into the Trash on the
// same file system) is a rename; its removal, or its replacement by another file, a delete; a write a write,
// and also a size increase when the file grew; a change of permissions, owner, times or extended attributes
// an attributes change; a new or removed hard link a link-count change; the file system being unmounted an
// access revocation. In a watched folder, entries coming and going are a write, and subfolders coming and
// going also a link-count change. Once the file has left its watched path, whether it grew can no longer be
// seen and a write is only a write.
class UKKQueue final : public UKFileWatcher
{
public:
    // The kinds of change, as the bits of the mask that clients pass.
    enum : quint32 {
        NOTE_DELETE = 0x01,
        NOTE_WRITE = 0x02,
        NOTE_EXTEND = 0x04,
        NOTE_ATTRIB = 0x08,
        NOTE_LINK = 0x10,
        NOTE_RENAME = 0x20,
        NOTE_REVOKE = 0x40,
    };
    // Rename, attributes, write and delete (43).
    static constexpr quint32 DefaultMask = NOTE_RENAME | NOTE_ATTRIB | NOTE_WRITE | NOTE_DELETE;

    // The process-wide watcher, made on the first call; its thread runs until the process ends. Null when the
    // kernel refused to make an event queue (too many open queues or files): then it stays null.
    static UKKQueue *sharedFileWatcher();

    // A watcher of one's own; null (with *error set) when the kernel refuses an event queue.
    static std::unique_ptr<UKKQueue> create(CorvexError *error = nullptr);

    // Stops the watcher thread (waiting for a delivery in progress to end) and drops every watch.
    ~UKKQueue() override;
    UKKQueue(const UKKQueue &) = delete;
    UKKQueue &operator=(const UKKQueue &) = delete;

    // Watches the path for the changes in the mask. Adding a path that is already watched watches it once
    // more (each entry notifies). Returns false, reporting nothing, when the path cannot be watched because
    // it is missing or not accessible; other failures (a file system that cannot be watched, the kernel's
    // limit on watches) also print a line on stderr. *error tells why.
    bool addPathToQueueNotifyingAbout(const QString &path, quint32 fflags, CorvexError *error = nullptr);
    // Watches the path for the default changes (rename, attributes, write, delete).
    bool addPathToQueue(const QString &path);
    void addPath(const QString &path) override;

    // Removes the first entry for the path (other entries for it go on); an unwatched path is ignored.
    void removePathFromQueue(const QString &path);
    void removePath(const QString &path) override;
    // Removes every entry.
    void removeAllPathsFromQueue();

    // The kernel event queue's descriptor.
    int queueFD() const;
    // The watched paths, in the order added, one per entry.
    QStringList watchedPaths() const;

    UKFileWatcherDelegate *delegate() const override;
    // Sets the delegate (not owned). A delegate call already queued for the previous delegate is dropped.
    void setDelegate(UKFileWatcherDelegate *delegate) override;

    bool alwaysNotify() const;
    void setAlwaysNotify(bool alwaysNotify);

    // Delivers one notification for the path: to the delegate on the main thread (waiting for it), then, when
    // there is no delegate or alwaysNotify is set, on the workspace notification centre on this thread.
    void postNotification(const QString &name, const QString &path);

    // "UKKQueue { watchedPaths = (...), alwaysNotify = YES|NO }".
    QString description() const;

private:
    UKKQueue();
    std::shared_ptr<UKKQueuePrivate> d;
};
