// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/KeyEquivalentView.h"

#include <QAbstractButton>
#include <QPointer>

class QAbstractButton;

// An invisible view that presses its button for Escape and for Ctrl+".", whatever control has the focus.
// Used in the replace confirmation, whose Return key means Cancel, so that Escape and Ctrl+"." cancel too.
class DefaultCancelProxyView : public KeyEquivalentView
{
    Q_OBJECT

public:
    // A view without a button: it handles no key.
    explicit DefaultCancelProxyView(QWidget *parent = nullptr);
    // A view that presses the button (not owned).
    explicit DefaultCancelProxyView(QAbstractButton *delegate, QWidget *parent = nullptr);

    QAbstractButton *delegate() const { return mDelegate; }

    // Escape with no modifier, or "." with Ctrl alone, clicks the button and answers true; anything else
    // false.
    bool performKeyEquivalent(QKeyEvent *event) override;

private:
    QPointer<QAbstractButton> mDelegate;
};
