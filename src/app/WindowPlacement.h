// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMargins>
#include <QRect>

class QScreen;
class QWidget;

// Where renaming windows go on screen: the screen of the screenshot, frames kept on it, centring, and the
// cascade that keeps a new window from covering the previous one exactly.
class WindowPlacement
{
public:
    WindowPlacement() = delete;

    // How far each cascaded window moves right and down from the previous one.
    static constexpr int CascadeOffset = 24;

    // The screen a screenshot was taken on (counted from 1), else the primary screen.
    static QScreen *screenForNumber(qint64 screenNumber);
    // The window manager's frame around the window (estimated before the window is shown).
    static QMargins decorationMargins(const QWidget *window);
    // The window's rectangle moved and shrunk so that it fits on the screen with its frame.
    static QRect constrainFrameRect(const QRect &frame, QScreen *screen, const QMargins &decoration);
    // Moves the window to the middle of the screen.
    static void centerOnScreen(QWidget *window, QScreen *screen);
    // Places a new window: centred on the screen when it is the first one on screen, otherwise one step
    // right of and below the window placed last, starting again at the screen's top left corner when the
    // step would leave the screen. Remembers the window as the one placed last.
    static void cascadeWindow(QWidget *window, QScreen *screen);
};
