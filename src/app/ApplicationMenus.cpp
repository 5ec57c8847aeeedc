// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ApplicationMenus.h"

#include "app/CorvexWindowController.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

ApplicationMenus::ApplicationMenus(QObject *parent) : QObject(parent)
{
    const auto add = [this](Action which, const QString &title, const QKeySequence &keys) {
        auto *action = new QAction(title, this);
        action->setShortcut(keys);
        action->setEnabled(false);
        action->setMenuRole(QAction::NoRole);
        action->setShortcutContext(Qt::ApplicationShortcut);
        mActions.insert(which, action);
    };
    add(Action::About, tr("About Corvex"), QKeySequence());
    add(Action::Preferences, tr("Preferences…"), QKeySequence::Preferences);
    add(Action::ResetPreferences, tr("Reset Preferences…"), QKeySequence());
    add(Action::ResetAutoRenameCounter, tr("Reset Counter"), QKeySequence());
    add(Action::WelcomeToCorvex, tr("Welcome to Corvex"), QKeySequence());
    add(Action::LogWindow, tr("Log"), QKeySequence(Qt::CTRL | Qt::Key_L));
    add(Action::RevealLogInFinder, tr("Show Log File"), QKeySequence());
    add(Action::Help, tr("Corvex Help"), QKeySequence::HelpContents);
    add(Action::SendFeedback, tr("Send Feedback…"), QKeySequence());
    add(Action::CheckForUpdates, tr("Check for Updates…"), QKeySequence());
    add(Action::Quit, tr("Quit Corvex"), QKeySequence::Quit);
}

void ApplicationMenus::setHandler(Action which, std::function<void()> handler)
{
    QAction *act = action(which);
    disconnect(act, &QAction::triggered, nullptr, nullptr);
    connect(act, &QAction::triggered, this, [handler = std::move(handler)] { handler(); });
    act->setEnabled(true);
}

bool ApplicationMenus::perform(Action which)
{
    QAction *act = action(which);
    if (!act || !act->isEnabled())
        return false;
    act->trigger();
    return true;
}

QMenuBar *ApplicationMenus::makeMenuBar(CorvexWindowController *controller, QWidget *window)
{
    auto *bar = new QMenuBar(window);
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
    QMenu *windowMenu = bar->addMenu(tr("&Window"));
    windowMenu->addAction(action(Action::WelcomeToCorvex));
    windowMenu->addAction(action(Action::LogWindow));
    windowMenu->addAction(action(Action::RevealLogInFinder));
    QMenu *help = bar->addMenu(tr("&Help"));
    help->addAction(action(Action::Help));
    help->addAction(action(Action::SendFeedback));
    help->addAction(action(Action::CheckForUpdates));
    help->addSeparator();
    help->addAction(action(Action::About));
    return bar;
}
