// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The windows are held by QPointer, which needs their full types wherever the driver is destroyed.
#include "app/UpdateStatusWindow.h"
#include "app/UpdateWindowController.h"

#include <QObject>
#include <QPointer>

class CorvexError;
class SUAppcastItem;
class SUUpdater;
class TypedPreferences;

// The updater's windows in the application: a check the user asked for shows the checking window, then
// "You're up to date!", an error, or the update window; the update window's answers go back to the updater.
class UpdateUserDriver : public QObject
{
    Q_OBJECT

public:
    explicit UpdateUserDriver(SUUpdater &updater, QObject *parent = nullptr);
    ~UpdateUserDriver() override;

    // The driver of the shared updater, created on first use (main thread).
    static UpdateUserDriver &sharedDriver();

    // A check the user asked for; while one runs, its window comes to the front instead.
    void checkForUpdates();

    // On the second launch, once: asks whether to check for updates automatically and whether to include the
    // system profile, and stores the answers ("SUEnableAutomaticChecks", "checkForUpdates",
    // "SUSendProfileInfo"). The first launch only records "SUHasLaunchedBefore". True when it asked.
    static bool askForPermissionIfNeeded(TypedPreferences &preferences);

    // The windows, while they are open (null otherwise).
    UpdateStatusWindow *statusWindow() const { return mStatusWindow; }
    UpdateWindowController *updateWindow() const { return mUpdateWindow; }

private:
    void phaseChanged();
    void updateFound(const SUAppcastItem &item);
    void noUpdateFound();
    void failed(const CorvexError &error);
    void cancelled();
    UpdateStatusWindow *ensureStatusWindow();

    SUUpdater &mUpdater;
    QPointer<UpdateStatusWindow> mStatusWindow;
    QPointer<UpdateWindowController> mUpdateWindow;
};
