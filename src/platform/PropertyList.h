// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

// Property lists: the value types that preferences, notification payloads, bookmarks and Info.plist files
// hold, mapped to QVariant:
//   string      QString
//   integer     qint64 (also accepted: int, uint, qlonglong, qulonglong)
//   real        double (also accepted: float)
//   boolean     bool
//   data        QByteArray
//   date        QDateTime (the binary form keeps milliseconds; the XML form, as it is defined, whole seconds)
//   array       QVariantList (also accepted: QStringList)
//   dictionary  QVariantMap
//   null marker std::nullptr_t, see nullMarker(); only the binary form carries it
namespace PropertyList {

enum class Format { Xml, Binary };

// The null marker: the value a dictionary holds where it means "nothing here".
QVariant nullMarker();
bool isNullMarker(const QVariant &value);

// True when the value (and everything inside it) is of a property-list type.
bool isPropertyListValue(const QVariant &value);

// Serialises a value. Returns an empty array (and sets *errorText when given) when the value holds
// something that is not a property-list type.
QByteArray serialize(const QVariant &value, Format format, QString *errorText = nullptr);

// Parses XML or binary bytes (the format is recognised). Returns an invalid QVariant (and sets *errorText)
// when the bytes are not a property list.
QVariant parse(const QByteArray &bytes, QString *errorText = nullptr);

// Reads and parses a file; an invalid QVariant when it cannot be read or parsed.
QVariant readFile(const QString &path, QString *errorText = nullptr);

// Exact equality of two property-list values: types must match (an integer is not a real, a date compares to
// the millisecond), dictionaries compare key by key.
bool equal(const QVariant &a, const QVariant &b);

} // namespace PropertyList
