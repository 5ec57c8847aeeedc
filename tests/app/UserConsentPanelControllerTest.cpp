// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UserConsentPanelController.h"
#include "WindowTestSupport.h"
#include "app/AppDelegate.h"
#include "core/UserDefaults.h"

#include <QApplication>
#include <QCheckBox>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace corvex::test;

namespace {

TEST(UserConsentPanelControllerTest, ReturnAnswersAndTheBoxFollowsThePreference)
{
    AppDelegate::initialize();
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setBool(true, u"startAtLogIn"_s);
    UserConsentPanelController controller;
    EXPECT_TRUE(controller.startAtLogInCheckBox()->isChecked());

    bool toggledBySpace = false;
    whenModalIsUp([&](QWidget *panel) {
        QCheckBox *box = controller.startAtLogInCheckBox();
        box->setFocus();
        QTest::keyClick(box, Qt::Key_Space);
        toggledBySpace = !box->isChecked();
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : panel, Qt::Key_Return);
    });
    EXPECT_EQ(controller.runModal(), 1);
    EXPECT_TRUE(toggledBySpace);
    EXPECT_FALSE(controller.window()->isVisible());
    EXPECT_FALSE(defaults.boolForKey(u"startAtLogIn"_s)) << "unticking the box answers no";

    whenModalIsUp([](QWidget *panel) { QTest::keyClick(panel, Qt::Key_Enter); });
    EXPECT_EQ(controller.runModal(), 1) << "the panel can be asked again and Enter answers too";
    EXPECT_FALSE(defaults.boolForKey(u"startAtLogIn"_s));
}

} // namespace
