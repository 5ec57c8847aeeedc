// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QUrl>
#include <QVariantMap>
#include <functional>

#include "app/ApplicationMenus.h"
#include "core/SUUpdaterDelegate.h"

class CorvexWindowController;
class LogWindowController;
class SS_PrefsController;
class AppEventHandler;
class QThread;
class QWidget;

// The application's delegate and the hub of the foreground application: start-up and shut-down, one renaming
// window per announced screenshot, the preference change handler that keeps the agent informed, the menus and
// the application-level actions, and the hand-off from the command line, the "qzcv" URLs and the D-Bus event
// interface. There is one, made by main() (or by a test) and reachable through sharedDelegate().
class AppDelegate : public QObject, public SUUpdaterDelegate
{
    Q_OBJECT

public:
    // The application-level actions that menus and URLs reach. An action whose window or service is not part
    // of this build stays disabled: triggering it does nothing.
    using Action = ApplicationMenus::Action;

    explicit AppDelegate(QObject *parent = nullptr);
    ~AppDelegate() override;

    // The one delegate (null before it is made or after it is destroyed).
    static AppDelegate *sharedDelegate();

    // Class initialisation: registers the factory defaults as the registration domain of the standard user
    // defaults. Runs once per process; the constructor calls it.
    static void initialize();

    // Start-up phase 1: installs the D-Bus event interface and the cross-process logger.
    void applicationWillFinishLaunching();
    // The agent hands screenshots over as soon as the application holds its bus name, which is before
    // launching has finished (a question may be on screen): from now on they are kept, and the observers
    // of the second phase open them.
    void keepScreenshotsUntilLaunched();
    // Start-up phase 2: launch line, welcome, login item, observers, command line, agent, Dropbox check.
    void applicationDidFinishLaunching();
    // Shut-down: start-at-login question if never asked, the agent, observers, first-run flag.
    void applicationWillTerminate();
    // Always yes.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);
    // Whether the application quits now that its last window has closed (logs when it does not).
    bool applicationShouldTerminateAfterLastWindowClosed();

    // The preference change handler: forwards a change of an observed key to the agent.
    void observeValueForKeyPath(const QString &keyPath);
    // Opens a renaming window for the screenshot dictionary of a "CorvexScreenshotMatched" notification.
    void screenshotTaken(const QVariantMap &userInfo);
    // Called when a top-level window is about to close; releases its controller.
    void windowWillClose(QWidget *window);

    void addNotificationObservers();
    void removeNotificationObservers();

    // Command line, URLs and events.
    // Posts "CorvexScreenshotMatched" for a screenshot named by
    // -filePath/-screenNum/-newFilePath/-bookmarkData.
    void processCommandLineArguments();
    void handleAboutEvent();
    void handlePreferencesEvent();
    void handleCheckForUpdatesEvent();
    // Dispatches a URL given as a string when its scheme is exactly "qzcv"; ignores anything else.
    void handleGetURLEvent(const QString &urlString);
    // Runs the command of a "qzcv" URL, given as its text ("//about", "//prefs", "//prefs/reset",
    // "//feedback",
    // "//checkForUpdate" after the scheme; compared exactly, letter case included).
    void handleCorvexURL(const QString &url);
    // "2.0.5 (ce9f1b3)".
    static QString appVersionString();
    // The operating system's human-readable version string.
    static QString osVersionString();

    // Actions (menus, URLs, events).
    void about();
    void resetPreferences();
    void resetAutoRenameCounter();
    void quit();
    // The menu action for an application-level action (owned by the delegate).
    QAction *action(Action which) const { return mMenus->action(which); }
    // Triggers the action if it is enabled; answers whether it ran.
    bool perform(Action which) { return mMenus->perform(which); }
    // The application's menus; also the services (menu bar, printing) of every renaming window.
    ApplicationMenus *menus() const { return mMenus; }
    // Shows the preferences window at the named pane (the favourite folders' pane for "Edit Favourites…").
    void showPreferencesPane(const QString &paneName);
    // A launch with neither a screenshot nor a URL (from the launcher): the preferences window is shown, and
    // closing it ends the application like closing the last renaming window.
    void showPreferencesForBareLaunch();
    // Opens the welcome window (from the menu, and at launch while "firstRunVers2" is set).
    void showWelcomeWindow();

    // Update checks: the menu action only calls checkForUpdates, which makes this delegate the shared
    // updater's delegate again and starts a check the user asked for, with the updater's windows.
    void checkForUpdates();
    void checkForUpdatesAction();
    QList<QVariantMap> feedParametersForUpdater(SUUpdater *updater, bool sendingSystemProfile) override;
    void updaterWillInstallUpdate(SUUpdater *updater, const SUAppcastItem &item) override;
    // Quits the agent, so that no agent of the old version keeps running.
    void updaterWillRelaunchApplication(SUUpdater *updater) override;

    // The start-at-login question; tests replace it (the default runs the modal panel).
    void setStartAtLogInQuestion(std::function<void()> question);

    // The open renaming window controllers.
    QList<CorvexWindowController *> windowControllers() const;
    // The renaming window controller whose window is the active (main) window, if any.
    CorvexWindowController *mainWindowController() const;

    // Agent, login items and the log window.
    void launchCorvexAgent();
    void quitCorvexAgent();
    void quitOtherCorvexs();
    void addAgentToLoginItems();
    void ensureAgentIsInLoginItems();
    void removeAgentFromLoginItems();
    void logWindowAction();
    void revealLogInFinderAction();
    QUrl corvexAgentApplicationURL() const;

Q_SIGNALS:
    // A renaming window was opened for a screenshot.
    void windowControllerAdded(CorvexWindowController *controller);
    // The application is about to leave its event loop (Quit, a termination signal, the last window closed).
    void terminationRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void createActions();
    // The preferences window's controller, its "Check Now" reaching this delegate.
    SS_PrefsController &preferencesController();
    void askToStartAtLogIn();
    void runStartAtLogInQuestionAndApply();
    void handleClosedWindow(const QPointer<QWidget> &window);
    void checkLastWindowClosed();
    void onDistributedNotification(const QString &name, const QVariantMap &userInfo);

    QSet<CorvexWindowController *> mWindowControllers;
    bool mShouldTerminateAfterLastWindowClosed = false;
    bool mObserving = false;
    ApplicationMenus *mMenus = nullptr;
    LogWindowController *mLogWindowController = nullptr;
    QList<QMetaObject::Connection> mObserverConnections;
    int mScreenshotObserver = 0;
    // Screenshots announced while launching (a question may be on screen): opened once launching is done.
    int mLaunchScreenshotObserver = 0;
    QList<QVariantMap> mScreenshotsDuringLaunch;
    AppEventHandler *mEventHandler = nullptr;
    QThread *mDropboxThread = nullptr;
    std::function<void()> mStartAtLogInQuestion;
    // The preferences window of a bare launch: closing it may end the application.
    QPointer<QWidget> mBareLaunchWindow;
    QPointer<QWidget> mWelcomeWindow;
};
