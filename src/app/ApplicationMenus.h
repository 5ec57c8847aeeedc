// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/RenamingWindowServices.h"

#include <QMap>
#include <QObject>
#include <functional>

class QAction;

// The application-level actions (About, Preferences, Reset Preferences, Quit, ...) and the menu bar every
// renaming window gets: its own commands under File, then the application's menus. An action without a
// handler stays disabled.
class ApplicationMenus : public QObject, public RenamingWindowServices
{
    Q_OBJECT

public:
    enum class Action {
        About,
        Preferences,
        ResetPreferences,
        ResetAutoRenameCounter,
        WelcomeToCorvex,
        LogWindow,
        RevealLogInFinder,
        Help,
        SendFeedback,
        CheckForUpdates,
        Quit,
    };
    Q_ENUM(Action)

    explicit ApplicationMenus(QObject *parent = nullptr);

    // Gives the action its handler and enables it.
    void setHandler(Action which, std::function<void()> handler);
    // The action (owned by this object).
    QAction *action(Action which) const { return mActions.value(which); }
    // Triggers the action if it is enabled; answers whether it ran.
    bool perform(Action which);

    // A menu bar holding every application-level action, and the window's commands when a controller is
    // given.
    QMenuBar *makeMenuBar(CorvexWindowController *controller, QWidget *window) override;

private:
    QMap<Action, QAction *> mActions;
};
