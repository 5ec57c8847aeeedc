// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QObject>
#include <QSystemTrayIcon>

class QAction;
class QMenu;

// The agent's icon in the desktop's tray (its menu-bar icon) and its menu: Corvex's preferences, the log
// window, pausing the automatic steps, quitting the agent. Where the desktop has no tray, showing it does
// nothing and says so once in the log; the agent works the same without it.
class AgentStatusMenu : public QObject
{
    Q_OBJECT

public:
    explicit AgentStatusMenu(QObject *parent = nullptr);
    ~AgentStatusMenu() override;

    // Shows or hides the icon. Returns whether it is on screen now.
    bool setVisible(bool visible);
    bool isVisible() const;

    // Draws the icon in grey instead of in colour.
    void setGrayscale(bool grayscale);
    bool isGrayscale() const { return mGrayscale; }

    // Reflects the pause state in the menu.
    void setPaused(bool paused);

    // The menu (made on first use); its actions in order: preferences, log, pause, quit.
    QMenu *menu();
    // The tray icon was clicked: a left click (Trigger) opens the menu at the pointer.
    void trayIconActivated(QSystemTrayIcon::ActivationReason reason);

    // The icon as drawn, in colour or grey.
    static QIcon makeIcon(bool grayscale);

Q_SIGNALS:
    void preferencesRequested();
    void logWindowRequested();
    void pauseToggled(bool paused);
    void quitRequested();

private:
    QSystemTrayIcon *mTrayIcon = nullptr;
    QMenu *mMenu = nullptr;
    QAction *mPauseAction = nullptr;
    bool mGrayscale = false;
    bool mPaused = false;
    bool mNoTrayLogged = false;
};
