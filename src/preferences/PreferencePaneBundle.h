// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <functional>

// One pane bundle: a folder `<Name>.preferencePane` whose `Contents/Info.plist` names the principal class
// ("NSPrincipalClass"), the bundle identifier ("CFBundleIdentifier") and the plugin file
// ("CFBundleExecutable", a file in `Contents`). The plugin's root object is the principal class; it must be
// of the class the Info.plist names and provide panes (SS_PreferencePaneProvider).
//
// A principal class name is known to the process once a bundle providing it has loaded; another bundle naming
// the same class is refused. Loading the same bundle again gives the same panes.
class PreferencePaneBundle
{
public:
    using MessageHandler = std::function<void(const QString &message)>;

    PreferencePaneBundle() = delete;

    // Loads the bundle at the path and returns its panes (objects implementing SS_PreferencePaneProtocol,
    // owned by the bundle's root object). Returns false, after handing the reason to `message`, when the
    // bundle cannot be read, names no principal class, names one already known, or does not load as a pane
    // provider. Panes that do not implement the pane interface are left out with a message.
    static bool activatePane(const QString &path, QList<QObject *> *panes, const MessageHandler &message);

    // The plugin file of the bundle at the path; a null string when its Info.plist cannot be read.
    static QString pluginPath(const QString &bundlePath);

    // True when the class name belongs to a bundle other than the one at the path, or to Qt's type system.
    static bool isKnownClass(const QString &className, const QString &bundlePath);
};
