// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/PreferenceKeys.h"
#include <QString>
#include <QStringList>
#include <chrono>
#include <mutex>

class ScreenshotInfo;

// Hands a screenshot to the application for its renaming window. When the application runs (it owns the
// session-bus name "com.ostrel.Corvex", or its process is found by its bundle identifier) the screenshot is
// posted as "CorvexScreenshotMatched"; otherwise the application is started for it with -filePath,
// -screenNum and -bookmarkData (the bookmark stored once, under a fresh key of "screenshotBookmarks").
//
// An application this agent has just started is waited for (up to a few seconds) until it owns its bus name,
// so that the screenshots that follow reach it as notifications instead of starting it again.
//
// The application is the program of the bundle the agent lies in (Contents/MacOS/Corvex unless its Info.plist
// names another).
// Safe to use from any thread; calls are serialised.
class ApplicationHandOff
{
public:
    ApplicationHandOff();

    // Posts the screenshot to the running application, or starts the application for it. Returns false
    // (and logs why) when neither could be done.
    bool handOffScreenshot(const ScreenshotInfo &info);

    // Starts the application with these arguments (detached). Returns false (and logs why) when it cannot.
    bool launchApplication(const QStringList &arguments, qint64 *pid = nullptr);

    // Whether the application runs now.
    bool isApplicationRunning() const;
    // Whether the application owns its bus name.
    static bool applicationOwnsBusName();

    // The program started for the application.
    static QString applicationExecutable();
    // The application bundle the agent lies in (Corvex.app), a null string when it lies in none.
    static QString applicationBundlePath();

    // How long an application just started is waited for.
    void setLaunchWait(std::chrono::milliseconds wait) { mLaunchWait = wait; }

private:
    bool postScreenshot(const ScreenshotInfo &info);
    bool waitForLaunchedApplication();

    std::mutex mMutex;
    qint64 mLaunchedPid = 0;
    std::chrono::steady_clock::time_point mLaunchedAt;
    std::chrono::milliseconds mLaunchWait{10000};
};
