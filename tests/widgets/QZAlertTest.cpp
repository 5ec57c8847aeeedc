// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/QZAlert.h"
#include "foundation/CorvexError.h"

#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include "TestSupport.h"

using namespace Qt::StringLiterals;

using corvex::test::waitUntil;

TEST(QZAlert, SheetsAnswerOnceWithTheButtonsCodeEscapeCancelsAndErrorsReportNoRecovery)
{
    QWidget window;
    window.show();
    for (int which = 0; which < 3; ++which) {
        auto *alert = new QZAlert;
        alert->setMessageText(u"Message"_s);
        alert->addButtonWithTitle(u"First"_s);
        alert->addButtonWithTitle(u"Cancel"_s);
        alert->addButtonWithTitle(u"Third"_s);
        QList<qint64> answers;
        alert->qzBeginSheetModalForWindow(&window, [&](qint64 code) { answers.append(code); });
        EXPECT_EQ(QZAlert::sheetOfWindow(&window), alert);
        EXPECT_EQ(alert->windowModality(), Qt::WindowModal);
        EXPECT_EQ(alert->defaultButton(), alert->buttons().at(0)) << "the first button takes Return";
        EXPECT_EQ(alert->escapeButton(), alert->buttons().at(1)) << "Cancel takes Escape";
        alert->buttons().at(which)->click();
        ASSERT_TRUE(waitUntil([&] { return !answers.isEmpty(); }));
        QCoreApplication::processEvents(); // a second answer would be on its way now
        EXPECT_EQ(answers, QList<qint64>{1000 + which});
        EXPECT_EQ(QZAlert::sheetOfWindow(&window), nullptr);
    }

    // Escape answers Cancel; an alert without buttons gets OK.
    auto *replace = new QZAlert;
    replace->addButtonWithTitle(u"Replace"_s);
    replace->addButtonWithTitle(u"Cancel"_s);
    qint64 answer = 0;
    replace->qzBeginSheetModalForWindow(&window, [&](qint64 code) { answer = code; });
    QTest::keyClick(replace, Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return answer != 0; }));
    EXPECT_EQ(answer, QZAlert::NSAlertSecondButtonReturn);

    auto *plain = new QZAlert;
    plain->qzBeginSheetModalForWindow(&window, {});
    ASSERT_EQ(plain->buttons().size(), 1);
    EXPECT_EQ(plain->buttons().first()->text(), u"OK"_s);
    plain->buttons().first()->click();
    ASSERT_TRUE(waitUntil([&] { return QZAlert::sheetOfWindow(&window) == nullptr; }));

    // A presented error shows its texts and reports no recovery.
    CorvexError error(CorvexError::CocoaErrorDomain, CorvexError::FileNoSuchFileError,
                      {{CorvexError::LocalizedDescriptionKey, u"The file is gone."_s},
                       {CorvexError::LocalizedRecoverySuggestionErrorKey, u"Look elsewhere."_s}});
    int calls = 0;
    bool recovered = true;
    QZAlert::presentError(error, &window, [&](bool didRecover) {
        ++calls;
        recovered = didRecover;
    });
    QZAlert *sheet = QZAlert::sheetOfWindow(&window);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->messageText(), u"The file is gone."_s);
    EXPECT_EQ(sheet->informativeText(), u"Look elsewhere."_s);
    sheet->buttons().first()->click();
    ASSERT_TRUE(waitUntil([&] { return calls == 1; }));
    EXPECT_FALSE(recovered);
}
