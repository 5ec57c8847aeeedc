// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FileNameStringFormatter.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

TEST(FileNameStringFormatter, ColonsBecomeHyphensAndTheAnswerSaysSo)
{
    FileNameStringFormatter formatter;
    QString partial = QStringLiteral("a:b::c");
    EXPECT_FALSE(formatter.isPartialStringValid(&partial));
    EXPECT_EQ(partial, QStringLiteral("a-b--c"));

    QString plain = QStringLiteral("a/b.png");
    EXPECT_TRUE(formatter.isPartialStringValid(&plain));
    EXPECT_EQ(plain, QStringLiteral("a/b.png")) << "a slash stays in the field";

    QString value;
    EXPECT_TRUE(formatter.getObjectValue(&value, QStringLiteral("x:y")));
    EXPECT_EQ(value, QStringLiteral("x:y")) << "the final value is never changed";
    EXPECT_EQ(formatter.stringForObjectValue(QStringLiteral("z")), QStringLiteral("z"));
}

TEST(FileNameStringFormatter, TypedAndPastedColonsShowAsHyphensInTheField)
{
    QLineEdit field;
    field.setValidator(new FileNameStringFormatter(&field));
    field.show();
    field.setFocus();
    QTest::keyClicks(&field, QStringLiteral("a:b"));
    EXPECT_EQ(field.text(), QStringLiteral("a-b"));

    field.clear();
    QApplication::clipboard()->setText(QStringLiteral("x::y"));
    field.paste();
    EXPECT_EQ(field.text(), QStringLiteral("x--y"));
    EXPECT_EQ(field.cursorPosition(), 4) << "the cursor stays after the pasted text";
}
