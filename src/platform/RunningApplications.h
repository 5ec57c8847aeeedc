// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

// One running process of this user's login session whose executable lies in an application bundle.
struct RunningApplication
{
    qint64 pid = 0;
    QString bundlePath;       // the bundle folder the executable lies in
    QString executablePath;   // the process's executable
    QString bundleIdentifier; // the bundle's "CFBundleIdentifier"
};

// The running applications: a process is "running application X" when its executable is the main executable
// of a bundle whose Info.plist says X (a helper tool inside the bundle is not the application). Found through
// /proc/<pid>/exe. Only processes of this login session count: the same user, on the same D-Bus session bus
// (so another session of the same user, say over ssh, keeps its copies).
class RunningApplications
{
public:
    RunningApplications() = delete;

    // Every running application, ordered by process id.
    static QList<RunningApplication> runningApplications();

    // The running applications with this bundle identifier, ordered by process id; empty for an empty
    // identifier.
    static QList<RunningApplication> runningApplicationsWithBundleIdentifier(const QString &bundleIdentifier);

    // The executable of a process (a replaced executable's former path); a null string when it cannot be
    // read.
    static QString executablePathOfProcess(qint64 pid);

    // True when the process belongs to this user's login session (same user, same session bus address).
    static bool isInThisSession(qint64 pid);

    // The process ids of this machine, ascending.
    static QList<qint64> processIds();

    // Asks the process to terminate in its normal, orderly way (SIGTERM). False when it cannot be signalled.
    static bool terminate(qint64 pid);
};
