// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/KeyEquivalentView.h"

#include <functional>

// An invisible view that hands every key typed in its window to a handler (the renaming window's folder
// shortcuts) before the focused control sees it.
class WhereProxyView : public KeyEquivalentView
{
    Q_OBJECT

public:
    using Handler = std::function<bool(QKeyEvent *)>;

    // A view without a handler: it handles no key.
    explicit WhereProxyView(QWidget *parent = nullptr);
    explicit WhereProxyView(Handler delegate, QWidget *parent = nullptr);

    // The handler's answer for the key; false without a handler.
    bool performKeyEquivalent(QKeyEvent *event) override;

private:
    Handler mDelegate;
};
