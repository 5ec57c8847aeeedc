// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class UKFileWatcher;

// Told by a file watcher about each change of a watched path: the notification's name (one of the
// UKKQueue...Notification names) and the path as it was given to the watcher.
class UKFileWatcherDelegate
{
public:
    virtual ~UKFileWatcherDelegate() = default;
    virtual void watcher(UKFileWatcher *watcher, const QString &notification, const QString &path) = 0;
};
