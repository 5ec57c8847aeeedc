// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QWidget>
#include <optional>

// A horizontal strip of controls inside a resizable window: it spans its parent's width up to 696 pixels and
// stays centred beyond that. It follows its parent's size by itself; the parent must not lay it out.
class ResizingControlsView : public QWidget
{
    Q_OBJECT

public:
    static constexpr int MaximumWidth = 696;

    explicit ResizingControlsView(QWidget *parent = nullptr);

    // The strip's frame for the parent's frame S and the strip's frame V: 696 wide at S.x + S.width/2 - 348
    // when S is wider than 696; S's width at x 0 when S is wider than V; otherwise nothing (V stays).
    static std::optional<QRect> frameForSuperviewFrame(const QRect &superviewFrame, const QRect &frame);

    // Lets the strip's width follow the parent's change of width (from oldSize), then applies the rule above
    // to the parent's present frame (a missing parent counts as a zero frame).
    void resizeWithOldSuperviewSize(const QSize &oldSize);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
