// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/TransparentBox.h"

#include <QPaintEvent>
#include <QPainter>

TransparentBox::TransparentBox(QWidget *parent) : QWidget(parent)
{
    // The parent's background is drawn first; this view only adds its translucent layer.
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAutoFillBackground(false);
}

TransparentBox::~TransparentBox() = default;

QColor TransparentBox::fillColor()
{
    QColor white(Qt::white);
    white.setAlphaF(0.8f);
    return white;
}

void TransparentBox::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    QPainter painter(this);
    const QRectF bounds = rect();
    painter.fillRect(bounds, fillColor());
    QPen frame(palette().color(QPalette::Shadow));
    frame.setWidthF(1.0);
    painter.setPen(frame);
    painter.setBrush(Qt::NoBrush);
    // The pen is centred on the path: half a pixel in keeps the whole line inside the bounds.
    painter.drawRect(bounds.adjusted(0.5, 0.5, -0.5, -0.5));
}
