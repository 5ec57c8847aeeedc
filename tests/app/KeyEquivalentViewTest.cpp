// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/DefaultCancelProxyView.h"
#include "app/WhereProxyView.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QKeyEvent keyPress(int key, Qt::KeyboardModifiers modifiers, const QString &text = QString())
{
    return QKeyEvent(QEvent::KeyPress, key, modifiers, text);
}

} // namespace

TEST(DefaultCancelProxyView, PressesItsButtonForEscapeAndCtrlPeriodOnlyFromAnyControlOfItsWindow)
{
    QPushButton cancel(u"Cancel"_s);
    QSignalSpy clicks(&cancel, &QPushButton::clicked);
    DefaultCancelProxyView proxy(&cancel);
    EXPECT_FALSE(proxy.isOpaque());

    QKeyEvent escape = keyPress(Qt::Key_Escape, Qt::NoModifier, u"\x1b"_s);
    EXPECT_TRUE(proxy.performKeyEquivalent(&escape));
    QKeyEvent period = keyPress(Qt::Key_Period, Qt::ControlModifier);
    EXPECT_TRUE(proxy.performKeyEquivalent(&period));
    QKeyEvent keypadEscape = keyPress(Qt::Key_Escape, Qt::KeypadModifier);
    EXPECT_TRUE(proxy.performKeyEquivalent(&keypadEscape)) << "the keypad flag is not a modifier";
    EXPECT_EQ(clicks.count(), 3);

    QKeyEvent shiftEscape = keyPress(Qt::Key_Escape, Qt::ShiftModifier);
    QKeyEvent ctrlEscape = keyPress(Qt::Key_Escape, Qt::ControlModifier);
    QKeyEvent plainPeriod = keyPress(Qt::Key_Period, Qt::NoModifier, u"."_s);
    QKeyEvent ctrlShiftPeriod = keyPress(Qt::Key_Period, Qt::ControlModifier | Qt::ShiftModifier);
    QKeyEvent returnKey = keyPress(Qt::Key_Return, Qt::NoModifier, u"\r"_s);
    for (QKeyEvent *event : {&shiftEscape, &ctrlEscape, &plainPeriod, &ctrlShiftPeriod, &returnKey})
        EXPECT_FALSE(proxy.performKeyEquivalent(event)) << event->key() << " " << int(event->modifiers());
    EXPECT_EQ(clicks.count(), 3);

    DefaultCancelProxyView withoutButton;
    EXPECT_FALSE(withoutButton.performKeyEquivalent(&escape));

    // In a window it catches Escape typed into any of its controls.
    QWidget window;
    auto *field = new QLineEdit(&window);
    auto *button = new QPushButton(u"Cancel"_s, &window);
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(field);
    layout->addWidget(button);
    new DefaultCancelProxyView(button, &window);
    QSignalSpy windowClicks(button, &QPushButton::clicked);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    field->setFocus();

    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_EQ(windowClicks.count(), 1);
    QTest::keyClick(field, Qt::Key_Period, Qt::ControlModifier);
    EXPECT_EQ(windowClicks.count(), 2);
    QTest::keyClicks(field, u"ok."_s);
    EXPECT_EQ(windowClicks.count(), 2);
    EXPECT_EQ(field->text(), u"ok."_s) << "other keys reach the field";
}

TEST(WhereProxyView, HandsKeysToItsDelegateAndHandledOnesDoNotReachTheFocusedControl)
{
    QKeyEvent event = keyPress(Qt::Key_D, Qt::ControlModifier);
    WhereProxyView withoutDelegate;
    EXPECT_FALSE(withoutDelegate.performKeyEquivalent(&event));

    QList<int> seen;
    WhereProxyView proxy([&](QKeyEvent *key) {
        seen.append(key->key());
        return key->key() == Qt::Key_D;
    });
    EXPECT_TRUE(proxy.performKeyEquivalent(&event));
    QKeyEvent other = keyPress(Qt::Key_X, Qt::ControlModifier);
    EXPECT_FALSE(proxy.performKeyEquivalent(&other));
    EXPECT_EQ(seen, (QList<int>{Qt::Key_D, Qt::Key_X}));

    QWidget window;
    auto *field = new QLineEdit(&window);
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(field);
    int handled = 0;
    new WhereProxyView(
        [&](QKeyEvent *key) {
            if (key->key() != Qt::Key_H || key->modifiers() != (Qt::ControlModifier | Qt::ShiftModifier))
                return false;
            ++handled;
            return true;
        },
        &window);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    field->setFocus();
    QTest::keyClick(field, Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
    QTest::keyClicks(field, u"hi"_s);
    EXPECT_EQ(handled, 1) << "each key is offered once";
    EXPECT_EQ(field->text(), u"hi"_s);

    QWidget otherWindow;
    auto *otherField = new QLineEdit(&otherWindow);
    otherWindow.show();
    otherWindow.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&otherWindow));
    otherField->setFocus();
    QTest::keyClick(otherField, Qt::Key_H, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(handled, 1) << "keys of another window are not offered";
}
