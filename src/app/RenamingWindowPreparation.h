// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <functional>

// The first renaming window of a process would otherwise pay on the main thread, in the event that builds it,
// for set-up that is done once per process: reading the icon theme's index files and Qt's image format
// plugins (for the folder icons of the where popup), the font database and the first font, the accessibility
// bridge, the file watcher's thread, and the style's and the text layout's first work. Started as the
// application starts, this does what can be done away from the main thread on a worker (the index files are
// read through QSettings, whose parsed files later readers in the same process share) and the rest on the
// main thread in a few short events of their own. Windows asked for while it runs wait for it
// (callWhenDone), so that the event that builds the first window holds the main thread up briefly; a window
// built without it does what is left itself.
class RenamingWindowPreparation
{
public:
    RenamingWindowPreparation() = delete;

    // Once, on the main thread, after the application object is made; later calls do nothing.
    static void start();

    // While the preparation runs: the call is made once it is done (or has taken too long), on the main
    // thread in an event of its own, unless the context is gone by then, and the answer is true. Otherwise
    // nothing is called and the answer is false: the caller goes on at once.
    static bool callWhenDone(QObject *context, std::function<void()> call);
};
