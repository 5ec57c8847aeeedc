// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/QZSUStandardVersionComparator.h"

#include <gtest/gtest.h>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

using Comparator = QZSUStandardVersionComparator;

Comparator::ComparisonResult compare(const char *a, const char *b)
{
    return Comparator::defaultComparator().compareVersion(QString::fromUtf8(a), QString::fromUtf8(b));
}

QStringList split(const QString &version)
{
    return Comparator::defaultComparator().splitVersionString(version);
}

TEST(QZSUStandardVersionComparatorTest, CharacterTypesAndSplitting)
{
    const Comparator &c = Comparator::defaultComparator();
    EXPECT_EQ(c.typeOfCharacter(u"."_s), Comparator::kPeriodType);
    EXPECT_EQ(c.typeOfCharacter(u"7"_s), Comparator::kNumberType);
    EXPECT_EQ(c.typeOfCharacter(u"b"_s), Comparator::kStringType);
    EXPECT_EQ(c.typeOfCharacter(u"-"_s), Comparator::kStringType);
    // Only a lone "." is a period; otherwise the first character decides.
    EXPECT_EQ(c.typeOfCharacter(u".."_s), Comparator::kStringType);
    EXPECT_EQ(c.typeOfCharacter(u"3x"_s), Comparator::kNumberType);
    // Unicode decimal digits count as digits (ARABIC-INDIC DIGIT THREE, FULLWIDTH DIGIT FIVE).
    EXPECT_EQ(c.typeOfCharacter(QString(QChar(0x0663))), Comparator::kNumberType);
    EXPECT_EQ(c.typeOfCharacter(QString(QChar(0xFF15))), Comparator::kNumberType);
    // A superscript two is a digit-like symbol but not a decimal digit.
    EXPECT_EQ(c.typeOfCharacter(QString(QChar(0x00B2))), Comparator::kStringType);
    EXPECT_EQ(c.typeOfCharacter(QString()), Comparator::kStringType);

    // A version splits where the character type changes; every period stands alone.
    using L = QStringList;
    EXPECT_EQ(split(QString()), L());
    EXPECT_EQ(split(u"1.0b3"_s), (L{"1", ".", "0", "b", "3"}));
    EXPECT_EQ(split(u"1..2"_s), (L{"1", ".", ".", "2"}));
    EXPECT_EQ(split(u"10.4rc"_s), (L{"10", ".", "4", "rc"}));
    EXPECT_EQ(split(u"..."_s), (L{".", ".", "."}));
    EXPECT_EQ(split(u"2.10.1"_s), (L{"2", ".", "10", ".", "1"}));
    EXPECT_EQ(split(u"v12-beta"_s), (L{"v", "12", "-beta"}));
    EXPECT_EQ(split(u"x"_s), (L{"x"}));
    EXPECT_EQ(split(u"2.\u0661\u0660b"_s), (L{"2", ".", u"\u0661\u0660"_s, "b"})); // ARABIC-INDIC "10"
}

TEST(QZSUStandardVersionComparatorTest, Ordering)
{
    // a, b, and whether a is older (<), the same (=) or newer (>). Numbers compare by value; pre-release
    // suffixes sort below the release, literally (upper case first); extra numbers and periods sort above; at
    // the same place a number beats a string and a period, a period beats a string; an empty version is newer
    // than a bare pre-release tag (the extra part is a string). Unicode digits count by value (ARABIC-INDIC
    // "10" is ten).
    const struct
    {
        const char *a, *b;
        char order;
    } cases[] = {{"2.0.5", "2.0.5", '='}, {"2.0.10", "2.0.9", '>'}, {"2.0.9", "2.0.10", '<'},
                 {"2.010", "2.10", '='},  {"3", "20", '<'},         {"1.0", "1.0b", '>'},
                 {"1.0b", "1.0", '<'},    {"1.0b3", "1.0", '<'},    {"1.0b3", "1.0b4", '<'},
                 {"1.0a", "1.0b", '<'},   {"1.0B", "1.0a", '<'},    {"1.0rc", "1.0rc", '='},
                 {"1.0", "1.0.1", '<'},   {"1.0.1", "1.0", '>'},    {"1.0.", "1.0", '>'},
                 {"1", "1.", '<'},        {"1.0", "1.a", '>'},      {"1.a", "1.0", '<'},
                 {"1.5", "1..5", '>'},    {"1..5", "1.5", '<'},     {"1.x", "1..", '<'},
                 {"1..", "1.x", '>'},     {"", "1", '<'},           {"1", "", '>'},
                 {"", "", '='},           {"", "beta", '>'},        {"1.\xd9\xa1\xd9\xa0", "1.9", '>'}};
    for (const auto &c : cases) {
        const Comparator::ComparisonResult expected = c.order == '<'   ? Comparator::OrderedAscending
                                                      : c.order == '=' ? Comparator::OrderedSame
                                                                       : Comparator::OrderedDescending;
        EXPECT_EQ(compare(c.a, c.b), expected) << c.a << " vs " << c.b;
    }
}

TEST(QZSUStandardVersionComparatorTest, NumbersBeyondThirtyTwoBitsSaturate)
{
    constexpr int max = std::numeric_limits<int>::max();
    EXPECT_EQ(Comparator::intValue(u"2147483647"_s), max);
    EXPECT_EQ(Comparator::intValue(u"2147483648"_s), max);
    EXPECT_EQ(Comparator::intValue(u"99999999999999999999999"_s), max);
    EXPECT_EQ(Comparator::intValue(u"-99999999999"_s), std::numeric_limits<int>::min());
    EXPECT_EQ(Comparator::intValue(u"  42abc"_s), 42);
    EXPECT_EQ(Comparator::intValue(u"abc"_s), 0);
    // Unicode digits have their decimal value: ARABIC-INDIC "12".
    EXPECT_EQ(Comparator::intValue(QString(QChar(0x0661)) + QChar(0x0662)), 12);

    // Both sides saturate, so they compare the same although their full values differ.
    EXPECT_EQ(compare("1.99999999999", "1.99999999998"), Comparator::OrderedSame);
    EXPECT_EQ(compare("1.2147483647", "1.3000000000"), Comparator::OrderedSame);
    EXPECT_EQ(compare("1.2147483646", "1.3000000000"), Comparator::OrderedAscending);
}

} // namespace
