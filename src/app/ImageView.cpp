// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ImageView.h"

#include "app/ImageLoader.h"
#include "foundation/WriteAll.h"

#include <QPainter>

namespace {

void announcePaintedForBenchmark()
{
    // Benchmark hook (bench/cold-launch-bench.sh): with CORVEX_BENCH_PAINTED_FD set, the first paint of a
    // picture writes one line to that descriptor.
    static const int descriptor = qEnvironmentVariableIsSet("CORVEX_BENCH_PAINTED_FD")
                                      ? qEnvironmentVariableIntValue("CORVEX_BENCH_PAINTED_FD")
                                      : -1;
    static bool announced = false;
    if (descriptor < 0 || announced)
        return;
    announced = true;
    writeAll(descriptor, QByteArrayLiteral("painted\n"));
}

} // namespace

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
    painter.end();
    announcePaintedForBenchmark();
}
