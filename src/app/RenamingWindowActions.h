// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QKeySequence>
#include <QList>

class CorvexWindowController;
class QAction;
class QWidget;

// The renaming window's commands (Rename, Move to Trash, Print, Cancel, Close Window) with their shortcuts.
// No shortcut takes a key that the name field uses for its own editing (Ctrl+Backspace deletes a word
// there), and none acts while a popup (the where or format list, a menu) is open: the key is the popup's.
class RenamingWindowActions
{
public:
    RenamingWindowActions() = delete;

    // Ctrl+Shift+Backspace: Move to Trash.
    static QKeySequence moveToTrashShortcut()
    {
        return QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backspace);
    }

    // Makes the commands and adds them to the window, in menu order.
    static QList<QAction *> create(CorvexWindowController *controller, QWidget *window);
    // Whether a popup of the application is open, or was when the key being handled was pressed, so that
    // window keys leave it alone.
    static bool isPopupOpen();
};
