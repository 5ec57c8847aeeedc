// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ResizingControlsView.h"

#include <QApplication>
#include <gtest/gtest.h>

TEST(ResizingControlsView, KeepsAtMost696WideAndCentredFollowingItsParentsSize)
{
    const QRect strip(10, 40, 600, 30);
    EXPECT_EQ(ResizingControlsView::frameForSuperviewFrame(QRect(0, 0, 1000, 400), strip),
              QRect(152, 40, 696, 30));
    EXPECT_EQ(ResizingControlsView::frameForSuperviewFrame(QRect(0, 0, 650, 400), strip),
              QRect(0, 40, 650, 30));
    EXPECT_EQ(ResizingControlsView::frameForSuperviewFrame(QRect(0, 0, 500, 400), strip), std::nullopt);
    EXPECT_EQ(ResizingControlsView::frameForSuperviewFrame(QRect(0, 0, 600, 400), strip), std::nullopt)
        << "as wide as the strip is not wider";
    EXPECT_EQ(ResizingControlsView::frameForSuperviewFrame(QRect(20, 0, 1000, 400), strip),
              QRect(172, 40, 696, 30))
        << "the superview's own x is added as it stands";
    EXPECT_EQ(ResizingControlsView::frameForSuperviewFrame(QRect(), strip), std::nullopt);

    // As a widget it follows its parent's size.
    QWidget window;
    window.resize(1200, 200);
    QWidget &parent = *new QWidget(&window); // a content view: its own x is 0
    parent.setGeometry(0, 0, 400, 100);
    auto *view = new ResizingControlsView(&parent);
    view->setGeometry(0, 10, 300, 40);
    window.show();
    parent.resize(1000, 100);
    EXPECT_EQ(view->geometry(), QRect(152, 10, 696, 40));
    parent.resize(650, 100);
    EXPECT_EQ(view->geometry(), QRect(0, 10, 650, 40));
    parent.resize(500, 100);
    EXPECT_EQ(view->geometry(), QRect(0, 10, 500, 40))
        << "a narrower parent leaves the width-following resize";
}
