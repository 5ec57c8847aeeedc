// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/TypedPreferences.h"

#include <cmath>
#include <limits>

namespace {

enum class Kind { Other, Boolean, Integer, Real, String };

Kind kindOf(const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return Kind::Boolean;
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
        return Kind::Integer;
    case QMetaType::Double:
    case QMetaType::Float:
        return Kind::Real;
    case QMetaType::QString:
        return Kind::String;
    default:
        return Kind::Other;
    }
}

qsizetype skipBlanks(const QString &text, qsizetype i)
{
    while (i < text.size() && text.at(i).isSpace())
        ++i;
    return i;
}

bool isDigit(const QString &text, qsizetype i)
{
    return i < text.size() && text.at(i) >= QLatin1Char('0') && text.at(i) <= QLatin1Char('9');
}

// The leading integer of a string (blanks, an optional sign, digits), saturating at the limits.
qint64 leadingInteger(const QString &text)
{
    qsizetype i = skipBlanks(text, 0);
    bool negative = false;
    if (i < text.size() && (text.at(i) == QLatin1Char('-') || text.at(i) == QLatin1Char('+')))
        negative = text.at(i++) == QLatin1Char('-');
    quint64 magnitude = 0;
    const quint64 limit = negative ? quint64(std::numeric_limits<qint64>::max()) + 1
                                   : quint64(std::numeric_limits<qint64>::max());
    for (; isDigit(text, i); ++i) {
        const unsigned digit = text.at(i).unicode() - u'0';
        if (magnitude > (limit - digit) / 10) {
            magnitude = limit;
            break;
        }
        magnitude = magnitude * 10 + digit;
    }
    if (negative)
        return magnitude == limit ? std::numeric_limits<qint64>::min() : -qint64(magnitude);
    return qint64(magnitude);
}

// The leading decimal number of a string: blanks, sign, digits, a fraction and an exponent.
double leadingReal(const QString &text)
{
    const qsizetype start = skipBlanks(text, 0);
    qsizetype i = start;
    if (i < text.size() && (text.at(i) == QLatin1Char('-') || text.at(i) == QLatin1Char('+')))
        ++i;
    bool digits = false;
    for (; isDigit(text, i); ++i)
        digits = true;
    if (i < text.size() && text.at(i) == QLatin1Char('.')) {
        ++i;
        for (; isDigit(text, i); ++i)
            digits = true;
    }
    if (!digits)
        return 0.0;
    if (i < text.size() && (text.at(i) == QLatin1Char('e') || text.at(i) == QLatin1Char('E'))) {
        qsizetype e = i + 1;
        if (e < text.size() && (text.at(e) == QLatin1Char('-') || text.at(e) == QLatin1Char('+')))
            ++e;
        if (isDigit(text, e)) {
            while (isDigit(text, e))
                ++e;
            i = e;
        }
    }
    bool ok = false;
    const double value = text.mid(start, i - start).toLatin1().toDouble(&ok);
    return ok ? value : 0.0;
}

// Y, T or a digit 1-9 after blanks, an optional sign and leading zeros.
bool leadingTruth(const QString &text)
{
    qsizetype i = skipBlanks(text, 0);
    if (i < text.size() && (text.at(i) == QLatin1Char('-') || text.at(i) == QLatin1Char('+')))
        ++i;
    while (i < text.size() && text.at(i) == QLatin1Char('0'))
        ++i;
    if (i >= text.size())
        return false;
    const QChar c = text.at(i).toUpper();
    return c == QLatin1Char('Y') || c == QLatin1Char('T') || (c >= QLatin1Char('1') && c <= QLatin1Char('9'));
}

} // namespace

TypedPreferences::~TypedPreferences() = default;

qint64 TypedPreferences::integerValue(const QVariant &value)
{
    switch (kindOf(value)) {
    case Kind::Boolean:
        return value.toBool() ? 1 : 0;
    case Kind::Integer:
        if (value.metaType().id() == QMetaType::ULongLong || value.metaType().id() == QMetaType::ULong)
            return qint64(qMin(value.toULongLong(), quint64(std::numeric_limits<qint64>::max())));
        return value.toLongLong();
    case Kind::Real: {
        const double d = value.toDouble();
        if (std::isnan(d))
            return 0;
        if (d >= 9223372036854775807.0)
            return std::numeric_limits<qint64>::max();
        if (d <= -9223372036854775808.0)
            return std::numeric_limits<qint64>::min();
        return qint64(d);
    }
    case Kind::String:
        return leadingInteger(value.toString());
    case Kind::Other:
        break;
    }
    return 0;
}

double TypedPreferences::doubleValue(const QVariant &value)
{
    switch (kindOf(value)) {
    case Kind::Boolean:
        return value.toBool() ? 1.0 : 0.0;
    case Kind::Integer:
    case Kind::Real:
        return value.toDouble();
    case Kind::String:
        return leadingReal(value.toString());
    case Kind::Other:
        break;
    }
    return 0.0;
}

bool TypedPreferences::boolValue(const QVariant &value)
{
    switch (kindOf(value)) {
    case Kind::Boolean:
        return value.toBool();
    case Kind::Integer:
        return value.toLongLong() != 0 || value.toULongLong() != 0;
    case Kind::Real:
        return value.toDouble() != 0.0;
    case Kind::String:
        return leadingTruth(value.toString());
    case Kind::Other:
        break;
    }
    return false;
}

void TypedPreferences::removeObjectForKey(const QString &key)
{
    setObject(QVariant(), key);
}

QString TypedPreferences::stringForKey(const QString &key) const
{
    const QVariant value = objectForKey(key);
    return kindOf(value) == Kind::String ? value.toString() : QString();
}

std::optional<QVariantList> TypedPreferences::arrayForKey(const QString &key) const
{
    const QVariant value = objectForKey(key);
    const int type = value.metaType().id();
    if (type == QMetaType::QVariantList || type == QMetaType::QStringList)
        return value.toList();
    return std::nullopt;
}

std::optional<QVariantMap> TypedPreferences::dictionaryForKey(const QString &key) const
{
    const QVariant value = objectForKey(key);
    const int type = value.metaType().id();
    if (type == QMetaType::QVariantMap || type == QMetaType::QVariantHash)
        return value.toMap();
    return std::nullopt;
}

QByteArray TypedPreferences::dataForKey(const QString &key) const
{
    const QVariant value = objectForKey(key);
    if (value.metaType().id() != QMetaType::QByteArray)
        return QByteArray();
    QByteArray data = value.toByteArray();
    if (data.isNull())
        data = QByteArray("", 0); // empty data is present, not absent
    return data;
}

std::optional<QStringList> TypedPreferences::stringArrayForKey(const QString &key) const
{
    const std::optional<QVariantList> array = arrayForKey(key);
    if (!array)
        return std::nullopt;
    QStringList strings;
    strings.reserve(array->size());
    for (const QVariant &element : *array) {
        if (kindOf(element) != Kind::String)
            return std::nullopt;
        strings.append(element.toString());
    }
    return strings;
}

qint64 TypedPreferences::integerForKey(const QString &key) const
{
    return integerValue(objectForKey(key));
}

float TypedPreferences::floatForKey(const QString &key) const
{
    return float(doubleValue(objectForKey(key)));
}

double TypedPreferences::doubleForKey(const QString &key) const
{
    return doubleValue(objectForKey(key));
}

bool TypedPreferences::boolForKey(const QString &key) const
{
    return boolValue(objectForKey(key));
}

void TypedPreferences::setInteger(qint64 value, const QString &key)
{
    setObject(QVariant(value), key);
}

void TypedPreferences::setFloat(float value, const QString &key)
{
    setObject(QVariant(double(value)), key);
}

void TypedPreferences::setDouble(double value, const QString &key)
{
    setObject(QVariant(value), key);
}

void TypedPreferences::setBool(bool value, const QString &key)
{
    setObject(QVariant(value), key);
}
