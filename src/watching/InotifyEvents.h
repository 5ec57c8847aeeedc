// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <sys/inotify.h>
#include <unistd.h>

// Walking the records the kernel hands out on an inotify descriptor.
namespace InotifyEvents {

// Hands every whole event record in the bytes read from an inotify descriptor to handler(const inotify_event
// &).
template <class Handler> void forEach(const char *buffer, std::size_t length, Handler &&handler)
{
    for (std::size_t offset = 0; offset + sizeof(inotify_event) <= length;) {
        const auto *event = reinterpret_cast<const inotify_event *>(buffer + offset);
        offset += sizeof(inotify_event) + event->len;
        handler(*event);
    }
}

// Reads a non-blocking inotify descriptor until nothing is left, handing every event to the handler.
template <class Handler> void readAll(int descriptor, Handler &&handler)
{
    alignas(inotify_event) char buffer[16 * 1024];
    for (;;) {
        const ssize_t length = ::read(descriptor, buffer, sizeof buffer);
        if (length <= 0)
            return;
        forEach(buffer, std::size_t(length), handler);
    }
}

} // namespace InotifyEvents
