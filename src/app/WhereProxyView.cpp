// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WhereProxyView.h"

WhereProxyView::WhereProxyView(QWidget *parent) : KeyEquivalentView(parent) {}

WhereProxyView::WhereProxyView(Handler delegate, QWidget *parent)
    : KeyEquivalentView(parent), mDelegate(std::move(delegate))
{
}

bool WhereProxyView::performKeyEquivalent(QKeyEvent *event)
{
    return mDelegate ? mDelegate(event) : false;
}
