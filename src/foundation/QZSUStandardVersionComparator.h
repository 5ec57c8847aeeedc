// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

// Orders two version strings such as 2.0.5 and 2.1b3. Digits and other characters form runs and every "." is
// a part of its own; numbers compare by value, other runs literally, and a pre-release suffix (any letters)
// sorts below the release it qualifies while a trailing number or "." sorts above. Stateless and safe on any
// thread.
class QZSUStandardVersionComparator
{
public:
    // The kind of a part of a version string.
    enum CharacterType { kNumberType = 0, kStringType = 1, kPeriodType = 2 };

    // The three-way ordering of the first version relative to the second.
    enum ComparisonResult { OrderedAscending = -1, OrderedSame = 0, OrderedDescending = 1 };

    // The shared instance, created on first use (safe when first called from two threads at once).
    static const QZSUStandardVersionComparator &defaultComparator();

    QZSUStandardVersionComparator() = default;

    // Period when the whole string is ".", number when its first character is a Unicode decimal digit, string
    // otherwise (also for an empty string).
    CharacterType typeOfCharacter(const QString &character) const;

    // The runs of the version string: 1.0b3 gives 1, ".", 0, b, 3. An empty string gives an empty list.
    QStringList splitVersionString(const QString &version) const;

    // Ascending when versionA is older than versionB, descending when it is newer, same when neither.
    ComparisonResult compareVersion(const QString &versionA, const QString &versionB) const;

    // The value a number part compares by: its leading decimal digits as a signed 32-bit integer, saturating
    // at the largest (or smallest) value on overflow; 0 when it has no leading digits.
    static int intValue(const QString &text);
};
