// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/QZSUStandardVersionComparator.h"

#include <limits>

const QZSUStandardVersionComparator &QZSUStandardVersionComparator::defaultComparator()
{
    // A function-local static is initialised exactly once, also under concurrent first calls.
    static const QZSUStandardVersionComparator comparator;
    return comparator;
}

QZSUStandardVersionComparator::CharacterType
QZSUStandardVersionComparator::typeOfCharacter(const QString &character) const
{
    if (character == QLatin1String("."))
        return kPeriodType;
    if (!character.isEmpty() && character.at(0).isDigit())
        return kNumberType;
    return kStringType;
}

QStringList QZSUStandardVersionComparator::splitVersionString(const QString &version) const
{
    QStringList parts;
    if (version.isEmpty())
        return parts;

    QString current = version.left(1);
    CharacterType previousType = typeOfCharacter(current);
    for (qsizetype i = 1; i < version.size(); ++i) {
        const QString character = version.mid(i, 1);
        const CharacterType type = typeOfCharacter(character);
        if (type != previousType || previousType == kPeriodType) {
            parts.append(current);
            current = character;
        } else {
            current += character;
        }
        previousType = type;
    }
    parts.append(current);
    return parts;
}

QZSUStandardVersionComparator::ComparisonResult
QZSUStandardVersionComparator::compareVersion(const QString &versionA, const QString &versionB) const
{
    const QStringList partsA = splitVersionString(versionA);
    const QStringList partsB = splitVersionString(versionB);
    const qsizetype n = std::min(partsA.size(), partsB.size());

    for (qsizetype i = 0; i < n; ++i) {
        const QString &a = partsA.at(i);
        const QString &b = partsB.at(i);
        const CharacterType typeA = typeOfCharacter(a);
        const CharacterType typeB = typeOfCharacter(b);

        if (typeA == typeB) {
            if (typeA == kNumberType) {
                const int valueA = intValue(a);
                const int valueB = intValue(b);
                if (valueA > valueB)
                    return OrderedDescending;
                if (valueA < valueB)
                    return OrderedAscending;
            } else if (typeA == kStringType) {
                // Literal comparison of UTF-16 code units: upper case sorts before lower case.
                const int order = QString::compare(a, b, Qt::CaseSensitive);
                if (order != 0)
                    return order < 0 ? OrderedAscending : OrderedDescending;
            }
            continue;
        }

        if (typeA == kStringType)
            return OrderedAscending;
        if (typeB == kStringType)
            return OrderedDescending;
        // One is a number, the other a period: the number is the newer.
        return typeA == kNumberType ? OrderedDescending : OrderedAscending;
    }

    if (partsA.size() == partsB.size())
        return OrderedSame;

    // The first extra part decides: a string makes the longer version the older one (1.0b < 1.0); a number or
    // a period makes it the newer one (1.0.1 > 1.0).
    const bool aIsLonger = partsA.size() > partsB.size();
    const QString &extra = aIsLonger ? partsA.at(n) : partsB.at(n);
    const bool longerIsNewer = typeOfCharacter(extra) != kStringType;
    if (aIsLonger)
        return longerIsNewer ? OrderedDescending : OrderedAscending;
    return longerIsNewer ? OrderedAscending : OrderedDescending;
}

int QZSUStandardVersionComparator::intValue(const QString &text)
{
    qsizetype i = 0;
    while (i < text.size() && text.at(i).isSpace())
        ++i;
    bool negative = false;
    if (i < text.size() && (text.at(i) == QLatin1Char('-') || text.at(i) == QLatin1Char('+'))) {
        negative = text.at(i) == QLatin1Char('-');
        ++i;
    }
    // Accumulate in 64 bits and stop growing once past the 32-bit range: the result saturates.
    constexpr qint64 limit = qint64(std::numeric_limits<int>::max()) + 1;
    qint64 value = 0;
    for (; i < text.size() && text.at(i).isDigit(); ++i) {
        value = value * 10 + text.at(i).digitValue();
        if (value > limit)
            value = limit;
    }
    if (negative)
        return value >= limit ? std::numeric_limits<int>::min() : int(-value);
    return value >= limit ? std::numeric_limits<int>::max() : int(value);
}
