// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

class AppDelegate;

// The running application's event interface on the session bus: the object "/com/ostrel/Corvex/Application"
// of the interface "com.ostrel.Corvex.Application" under the bus name "com.ostrel.Corvex", whose methods
// About, Preferences, CheckForUpdates and GetURL reach the delegate's event handlers. The bus name also makes
// the application single-instance: a second launch finds it taken and hands its work to the first.
class AppEventHandler : public QObject
{
    Q_OBJECT

public:
    static inline const QString ServiceName = QStringLiteral("com.ostrel.Corvex");
    static inline const QString ObjectPath = QStringLiteral("/com/ostrel/Corvex/Application");
    static inline const QString Interface = QStringLiteral("com.ostrel.Corvex.Application");

    explicit AppEventHandler(AppDelegate *delegate, QObject *parent = nullptr);
    ~AppEventHandler() override;

    // Puts the object on the session bus; false (logged) without a bus or when the path is taken.
    bool registerObject();

    // Claims the bus name for this process: false when another process holds it (or there is no bus).
    static bool claimServiceName();
    // Whether another process holds the bus name.
    static bool isAnotherInstanceRunning();
    // Hands a URL to the running instance's GetURL; false when no instance answers.
    static bool sendURLToRunningInstance(const QString &url);

public Q_SLOTS:
    void About();
    void Preferences();
    void CheckForUpdates();
    void GetURL(const QString &url);

private:
    AppDelegate *mDelegate;
    bool mRegistered = false;
};
