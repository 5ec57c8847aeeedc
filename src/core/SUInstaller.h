// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class Bundle;
class CorvexError;

// Puts a verified, unpacked bundle in the place of the running one and starts it. The installed bundle is
// touched only once the new one is complete: the old one goes to the Trash (or, with administrator rights,
// is replaced in one step), and any failure puts it back.
class SUInstaller
{
public:
    SUInstaller() = delete;

    // The Debian package the bundle belongs to; empty when it belongs to none (or dpkg is not there).
    static QString owningPackage(const QString &bundlePath);

    // True when this user can replace the bundle: its folder and its parent folder are writable.
    static bool canReplaceBundle(const QString &bundlePath);

    // Checks that the unpacked bundle can replace the installed one: a bundle of the same identifier whose
    // "CFBundleVersion" is the expected one and newer than the installed one (a downgrade is refused).
    static bool validateBundle(const Bundle &newBundle, const Bundle &installedBundle,
                               const QString &expectedVersion, CorvexError *error = nullptr);

    // Replaces the installed bundle by the new one (same file system expected, as when unpacked beside it).
    // The old bundle goes to the Trash (*trashedPath: where); the new bundle's folder is renamed into place.
    static bool swapBundles(const QString &newBundlePath, const QString &installedBundlePath,
                            QString *trashedPath = nullptr, CorvexError *error = nullptr);

    // The same with administrator rights through pkexec: the new bundle is copied beside the installed one,
    // the installed one renamed aside, the copy renamed into place and the old one removed. A dismissed
    // password dialog is the error AuthorizationCancelled.
    static bool swapBundlesWithPrivileges(const QString &newBundlePath, const QString &installedBundlePath,
                                          CorvexError *error = nullptr);

    // Starts the bundle's executable once the process `waitForPid` has ended, detached from this process.
    static bool relaunch(const QString &bundlePath, qint64 waitForPid);

    // The pkexec program used for privileged swaps ("pkexec" unless CORVEX_PKEXEC names another).
    static QString pkexecProgram();
};
