// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The delegate's application-level actions, and its side of the agent, the login items and the log window.

#include "app/AppDelegate.h"

#include "app/AgentControl.h"
#include "app/WelcomeWindowController.h"
#include "core/FactoryDefaults.h"
#include "core/FeedbackReport.h"
#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"
#include "logging/Log.h"
#include "platform/FileManagerReveal.h"
#include "preferences/SS_PrefsController.h"
#include "widgets/LogWindowController.h"
#include "widgets/QZAlert.h"

#include <QApplication>
#include <QMessageBox>

void AppDelegate::createActions()
{
    mMenus->setHandler(Action::About, [this] { about(); });
    mMenus->setHandler(Action::Preferences, [this] { preferencesController().showPreferencesWindow(); });
    mMenus->setHandler(Action::WelcomeToCorvex, [this] { showWelcomeWindow(); });
    mMenus->setHandler(Action::Help, [] { FeedbackReport::openHelp(); });
    mMenus->setHandler(Action::SendFeedback, [] { FeedbackReport::openFeedbackMail(); });
    mMenus->setHandler(Action::CheckForUpdates, [this] { checkForUpdatesAction(); });
    mMenus->setHandler(Action::ResetPreferences, [this] { resetPreferences(); });
    mMenus->setHandler(Action::ResetAutoRenameCounter, [this] { resetAutoRenameCounter(); });
    mMenus->setHandler(Action::LogWindow, [this] { logWindowAction(); });
    mMenus->setHandler(Action::RevealLogInFinder, [this] { revealLogInFinderAction(); });
    mMenus->setHandler(Action::Quit, [this] { quit(); });
}

SS_PrefsController &AppDelegate::preferencesController()
{
    SS_PrefsController &prefs = SS_PrefsController::sharedPrefsController();
    prefs.setCheckForUpdatesHandler([this] { checkForUpdates(); });
    return prefs;
}

void AppDelegate::showPreferencesPane(const QString &paneName)
{
    SS_PrefsController &prefs = preferencesController();
    if (!prefs.showPane(paneName))
        prefs.showPreferencesWindow();
}

void AppDelegate::showPreferencesForBareLaunch()
{
    // On a first run the welcome window is already there to greet the user; it stands in for the preferences.
    if (mWelcomeWindow && mWelcomeWindow->isVisible()) {
        mBareLaunchWindow = mWelcomeWindow;
        return;
    }
    SS_PrefsController &prefs = preferencesController();
    prefs.showPreferencesWindow();
    mBareLaunchWindow = prefs.preferencesWindow();
}

void AppDelegate::showWelcomeWindow()
{
    if (WelcomeWindowController *controller = WelcomeWindowController::showWelcome())
        mWelcomeWindow = controller->window();
}

void AppDelegate::about()
{
    QWidget *parent = QApplication::activeWindow();
    QMessageBox::about(
        parent, tr("About Corvex"),
        tr("<h3>Corvex</h3><p>Version %1</p><p>Renames, converts and files your screenshots.</p>")
            .arg(appVersionString().toHtmlEscaped()));
}

void AppDelegate::resetPreferences()
{
    QZAlert alert;
    alert.setMessageText(tr("Reset Preferences?"));
    alert.setInformativeText(
        tr("Resetting the preferences to their default values can help with troubleshooting."));
    alert.addButtonWithTitle(tr("Reset"));
    alert.addButtonWithTitle(tr("Cancel"));
    alert.exec();
    if (alert.resultCodeForButton(alert.clickedButton()) != QZAlert::NSAlertFirstButtonReturn)
        return;
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    const QVariantMap factory = factoryDefaults();
    for (auto it = factory.cbegin(); it != factory.cend(); ++it)
        defaults.setObject(it.value(), it.key());
    defaults.setBool(false, kMoveToApplicationsFolderAlertSuppressKey);
    for (const QString &key : kUpdaterPreferenceKeys)
        defaults.removeObjectForKey(key);
    defaults.synchronize();
}

void AppDelegate::resetAutoRenameCounter()
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setInteger(0, kAutoRenameCountKey);
    defaults.synchronize();
}

void AppDelegate::quit()
{
    // Every window is asked to close first, so that each controller lets go of its file.
    QApplication::closeAllWindows();
    Q_EMIT terminationRequested();
    QApplication::quit();
}

QUrl AppDelegate::corvexAgentApplicationURL() const
{
    return AgentControl::agentApplicationURL();
}

void AppDelegate::launchCorvexAgent()
{
    AgentControl::launchAgent();
}

void AppDelegate::quitCorvexAgent()
{
    AgentControl::quitAgent();
}

void AppDelegate::quitOtherCorvexs()
{
    AgentControl::quitOtherCopies();
}

void AppDelegate::addAgentToLoginItems()
{
    AgentControl::addAgentToLoginItems();
}

void AppDelegate::ensureAgentIsInLoginItems()
{
    AgentControl::ensureAgentIsInLoginItems();
}

void AppDelegate::removeAgentFromLoginItems()
{
    AgentControl::removeAgentFromLoginItems();
}

void AppDelegate::logWindowAction()
{
    if (!mLogWindowController)
        mLogWindowController = new LogWindowController(this);
    mLogWindowController->showWindow();
}

void AppDelegate::revealLogInFinderAction()
{
    FileManagerReveal::selectFile(LogWindowController::logFilePath(), QString());
}
