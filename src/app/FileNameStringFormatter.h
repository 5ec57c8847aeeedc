// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QValidator>

// The formatter of the renaming window's name field: a colon typed or pasted becomes a hyphen at once. A
// slash stays in the field; the rename turns it into a colon in the stored name.
class FileNameStringFormatter : public QValidator
{
    Q_OBJECT

public:
    explicit FileNameStringFormatter(QObject *parent = nullptr);

    // The value is the string itself.
    QString stringForObjectValue(const QString &object) const { return object; }
    // Every string is a valid final value, unchanged.
    bool getObjectValue(QString *object, const QString &string) const;
    // True when the partial string holds no ":"; otherwise every ":" in it is replaced by "-" and the answer
    // is false (the field then shows the changed string).
    bool isPartialStringValid(QString *partialString) const;

    // The field's check: applies isPartialStringValid() to what is being typed. Never refuses input.
    State validate(QString &input, int &pos) const override;
};
