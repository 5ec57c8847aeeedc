// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QLocale>
#include <QSizeF>
#include <QString>
#include <QVariantMap>
#include <functional>
#include <optional>

// Automatic renaming patterns: a pattern is a list of pieces joined by ":", each either exactly one token
// ("$DateYYYY$", "$Counter3$", "$Dimensions2$", ...) or literal text. This class turns a pattern into a file
// name (no folder, no extension); where the counter and the image size come from is the caller's business.
//
// The four date and time styles follow the locale (QLocale(), the system's unless a default was set):
//   date short   the locale's short date format                          3/5/13
//   date medium  the long format without the weekday, abbreviated month  Mar 5, 2013
//   date long    the long format without the weekday                     March 5, 2013
//   date full    the long format with the weekday                        Tuesday, March 5, 2013
//   time short   the locale's short time format (hours and minutes)      9:07 AM
//   time medium  the long time format without the time zone              9:07:03 AM
//   time long    the long time format, with the zone's abbreviation      9:07:03 AM CET
//   time full    the long time format with the zone's long name          9:07:03 AM Central European Standard
//   Time
// Dates and times are shown in the local time zone.
class RenamePattern
{
public:
    RenamePattern() = delete;

    enum Style { ShortStyle = 1, MediumStyle = 2, LongStyle = 3, FullStyle = 4 };

    // The sources of the tokens that are not dates: the next counter value (advances the counter) and the
    // size of the image in points (measured anew for each dimension token).
    struct Sources
    {
        std::function<qint64()> nextCounterValue;
        std::function<QSizeF()> dimensions;
    };

    // The name the pattern gives a file dated `date`. Every piece appends its token's output or itself; an
    // empty or null pattern gives an empty name. Finally every ":" becomes "-" and then every "/" becomes ":"
    // (the file system shows ":" as "/": a slash typed into the pattern stays a slash to the user, a colon of
    // a date or time text becomes a hyphen).
    static QString fileName(const QString &pattern, const QDateTime &date, const Sources &sources,
                            const QLocale &locale = QLocale());

    // The output of one piece: its token's text, or the piece itself when it is no token.
    static QString expandPiece(const QString &piece, const QDateTime &date, const Sources &sources,
                               const QLocale &locale = QLocale());

    // True when the piece is exactly one of the tokens (case-sensitive).
    static bool isToken(const QString &piece);

    // Every token, in the order of the token table.
    static QStringList allTokens();

    // The date of a screenshot's attributes: the creation date, else the modification date, else now.
    static QDateTime dateFromFileAttributes(const std::optional<QVariantMap> &fileAttributes);

    // The QLocale format strings of the four styles, and the formatted date or time ("/" and ":" kept).
    static QString dateFormat(Style style, const QLocale &locale = QLocale());
    static QString timeFormat(Style style, const QDateTime &date, const QLocale &locale = QLocale());
    static QString dateString(const QDateTime &date, Style style, const QLocale &locale = QLocale());
    static QString timeString(const QDateTime &date, Style style, const QLocale &locale = QLocale());
};
