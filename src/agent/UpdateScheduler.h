// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <functional>

class Bundle;
class SUAppcastItem;
class SUUpdater;
class TypedPreferences;

// The agent's automatic update checks: while "checkForUpdates" and "SUEnableAutomaticChecks" are on, one
// check every "SUScheduledCheckInterval" seconds (a day by default), counted from "SULastCheckTime", so that
// a check made by the application counts too. Between checks one single-shot timer waits; nothing polls.
// When a newer version is found, a desktop notification offers it; its action opens the application's
// update window (the application started with "qzcv://checkForUpdate").
class UpdateScheduler : public QObject
{
    Q_OBJECT

public:
    // Schedules for the updater over the preferences (neither owned).
    UpdateScheduler(SUUpdater &updater, TypedPreferences &preferences, QObject *parent = nullptr);
    ~UpdateScheduler() override;

    // The application bundle this agent belongs to (the agent's bundle lies in its Contents/Helpers).
    static Bundle applicationBundle();

    // Reads the preferences and sets the timer for the next check, or stops it when checks are off. Call it
    // at start and whenever the preferences changed.
    void reschedule();

    // Checks at once (when checks are on), as the timer would.
    void checkNow() { timerFired(); }

    bool isScheduled() const { return mTimer.isActive(); }
    // When the next check runs; invalid when none is scheduled.
    QDateTime nextCheckDate() const { return isScheduled() ? mNextCheck : QDateTime(); }

    // How the update window is opened when the notification's action is chosen; by default the application
    // is started with "qzcv://checkForUpdate". Tests record the call instead.
    void setOpenUpdateWindowHandler(std::function<void()> handler) { mOpenUpdateWindow = std::move(handler); }

    // Posts the notification that offers the item; false when no notification service answered.
    bool postNotification(const SUAppcastItem &item);

Q_SIGNALS:
    // A scheduled check ended (found or not, or failed).
    void checkFinished();

private:
    bool checksEnabled() const;
    void timerFired();
    void updateFound(const SUAppcastItem &item);
    void openUpdateWindow();

private Q_SLOTS:
    // The notification service's ActionInvoked signal.
    void notificationActionInvoked(uint id, const QString &action);

private:
    SUUpdater &mUpdater;
    TypedPreferences &mPreferences;
    QTimer mTimer;
    QDateTime mNextCheck;
    bool mChecking = false;
    uint mNotificationId = 0;
    QString mNotifiedVersion;
    std::function<void()> mOpenUpdateWindow;
};
