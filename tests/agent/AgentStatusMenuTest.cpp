// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/AgentStatusMenu.h"

#include <QAction>
#include <QImage>
#include <QMenu>
#include <QSignalSpy>
#include <QSystemTrayIcon>
#include <QTest>
#include <gtest/gtest.h>

namespace {

TEST(AgentStatusMenuTest, TheMenuOffersPreferencesLogPauseAndQuitAndOpensOnALeftClick)
{
    AgentStatusMenu statusMenu;
    QSignalSpy preferences(&statusMenu, &AgentStatusMenu::preferencesRequested);
    QSignalSpy log(&statusMenu, &AgentStatusMenu::logWindowRequested);
    QSignalSpy pause(&statusMenu, &AgentStatusMenu::pauseToggled);
    QSignalSpy quit(&statusMenu, &AgentStatusMenu::quitRequested);

    QList<QAction *> actions;
    for (QAction *action : statusMenu.menu()->actions())
        if (!action->isSeparator())
            actions.append(action);
    ASSERT_EQ(actions.size(), 4);
    actions.at(0)->trigger();
    actions.at(1)->trigger();
    EXPECT_EQ(preferences.count(), 1);
    EXPECT_EQ(log.count(), 1);

    ASSERT_TRUE(actions.at(2)->isCheckable());
    actions.at(2)->trigger();
    ASSERT_EQ(pause.count(), 1);
    EXPECT_TRUE(pause.at(0).at(0).toBool());
    statusMenu.setPaused(false);
    EXPECT_FALSE(actions.at(2)->isChecked());

    actions.at(3)->trigger();
    EXPECT_EQ(quit.count(), 1);

    // A left click on the icon opens the menu; for a right click the tray opens its own context menu.
    statusMenu.trayIconActivated(QSystemTrayIcon::Context);
    EXPECT_FALSE(statusMenu.menu()->isVisible());
    statusMenu.trayIconActivated(QSystemTrayIcon::Trigger);
    EXPECT_TRUE(QTest::qWaitFor([&] { return statusMenu.menu()->isVisible(); }));
    statusMenu.menu()->hide();
}

TEST(AgentStatusMenuTest, TheGreyIconHasNoColourAndNoTrayIsNoError)
{
    const QImage colour = AgentStatusMenu::makeIcon(false).pixmap(32, 32).toImage();
    const QImage grey = AgentStatusMenu::makeIcon(true).pixmap(32, 32).toImage();
    bool colourful = false;
    bool anyInk = false;
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            const QColor c = colour.pixelColor(x, y);
            const QColor g = grey.pixelColor(x, y);
            colourful = colourful || (c.alpha() > 200 && c.blue() != c.red());
            anyInk = anyInk || g.alpha() > 200;
            if (g.alpha() > 0) {
                EXPECT_TRUE(g.red() == g.green() && g.green() == g.blue()) << x << "," << y;
            }
        }
    }
    EXPECT_TRUE(colourful);
    EXPECT_TRUE(anyInk);

    AgentStatusMenu statusMenu;
    statusMenu.setGrayscale(true);
    const bool shown = statusMenu.setVisible(true);
    EXPECT_EQ(shown, QSystemTrayIcon::isSystemTrayAvailable() && statusMenu.isVisible());
    EXPECT_FALSE(statusMenu.setVisible(false));
    EXPECT_FALSE(statusMenu.isVisible());
}

} // namespace
