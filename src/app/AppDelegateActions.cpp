// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The delegate's application-level actions and the menus that reach them.

#include "AppDelegate.h"

#include "CorvexWindowController.h"
#include "FactoryDefaults.h"
#include "QZAlert.h"
#include "UserDefaults.h"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>

void AppDelegate::createActions()
{
    const auto add = [this](Action which, const QString &title, const QKeySequence &keys, bool enabled,
                            auto slot) {
        auto *action = new QAction(title, this);
        action->setShortcut(keys);
        action->setEnabled(enabled);
        action->setMenuRole(QAction::NoRole);
        connect(action, &QAction::triggered, this, slot);
        mActions.insert(which, action);
    };
    // Preferences, welcome, help, feedback and update checks have no window or service in this build: their
    // actions stay disabled until they have.
    const auto nothing = [] {};
    add(Action::About, tr("About Corvex"), QKeySequence(), true, &AppDelegate::about);
    add(Action::Preferences, tr("Preferences…"), QKeySequence::Preferences, false, nothing);
    add(Action::ResetPreferences, tr("Reset Preferences…"), QKeySequence(), true,
        &AppDelegate::resetPreferences);
    add(Action::ResetAutoRenameCounter, tr("Reset Counter"), QKeySequence(), true,
        &AppDelegate::resetAutoRenameCounter);
    add(Action::WelcomeToCorvex, tr("Welcome to Corvex"), QKeySequence(), false, nothing);
    add(Action::LogWindow, tr("Log"), QKeySequence(Qt::CTRL | Qt::Key_L), true,
        &AppDelegate::logWindowAction);
    add(Action::RevealLogInFinder, tr("Show Log File"), QKeySequence(), true,
        &AppDelegate::revealLogInFinderAction);
    add(Action::Help, tr("Corvex Help"), QKeySequence::HelpContents, false, nothing);
    add(Action::SendFeedback, tr("Send Feedback…"), QKeySequence(), false, nothing);
    add(Action::CheckForUpdates, tr("Check for Updates…"), QKeySequence(), false, nothing);
    add(Action::Quit, tr("Quit Corvex"), QKeySequence::Quit, true, &AppDelegate::quit);
    for (QAction *action : std::as_const(mActions))
        action->setShortcutContext(Qt::ApplicationShortcut);
}

QAction *AppDelegate::action(Action which) const
{
    return mActions.value(which);
}

bool AppDelegate::perform(Action which)
{
    QAction *act = action(which);
    if (!act || !act->isEnabled())
        return false;
    act->trigger();
    return true;
}

QMenuBar *AppDelegate::makeMenuBar(CorvexWindowController *controller, QWidget *parent) const
{
    auto *bar = new QMenuBar(parent);
    bar->setNativeMenuBar(false);
    QMenu *file = bar->addMenu(tr("&File"));
    if (controller) {
        file->addActions(controller->windowActions());
        file->addSeparator();
    }
    file->addAction(action(Action::Quit));
    QMenu *edit = bar->addMenu(tr("&Edit"));
    edit->addAction(action(Action::Preferences));
    edit->addSeparator();
    edit->addAction(action(Action::ResetPreferences));
    edit->addAction(action(Action::ResetAutoRenameCounter));
    QMenu *window = bar->addMenu(tr("&Window"));
    window->addAction(action(Action::WelcomeToCorvex));
    window->addAction(action(Action::LogWindow));
    window->addAction(action(Action::RevealLogInFinder));
    QMenu *help = bar->addMenu(tr("&Help"));
    help->addAction(action(Action::Help));
    help->addAction(action(Action::SendFeedback));
    help->addAction(action(Action::CheckForUpdates));
    help->addSeparator();
    help->addAction(action(Action::About));
    return bar;
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
    defaults.setBool(false, QStringLiteral("moveToApplicationsFolderAlertSuppress"));
    for (const char *key :
         {"SUEnableAutomaticChecks", "SUEnableSystemProfiling", "SUHasLaunchedBefore", "SUSendProfileInfo"})
        defaults.removeObjectForKey(QString::fromLatin1(key));
    defaults.synchronize();
}

void AppDelegate::resetAutoRenameCounter()
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setInteger(0, QStringLiteral("autoRenameCount"));
    defaults.synchronize();
}

void AppDelegate::quit()
{
    // Every window is asked to close first, so that each controller lets go of its file.
    QApplication::closeAllWindows();
    Q_EMIT terminationRequested();
    QApplication::quit();
}
