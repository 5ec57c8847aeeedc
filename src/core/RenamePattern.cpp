// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/RenamePattern.h"

#include <QHash>
#include <QTimeZone>
#include <cmath>

namespace FormatEditing {

// One piece of a QLocale format string: a run of one unquoted ASCII letter (a field such as "MMMM"), or
// anything else (literal text, quoted or not). `raw` is the piece exactly as written.
struct Piece
{
    QString raw;
    bool field = false;
    QChar letter;
};

QList<Piece> tokenize(const QString &format)
{
    QList<Piece> pieces;
    qsizetype i = 0;
    while (i < format.size()) {
        const QChar c = format.at(i);
        if (c.unicode() < 128 && c.isLetter()) {
            qsizetype j = i;
            while (j < format.size() && format.at(j) == c)
                ++j;
            pieces.append(Piece{format.mid(i, j - i), true, c});
            i = j;
        } else if (c == QLatin1Char('\'')) {
            // Quoted text runs to the next lone quote; "''" is a quote character.
            qsizetype j = i + 1;
            while (j < format.size()) {
                if (format.at(j) == QLatin1Char('\'')) {
                    if (j + 1 < format.size() && format.at(j + 1) == QLatin1Char('\''))
                        j += 2;
                    else
                        break;
                } else {
                    ++j;
                }
            }
            j = std::min(j + 1, format.size());
            pieces.append(Piece{format.mid(i, j - i), false, QChar()});
            i = j;
        } else {
            pieces.append(Piece{QString(c), false, QChar()});
            ++i;
        }
    }
    return pieces;
}

QString join(const QList<Piece> &pieces)
{
    QString format;
    for (const Piece &piece : pieces)
        format += piece.raw;
    return format;
}

// What may separate a removed field from its neighbours: blanks, commas and brackets (not full stops, which
// some locales write after a number, as in "d.").
bool isSeparator(const Piece &piece)
{
    if (piece.field || piece.raw.size() != 1)
        return false;
    const QChar c = piece.raw.at(0);
    return c.isSpace() || c == QLatin1Char(',') || c == QChar(0x060C) || c == QChar(0xFF0C) ||
           c == QLatin1Char('(') || c == QLatin1Char(')');
}

// Removes the fields the predicate picks, with the separators that joined them to the rest: those after a
// field at the start or in the middle, those on both sides of a field at the end.
QString removeFields(const QString &format, const std::function<bool(const Piece &)> &picked)
{
    QList<Piece> pieces = tokenize(format);
    for (qsizetype i = 0; i < pieces.size();) {
        if (!pieces.at(i).field || !picked(pieces.at(i))) {
            ++i;
            continue;
        }
        qsizetype end = i + 1;
        while (end < pieces.size() && isSeparator(pieces.at(end)))
            ++end;
        qsizetype begin = i;
        if (end == pieces.size()) {
            while (begin > 0 && isSeparator(pieces.at(begin - 1)))
                --begin;
        }
        pieces.remove(begin, end - begin);
        i = begin;
    }
    return join(pieces);
}

bool isWeekday(const Piece &piece)
{
    return piece.letter == QLatin1Char('d') && piece.raw.size() >= 3;
}

bool isTimeZone(const Piece &piece)
{
    return piece.letter == QLatin1Char('t');
}

bool isSecond(const Piece &piece)
{
    return piece.letter == QLatin1Char('s') || piece.letter == QLatin1Char('z');
}

bool isSpelledMonth(const Piece &piece)
{
    return piece.letter == QLatin1Char('M') && piece.raw.size() >= 3;
}

bool hasField(const QString &format, const std::function<bool(const Piece &)> &predicate)
{
    for (const Piece &piece : tokenize(format)) {
        if (piece.field && predicate(piece))
            return true;
    }
    return false;
}

QString quoted(const QString &text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + escaped + QLatin1Char('\'');
}

} // namespace FormatEditing

namespace {

QString number(const char *format, qint64 value)
{
    return QString::asprintf(format, static_cast<long long>(value));
}

qint64 truncated(double value)
{
    // Toward zero; sizes that are not numbers count as 0.
    return std::isfinite(value) ? static_cast<qint64>(std::trunc(value)) : 0;
}

using TokenFunction = QString (*)(const QDateTime &local, const RenamePattern::Sources &sources,
                                  const QLocale &);

QString dateText(const QDateTime &local, RenamePattern::Style style, const QLocale &locale)
{
    return RenamePattern::dateString(local, style, locale).replace(QLatin1Char('/'), QLatin1Char('-'));
}

QString timeText(const QDateTime &local, RenamePattern::Style style, const QLocale &locale)
{
    return RenamePattern::timeString(local, style, locale).replace(QLatin1Char(':'), QLatin1Char('.'));
}

QString counter(const char *format, const RenamePattern::Sources &sources)
{
    return number(format, sources.nextCounterValue ? sources.nextCounterValue() : 1);
}

QString dimensions(const char *format, const RenamePattern::Sources &sources)
{
    const QSizeF size = sources.dimensions ? sources.dimensions() : QSizeF(0, 0);
    return QString::asprintf(format, static_cast<long long>(truncated(size.width())),
                             static_cast<long long>(truncated(size.height())));
}

const QList<std::pair<QString, TokenFunction>> &tokenTable()
{
    using S = RenamePattern::Sources;
    using L = QLocale;
    using R = RenamePattern;
    static const QList<std::pair<QString, TokenFunction>> table = {
        {"$DateShort$",
         [](const QDateTime &d, const S &, const L &l) { return dateText(d, R::ShortStyle, l); }},
        {"$DateMedium$",
         [](const QDateTime &d, const S &, const L &l) { return dateText(d, R::MediumStyle, l); }},
        {"$DateLong$",
         [](const QDateTime &d, const S &, const L &l) { return dateText(d, R::LongStyle, l); }},
        {"$DateFull$",
         [](const QDateTime &d, const S &, const L &l) { return dateText(d, R::FullStyle, l); }},
        // Deliberately not a modulo: 1999 gives "-1", 2105 gives "105".
        {"$DateYY$",
         [](const QDateTime &d, const S &, const L &) { return number("%02lld", d.date().year() - 2000); }},
        {"$DateYYYY$",
         [](const QDateTime &d, const S &, const L &) { return number("%04lld", d.date().year()); }},
        {"$DateM$",
         [](const QDateTime &d, const S &, const L &) { return number("%lld", d.date().month()); }},
        {"$DateMM$",
         [](const QDateTime &d, const S &, const L &) { return number("%02lld", d.date().month()); }},
        {"$DateD$", [](const QDateTime &d, const S &, const L &) { return number("%lld", d.date().day()); }},
        {"$DateDD$",
         [](const QDateTime &d, const S &, const L &) { return number("%02lld", d.date().day()); }},
        {"$TimeShort$",
         [](const QDateTime &d, const S &, const L &l) { return timeText(d, R::ShortStyle, l); }},
        {"$TimeMedium$",
         [](const QDateTime &d, const S &, const L &l) { return timeText(d, R::MediumStyle, l); }},
        {"$TimeLong$",
         [](const QDateTime &d, const S &, const L &l) { return timeText(d, R::LongStyle, l); }},
        {"$TimeFull$",
         [](const QDateTime &d, const S &, const L &l) { return timeText(d, R::FullStyle, l); }},
        {"$TimeH$", [](const QDateTime &d, const S &, const L &) { return number("%lld", d.time().hour()); }},
        {"$TimeHH$",
         [](const QDateTime &d, const S &, const L &) { return number("%02lld", d.time().hour()); }},
        {"$TimeM$",
         [](const QDateTime &d, const S &, const L &) { return number("%lld", d.time().minute()); }},
        {"$TimeMM$",
         [](const QDateTime &d, const S &, const L &) { return number("%02lld", d.time().minute()); }},
        {"$TimeS$",
         [](const QDateTime &d, const S &, const L &) { return number("%lld", d.time().second()); }},
        {"$TimeSS$",
         [](const QDateTime &d, const S &, const L &) { return number("%02lld", d.time().second()); }},
        {"$Counter1$", [](const QDateTime &, const S &s, const L &) { return counter("%lld", s); }},
        {"$Counter2$", [](const QDateTime &, const S &s, const L &) { return counter("%02lld", s); }},
        {"$Counter3$", [](const QDateTime &, const S &s, const L &) { return counter("%03lld", s); }},
        {"$Counter4$", [](const QDateTime &, const S &s, const L &) { return counter("%04lld", s); }},
        {"$Dimensions1$",
         [](const QDateTime &, const S &s, const L &) { return dimensions("%lldx%lld", s); }},
        {"$Dimensions2$",
         [](const QDateTime &, const S &s, const L &) { return dimensions("%lld x %lld", s); }},
    };
    return table;
}

const QHash<QString, TokenFunction> &tokenLookup()
{
    static const QHash<QString, TokenFunction> lookup = [] {
        QHash<QString, TokenFunction> hash;
        for (const auto &[token, function] : tokenTable())
            hash.insert(token, function);
        return hash;
    }();
    return lookup;
}

} // namespace

QString RenamePattern::fileName(const QString &pattern, const QDateTime &date, const Sources &sources,
                                const QLocale &locale)
{
    QString result;
    if (pattern.isEmpty())
        return result;
    const QDateTime local = date.toLocalTime();
    for (const QString &piece : pattern.split(QLatin1Char(':')))
        result += expandPiece(piece, local, sources, locale);
    // This order is required: the other would turn every slash into a hyphen.
    result.replace(QLatin1Char(':'), QLatin1Char('-'));
    result.replace(QLatin1Char('/'), QLatin1Char(':'));
    return result;
}

QString RenamePattern::expandPiece(const QString &piece, const QDateTime &date, const Sources &sources,
                                   const QLocale &locale)
{
    const auto found = tokenLookup().constFind(piece);
    if (found == tokenLookup().constEnd())
        return piece;
    return found.value()(date.toLocalTime(), sources, locale);
}

bool RenamePattern::isToken(const QString &piece)
{
    return tokenLookup().contains(piece);
}

QStringList RenamePattern::allTokens()
{
    QStringList tokens;
    for (const auto &entry : tokenTable())
        tokens.append(entry.first);
    return tokens;
}

QDateTime RenamePattern::dateFromFileAttributes(const std::optional<QVariantMap> &fileAttributes)
{
    if (fileAttributes) {
        for (const char *key : {"NSFileCreationDate", "NSFileModificationDate"}) {
            const QVariant value = fileAttributes->value(QString::fromLatin1(key));
            if (value.typeId() == QMetaType::QDateTime && value.toDateTime().isValid())
                return value.toDateTime();
        }
    }
    return QDateTime::currentDateTime();
}

QString RenamePattern::dateFormat(Style style, const QLocale &locale)
{
    using namespace FormatEditing;
    if (style == ShortStyle) {
        // The short style is all digits. Where the locale spells the month there (the C locale: "d MMM
        // yyyy", which is the medium style), it is the POSIX locale's numeric date instead.
        const QString shortFormat = locale.dateFormat(QLocale::ShortFormat);
        return hasField(shortFormat, isSpelledMonth) ? QStringLiteral("MM/dd/yy") : shortFormat;
    }
    const QString longFormat = locale.dateFormat(QLocale::LongFormat);
    if (style == FullStyle)
        return hasField(longFormat, isWeekday) ? longFormat : QStringLiteral("dddd, ") + longFormat;
    const QString withoutWeekday = removeFields(longFormat, isWeekday);
    if (style == LongStyle)
        return withoutWeekday;
    // Medium: the full month name becomes its abbreviation.
    QList<Piece> pieces = tokenize(withoutWeekday);
    for (Piece &piece : pieces) {
        if (piece.field && piece.letter == QLatin1Char('M') && piece.raw.size() == 4)
            piece.raw = QStringLiteral("MMM");
    }
    return join(pieces);
}

QString RenamePattern::timeFormat(Style style, const QDateTime &date, const QLocale &locale)
{
    using namespace FormatEditing;
    if (style == ShortStyle) {
        // The short style has no seconds, even where the locale's has (the C locale: "HH:mm:ss").
        QString shortFormat = removeFields(locale.timeFormat(QLocale::ShortFormat), isSecond);
        while (shortFormat.endsWith(QLatin1Char(':')) || shortFormat.endsWith(QLatin1Char('.')))
            shortFormat.chop(1);
        return shortFormat;
    }
    QString longFormat = locale.timeFormat(QLocale::LongFormat);
    if (style == MediumStyle)
        return removeFields(longFormat, isTimeZone);
    if (!hasField(longFormat, isTimeZone))
        longFormat += QStringLiteral(" t");
    if (style == LongStyle)
        return longFormat;
    // Full: the zone's long name in place of its abbreviation.
    const QDateTime local = date.toLocalTime();
    const QString zoneName = local.timeZone().displayName(local, QTimeZone::LongName, locale);
    if (zoneName.isEmpty())
        return longFormat;
    QList<Piece> pieces = tokenize(longFormat);
    for (Piece &piece : pieces) {
        if (piece.field && isTimeZone(piece))
            piece = Piece{quoted(zoneName), false, QChar()};
    }
    return join(pieces);
}

QString RenamePattern::dateString(const QDateTime &date, Style style, const QLocale &locale)
{
    return locale.toString(date.toLocalTime().date(), dateFormat(style, locale));
}

QString RenamePattern::timeString(const QDateTime &date, Style style, const QLocale &locale)
{
    const QDateTime local = date.toLocalTime();
    return locale.toString(local, timeFormat(style, local, locale));
}
