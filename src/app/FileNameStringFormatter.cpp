// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FileNameStringFormatter.h"

FileNameStringFormatter::FileNameStringFormatter(QObject *parent) : QValidator(parent) {}

bool FileNameStringFormatter::getObjectValue(QString *object, const QString &string) const
{
    if (object)
        *object = string;
    return true;
}

bool FileNameStringFormatter::isPartialStringValid(QString *partialString) const
{
    if (!partialString || !partialString->contains(u':'))
        return true;
    partialString->replace(u':', u'-');
    return false;
}

QValidator::State FileNameStringFormatter::validate(QString &input, int &pos) const
{
    Q_UNUSED(pos) // the same length: the cursor stays where it is
    isPartialStringValid(&input);
    return Acceptable;
}
