// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UserConsentPanelController.h"
#include "app/AppDelegate.h"
#include "core/UserDefaults.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialog>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// Once the panel is the modal window, runs the step on it (retrying until it is up).
void whenPanelIsUp(const std::function<void(QDialog *)> &step)
{
    QTimer::singleShot(30, [step] {
        auto *panel = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!panel || !panel->isVisible())
            return whenPanelIsUp(step);
        step(panel);
        // A key the panel did not take would leave it up for ever: end it as unanswered instead.
        QTimer::singleShot(5000, panel, [panel] { panel->done(0); });
    });
}

TEST(UserConsentPanelControllerTest, ReturnAnswersAndTheBoxFollowsThePreference)
{
    AppDelegate::initialize();
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    defaults.setBool(true, u"startAtLogIn"_s);
    UserConsentPanelController controller;
    EXPECT_TRUE(controller.startAtLogInCheckBox()->isChecked());

    bool toggledBySpace = false;
    whenPanelIsUp([&](QDialog *panel) {
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

    whenPanelIsUp([](QDialog *panel) { QTest::keyClick(panel, Qt::Key_Enter); });
    EXPECT_EQ(controller.runModal(), 1) << "the panel can be asked again and Enter answers too";
    EXPECT_FALSE(defaults.boolForKey(u"startAtLogIn"_s));
}

} // namespace
