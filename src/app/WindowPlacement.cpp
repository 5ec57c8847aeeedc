// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowPlacement.h"

#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace {

// The renaming window placed last; the next one cascades from it while it is on screen.
QPointer<QWidget> &lastPlacedWindow()
{
    static QPointer<QWidget> window;
    return window;
}

} // namespace

QScreen *WindowPlacement::screenForNumber(qint64 screenNumber)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    if (screenNumber >= 1 && screenNumber <= screens.size())
        return screens.at(screenNumber - 1);
    return QGuiApplication::primaryScreen();
}

QMargins WindowPlacement::decorationMargins(const QWidget *window)
{
    if (window->isVisible() && window->frameGeometry() != window->geometry()) {
        const QRect outer = window->frameGeometry();
        const QRect inner = window->geometry();
        return QMargins(inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
                        outer.bottom() - inner.bottom());
    }
    // Not on screen yet: the window manager's frame is not known, so leave room for a usual one.
    const int border = window->style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, window);
    const int title = window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
    return QMargins(border, title + border, border, border);
}

QRect WindowPlacement::constrainFrameRect(const QRect &frame, QScreen *screen, const QMargins &decoration)
{
    if (!screen)
        return frame;
    const QRect available = screen->availableGeometry().marginsRemoved(decoration);
    QRect result = frame;
    result.setWidth(qMin(frame.width(), available.width()));
    result.setHeight(qMin(frame.height(), available.height()));
    if (result.right() > available.right())
        result.moveRight(available.right());
    if (result.bottom() > available.bottom())
        result.moveBottom(available.bottom());
    if (result.left() < available.left())
        result.moveLeft(available.left());
    if (result.top() < available.top())
        result.moveTop(available.top());
    return result;
}

void WindowPlacement::centerOnScreen(QWidget *window, QScreen *screen)
{
    if (!screen)
        return;
    const QMargins decoration = decorationMargins(window);
    QRect frame = window->geometry().marginsAdded(decoration);
    frame.moveCenter(screen->availableGeometry().center());
    window->move(frame.topLeft() + QPoint(decoration.left(), decoration.top()));
}

void WindowPlacement::cascadeWindow(QWidget *window, QScreen *screen)
{
    QPointer<QWidget> &last = lastPlacedWindow();
    const bool follows = last && last != window && last->isVisible();
    if (!follows || !screen) {
        centerOnScreen(window, screen);
        last = window;
        return;
    }
    const QMargins decoration = decorationMargins(window);
    const QRect available = screen->availableGeometry().marginsRemoved(decoration);
    QRect frame(last->pos() + QPoint(CascadeOffset, CascadeOffset), window->size());
    if (frame.right() > available.right() || frame.bottom() > available.bottom())
        frame.moveTopLeft(available.topLeft());
    window->move(constrainFrameRect(frame, screen, decoration).topLeft());
    last = window;
}
