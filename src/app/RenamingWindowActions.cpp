// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RenamingWindowActions.h"

#include "app/CorvexWindowController.h"
#include "app/PopupKeys.h"

#include <QAction>
#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QWidget>
#include <functional>

namespace {

// The command's action, doing nothing while a popup is open.
QAction *makeAction(const QString &title, const QList<QKeySequence> &shortcuts, QWidget *window,
                    std::function<void()> run)
{
    auto *action = new QAction(title, window);
    action->setShortcuts(shortcuts);
    action->setShortcutContext(Qt::WindowShortcut);
    QObject::connect(action, &QAction::triggered, window, [run = std::move(run)] {
        if (!RenamingWindowActions::isPopupOpen())
            run();
    });
    return action;
}

} // namespace

bool RenamingWindowActions::isPopupOpen()
{
    return PopupKeys::keyIsThePopups();
}

QList<QAction *> RenamingWindowActions::create(CorvexWindowController *controller, QWidget *window)
{
    PopupKeys::follow();
    const QPointer<CorvexWindowController> self(controller);
    const QList<QAction *> actions{
        makeAction(CorvexWindowController::tr("Rename"), {QKeySequence(Qt::CTRL | Qt::Key_Return)}, window,
                   [self] {
                       if (self && self->renameButton()->isEnabled())
                           self->rename();
                   }),
        makeAction(CorvexWindowController::tr("Move to Trash"), {moveToTrashShortcut()}, window,
                   [self] {
                       if (self)
                           self->moveToTrash();
                   }),
        makeAction(CorvexWindowController::tr("Print…"), QKeySequence::keyBindings(QKeySequence::Print),
                   window,
                   [self] {
                       if (self)
                           self->printDocument();
                   }),
        makeAction(CorvexWindowController::tr("Cancel"),
                   {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_Period)}, window,
                   [self] {
                       if (self)
                           self->cancel();
                   }),
        makeAction(CorvexWindowController::tr("Close Window"), QKeySequence::keyBindings(QKeySequence::Close),
                   window, [window] { window->close(); }),
    };
    window->addActions(actions);
    return actions;
}
