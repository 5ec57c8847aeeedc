// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <cstddef>
#include <functional>
#include <memory>
#include <sys/inotify.h>

class QSocketNotifier;

// An inotify descriptor of the kernel: non-blocking, not handed to child processes, closed with the object.
// Its events are read by its owner: from the event loop of the thread that made it, when made with a
// function to call once events are waiting, or from a thread of the owner's own through descriptor().
class Inotify
{
public:
    // A descriptor its owner polls itself.
    Inotify();
    // A descriptor whose owner is called from this thread's event loop whenever events are waiting; the
    // owner then reads them with readAll().
    explicit Inotify(std::function<void()> eventsWaiting);
    ~Inotify();
    Inotify(const Inotify &) = delete;
    Inotify &operator=(const Inotify &) = delete;

    // False when the kernel refused a descriptor; error() then tells why (an errno value).
    bool isValid() const { return mDescriptor >= 0; }
    int error() const { return mError; }
    int descriptor() const { return mDescriptor; }

    // Watches a path for the events of the mask; the watch descriptor, or -1 with errno set. Watching the
    // same file again gives its watch back, with the new mask.
    int addWatch(const QString &path, quint32 mask) const;
    // Ends a watch; false with errno set when the kernel had no such watch.
    bool removeWatch(int watch) const;

    using EventHandler = std::function<void(const inotify_event &)>;

    // Reads until nothing is waiting, handing every event to the handler.
    void readAll(const EventHandler &handler) const;

    // Hands every whole event record in bytes read from an inotify descriptor to the handler.
    static void forEach(const char *buffer, std::size_t length, const EventHandler &handler);

private:
    int mDescriptor = -1;
    int mError = 0;
    std::unique_ptr<QSocketNotifier> mNotifier;
};
