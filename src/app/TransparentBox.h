// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

// A translucent panel placed behind content: white at 80 % opacity with a one-pixel frame in the palette's
// shadow colour, so that what lies on it stands out from the window's background without hiding it.
class TransparentBox : public QWidget
{
    Q_OBJECT

public:
    explicit TransparentBox(QWidget *parent = nullptr);
    ~TransparentBox() override;

    // Never opaque: the window's background shows through.
    bool isOpaque() const { return false; }

    // The fill: white with alpha 0.8.
    static QColor fillColor();

protected:
    void paintEvent(QPaintEvent *event) override;
};
