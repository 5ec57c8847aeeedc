// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QKeyEvent;

// An invisible, zero-sized view that is offered every key press typed anywhere in its window before the
// focused control sees it, the way key equivalents travel through a window's views. A subclass answers
// performKeyEquivalent(): true means it handled the key, which then goes no further; false lets the key go on
// to the focused control. Shortcuts of the menus come first.
class KeyEquivalentView : public QWidget
{
    Q_OBJECT

public:
    explicit KeyEquivalentView(QWidget *parent = nullptr);
    ~KeyEquivalentView() override;

    // Never opaque: the view draws nothing.
    bool isOpaque() const { return false; }

    // Whether the key was handled.
    virtual bool performKeyEquivalent(QKeyEvent *event) = 0;

    // The modifiers of a key event that matter for key equivalents: the keypad flag is masked off.
    static Qt::KeyboardModifiers deviceIndependentModifiers(const QKeyEvent *event);
    // The character of the key as typed without modifiers (the unshifted letter, lower case).
    static QString charactersIgnoringModifiers(const QKeyEvent *event);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
