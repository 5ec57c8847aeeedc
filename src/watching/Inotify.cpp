// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/Inotify.h"

#include <QFile>
#include <QSocketNotifier>
#include <cerrno>
#include <unistd.h>

Inotify::Inotify() : mDescriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), mError(mDescriptor < 0 ? errno : 0)
{
}

Inotify::Inotify(std::function<void()> eventsWaiting) : Inotify()
{
    if (mDescriptor < 0)
        return;
    mNotifier = std::make_unique<QSocketNotifier>(mDescriptor, QSocketNotifier::Read);
    QObject::connect(mNotifier.get(), &QSocketNotifier::activated, std::move(eventsWaiting));
}

Inotify::~Inotify()
{
    mNotifier.reset();
    if (mDescriptor >= 0)
        ::close(mDescriptor);
}

int Inotify::addWatch(const QString &path, quint32 mask) const
{
    if (mDescriptor < 0) {
        errno = mError;
        return -1;
    }
    return inotify_add_watch(mDescriptor, QFile::encodeName(path).constData(), mask);
}

bool Inotify::removeWatch(int watch) const
{
    return mDescriptor >= 0 && watch >= 0 && inotify_rm_watch(mDescriptor, watch) == 0;
}

void Inotify::readAll(const EventHandler &handler) const
{
    alignas(inotify_event) char buffer[16 * 1024];
    while (mDescriptor >= 0) {
        const ssize_t length = ::read(mDescriptor, buffer, sizeof buffer);
        if (length <= 0)
            return;
        forEach(buffer, std::size_t(length), handler);
    }
}

void Inotify::forEach(const char *buffer, std::size_t length, const EventHandler &handler)
{
    for (std::size_t offset = 0; offset + sizeof(inotify_event) <= length;) {
        const auto *event = reinterpret_cast<const inotify_event *>(buffer + offset);
        offset += sizeof(inotify_event) + event->len;
        handler(*event);
    }
}
