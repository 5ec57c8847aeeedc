// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/KeyEquivalentView.h"
#include "app/PopupKeys.h"

#include <QApplication>
#include <QKeyEvent>

KeyEquivalentView::KeyEquivalentView(QWidget *parent) : QWidget(parent)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setFixedSize(0, 0);
    qApp->installEventFilter(this);
    PopupKeys::follow();
}

KeyEquivalentView::~KeyEquivalentView()
{
    qApp->removeEventFilter(this);
}

Qt::KeyboardModifiers KeyEquivalentView::deviceIndependentModifiers(const QKeyEvent *event)
{
    return event->modifiers() &
           (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

QString KeyEquivalentView::charactersIgnoringModifiers(const QKeyEvent *event)
{
    const int key = event->key();
    if (key == Qt::Key_Escape)
        return QString(QChar(0x1b));
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return QString(QChar(u'a' + (key - Qt::Key_A)));
    if (key >= Qt::Key_Space && key <= Qt::Key_AsciiTilde)
        return QString(QChar(key));
    return event->text();
}

bool KeyEquivalentView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    // The application delivers a key press to the focused widget first and then, while it is not taken, to
    // its parents: a key the view handles is taken at its first delivery, and one it does not handle is only
    // looked at again, without effect.
    // An open popup (a list, a menu) takes its own keys: Escape closes it and nothing else.
    if (PopupKeys::keyIsThePopups())
        return false;
    auto *widget = qobject_cast<QWidget *>(watched);
    if (!widget || widget->window() != window() || !window()->isVisible())
        return false;
    return performKeyEquivalent(static_cast<QKeyEvent *>(event));
}
