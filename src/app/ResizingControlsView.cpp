// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ResizingControlsView.h"

#include <QEvent>
#include <QResizeEvent>

ResizingControlsView::ResizingControlsView(QWidget *parent) : QWidget(parent)
{
    if (parent)
        parent->installEventFilter(this);
}

std::optional<QRect> ResizingControlsView::frameForSuperviewFrame(const QRect &superviewFrame,
                                                                  const QRect &frame)
{
    if (superviewFrame.width() > MaximumWidth) {
        const int x = int(superviewFrame.width() * 0.5 + superviewFrame.x() - MaximumWidth / 2);
        return QRect(x, frame.y(), MaximumWidth, frame.height());
    }
    if (superviewFrame.width() > frame.width())
        return QRect(0, frame.y(), superviewFrame.width(), frame.height());
    return std::nullopt;
}

void ResizingControlsView::resizeWithOldSuperviewSize(const QSize &oldSize)
{
    const QRect superviewFrame = parentWidget() ? parentWidget()->geometry() : QRect();
    // The base resize: the strip's width follows the superview's change of width.
    if (oldSize.isValid() && oldSize.width() != superviewFrame.width()) {
        QRect base = geometry();
        base.setWidth(qMax(0, base.width() + superviewFrame.width() - oldSize.width()));
        setGeometry(base);
    }
    const std::optional<QRect> frame = frameForSuperviewFrame(superviewFrame, geometry());
    if (!frame)
        return;
    if (parentWidget())
        parentWidget()->update(geometry());
    setGeometry(*frame);
    update();
}

bool ResizingControlsView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        resizeWithOldSuperviewSize(static_cast<QResizeEvent *>(event)->oldSize());
    return QWidget::eventFilter(watched, event);
}
