// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DefaultCancelProxyView.h"

#include <QAbstractButton>
#include <QKeyEvent>

DefaultCancelProxyView::DefaultCancelProxyView(QWidget *parent) : KeyEquivalentView(parent) {}

DefaultCancelProxyView::DefaultCancelProxyView(QAbstractButton *delegate, QWidget *parent)
    : KeyEquivalentView(parent), mDelegate(delegate)
{
}

bool DefaultCancelProxyView::performKeyEquivalent(QKeyEvent *event)
{
    if (!mDelegate)
        return false;
    const Qt::KeyboardModifiers modifiers = deviceIndependentModifiers(event);
    if (modifiers != Qt::NoModifier && modifiers != Qt::ControlModifier)
        return false;
    const QString characters = charactersIgnoringModifiers(event);
    const bool matches =
        modifiers == Qt::NoModifier ? characters == QString(QChar(0x1b)) : characters == QStringLiteral(".");
    if (!matches)
        return false;
    mDelegate->click();
    return true;
}
