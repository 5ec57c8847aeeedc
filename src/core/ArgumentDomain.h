// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

// The argument domain of the standard preferences: "-key value" pairs on a program's command line.
namespace ArgumentDomain {

// Collects every "-key value" pair of the arguments (given without the program name). An argument that starts
// with '-' takes the next argument as its value, whatever it looks like; a last "-key" without a value and
// words that are not keys are skipped. A later pair wins over an earlier one with the same key.
QVariantMap parse(const QStringList &arguments);

// One value: a property list when the text is one — an XML property list or element ("<integer>3</integer>"),
// or the old-style text form: an array "(a, b)", a dictionary "{k = v;}", data "<0a1b>", a quoted string —
// and otherwise the text itself, as a string ("1", "/tmp/a b.png", "YES" stay strings).
QVariant parseValue(const QString &text);

} // namespace ArgumentDomain
