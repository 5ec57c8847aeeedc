// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QWidget>

// Shows one picture, scaled down proportionally to fit and centred; a picture smaller than the view is shown
// at its own size. Until a picture is set the view stays empty.
class ImageView : public QWidget
{
    Q_OBJECT

public:
    explicit ImageView(QWidget *parent = nullptr);

    // The picture; displayCopy, when given, is an already scaled copy that is used while it fits the view.
    void setImage(const QImage &image, const QImage &displayCopy = QImage());
    const QImage &image() const { return mImage; }

    // The size the window is designed around.
    void setDesignedSize(const QSize &size);
    QSize sizeHint() const override { return mDesignedSize; }

    // Where the picture is drawn in the view's coordinates.
    QRect imageRect() const;

Q_SIGNALS:
    // The view is drawn larger than the picture it holds has pixels for (a reduced copy in a window made
    // larger): a copy of that many device pixels would be sharper. Sent on every such paint.
    void sharperImageWanted(const QSize &pixels);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QImage mImage;
    QImage mScaled;
    QSize mDesignedSize{480, 300};
};
