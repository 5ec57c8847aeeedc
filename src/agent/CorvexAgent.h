// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "agent/ScreenshotMatcher.h"
#include "foundation/PreferenceKeys.h"

#include <QObject>
#include <QPointer>
#include <memory>

class AgentStatusMenu;
class AppLogRelay;
class ApplicationHandOff;
class DDFileLogger;
class LogWindowController;
class ScreenshotFolderWatcher;
class ScreenshotLocation;
class ScreenshotQueue;
class SUUpdater;
class UpdateScheduler;

// The background agent: one per user session (it owns the session-bus name "com.ostrel.CorvexAgent"). It
// watches the screenshot folder, processes each new screenshot (automatic steps, hand-off to the
// application), keeps the shared log file with its own messages and the application's, and shows the tray
// icon while "showMenuIcon" is on, and checks for updates of the application on schedule. It follows
// "CorvexDefaultsChanged", "CorvexShowStatusMenu" and "CorvexHideStatusMenu" at once, and does nothing at all
// while nothing happens.
class CorvexAgent : public QObject
{
    Q_OBJECT

public:
    explicit CorvexAgent(QObject *parent = nullptr);
    ~CorvexAgent() override;

    // Claims the agent's bus name. False when another agent owns it; *busAvailable tells whether there was
    // a session bus to ask at all (without one the agent runs unguarded).
    static bool claimBusName(bool *busAvailable = nullptr);

    // Adds the log file logger, then starts watching, relaying and the tray icon. Logs the start.
    void start();

    // Ends the agent in order: stops watching, finishes the screenshot in hand, writes out the log, then
    // quits the event loop.
    void terminate();

    ScreenshotQueue *queue() const { return mQueue.get(); }
    const std::shared_ptr<DDFileLogger> &fileLogger() const { return mFileLogger; }
    AgentStatusMenu *statusMenu() const { return mStatusMenu; }
    // The automatic update checks of the application bundle the agent lies in.
    UpdateScheduler *updateScheduler() const { return mUpdateScheduler; }

    // Opens the application's preferences (starts it with qzcv://prefs).
    void openPreferences();
    // Shows the log window.
    void showLogWindow();

private:
    void screenshotFolderChanged(const ScreenshotMatcher &matcher);
    void fileCompleted(const QString &path);
    void defaultsChanged();
    void applyMenuIconPreferences(bool show);

    std::shared_ptr<DDFileLogger> mFileLogger;
    std::unique_ptr<ApplicationHandOff> mHandOff;
    std::unique_ptr<ScreenshotQueue> mQueue;
    ScreenshotLocation *mLocation = nullptr;
    ScreenshotFolderWatcher *mWatcher = nullptr;
    AppLogRelay *mAppLogRelay = nullptr;
    AgentStatusMenu *mStatusMenu = nullptr;
    SUUpdater *mUpdater = nullptr;
    UpdateScheduler *mUpdateScheduler = nullptr;
    QPointer<LogWindowController> mLogWindowController;
    QList<int> mObservers;
    bool mTerminating = false;
};
