// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FileNameStringFormatter.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(FileNameStringFormatter, ColonsBecomeHyphensTypedOrPastedAndTheAnswerSaysSo)
{
    FileNameStringFormatter formatter;
    QString partial = u"a:b::c"_s;
    EXPECT_FALSE(formatter.isPartialStringValid(&partial));
    EXPECT_EQ(partial, u"a-b--c"_s);

    QString plain = u"a/b.png"_s;
    EXPECT_TRUE(formatter.isPartialStringValid(&plain));
    EXPECT_EQ(plain, u"a/b.png"_s) << "a slash stays in the field";

    QString value;
    EXPECT_TRUE(formatter.getObjectValue(&value, u"x:y"_s));
    EXPECT_EQ(value, u"x:y"_s) << "the final value is never changed";
    EXPECT_EQ(formatter.stringForObjectValue(u"z"_s), u"z"_s);

    // Typed and pasted colons show as hyphens in the field.
    QLineEdit field;
    field.setValidator(new FileNameStringFormatter(&field));
    field.show();
    field.setFocus();
    QTest::keyClicks(&field, u"a:b"_s);
    EXPECT_EQ(field.text(), u"a-b"_s);

    field.clear();
    QApplication::clipboard()->setText(u"x::y"_s);
    field.paste();
    EXPECT_EQ(field.text(), u"x--y"_s);
    EXPECT_EQ(field.cursorPosition(), 4) << "the cursor stays after the pasted text";
}
