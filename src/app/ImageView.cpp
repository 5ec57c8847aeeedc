// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ImageView.h"

#include "app/ImageLoader.h"

#include <QPainter>

ImageView::ImageView(QWidget *parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMinimumSize(64, 64);
}

void ImageView::setImage(const QImage &image, const QImage &displayCopy)
{
    mImage = image;
    mScaled = displayCopy;
    update();
}

void ImageView::setDesignedSize(const QSize &size)
{
    mDesignedSize = size;
    updateGeometry();
}

QRect ImageView::imageRect() const
{
    if (mImage.isNull())
        return {};
    const QSizeF logical = QSizeF(mImage.size()) / mImage.devicePixelRatio();
    const QSize shown = logical.scaled(QSizeF(size()), Qt::KeepAspectRatio).boundedTo(logical).toSize();
    return QRect(QPoint((width() - shown.width()) / 2, (height() - shown.height()) / 2), shown);
}

void ImageView::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
    if (mImage.isNull())
        return;
    const QRect target = imageRect();
    const QSize pixels = target.size() * devicePixelRatioF();
    const bool fits =
        qAbs(mScaled.width() - pixels.width()) <= 1 && qAbs(mScaled.height() - pixels.height()) <= 1;
    if (!fits)
        mScaled = ImageLoader::scaledToFit(mImage, pixels);
    if (pixels.width() > mImage.width() + 1 || pixels.height() > mImage.height() + 1)
        Q_EMIT sharperImageWanted(pixels);
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, mScaled);
}
