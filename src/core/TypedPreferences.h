// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <optional>

// The typed getters and setters that every preference object offers over its objectForKey and setObject.
//
// Object getters give their value only when the stored value has exactly that type (otherwise absent).
// Scalar getters accept a stored number, boolean or string and convert it the way the platform converts
// numbers and strings: a string reads as its leading number ("12abc" is 12), a string beginning with Y, T or
// a digit 1-9 (case-insensitive, after blanks, a sign and zeros) reads as true; anything else reads as 0, 0.0
// or false.
class TypedPreferences
{
public:
    virtual ~TypedPreferences();

    // The value of the key; an invalid QVariant when absent.
    virtual QVariant objectForKey(const QString &key) const = 0;
    // Stores the value (an invalid QVariant removes the key).
    virtual void setObject(const QVariant &value, const QString &key) = 0;

    // Removes the key.
    void removeObjectForKey(const QString &key);

    // A null QString when absent or not a string.
    QString stringForKey(const QString &key) const;
    std::optional<QVariantList> arrayForKey(const QString &key) const;
    std::optional<QVariantMap> dictionaryForKey(const QString &key) const;
    // A null QByteArray when absent or not data.
    QByteArray dataForKey(const QString &key) const;
    // The array only when every element is a string (an empty array qualifies).
    std::optional<QStringList> stringArrayForKey(const QString &key) const;

    qint64 integerForKey(const QString &key) const;
    float floatForKey(const QString &key) const;
    double doubleForKey(const QString &key) const;
    bool boolForKey(const QString &key) const;

    void setInteger(qint64 value, const QString &key);
    void setFloat(float value, const QString &key);
    void setDouble(double value, const QString &key);
    void setBool(bool value, const QString &key);

    // The conversions of the scalar getters, for any value.
    static qint64 integerValue(const QVariant &value);
    static double doubleValue(const QVariant &value);
    static bool boolValue(const QVariant &value);

protected:
    TypedPreferences() = default;
    TypedPreferences(const TypedPreferences &) = default;
    TypedPreferences &operator=(const TypedPreferences &) = default;
};
