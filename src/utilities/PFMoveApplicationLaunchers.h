// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// After the bundle has moved, the desktop entries that start it from its old place follow it: the launcher
// entries in the user's applications folder and the autostart entries (both hold absolute paths). Without a
// launcher of its own, the moved application gets one, made from the template in its Resources.
class PFMoveApplicationLaunchers
{
public:
    PFMoveApplicationLaunchers() = delete;

    // Rewrites every entry in the two folders whose program lies in oldBundlePath to start the same program
    // in newBundlePath. Then, when launcherDirectory holds no "com.ostrel.Corvex.desktop", writes one from
    // newBundlePath's "Contents/Resources/desktop/com.ostrel.Corvex.desktop.in". Returns the number of
    // entries written; an entry that cannot be written is skipped.
    static int updateEntries(const QString &oldBundlePath, const QString &newBundlePath,
                             const QString &launcherDirectory, const QString &autostartDirectory);

    // One entry's text with every "Exec=" and "TryExec=" line that names a program in oldBundlePath pointing
    // into newBundlePath instead; the text unchanged when none does.
    static QString retargetEntry(const QString &text, const QString &oldBundlePath,
                                 const QString &newBundlePath);
};
