// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex version-compare A B: prints -1 when A is older than B, 1 when it is newer, 0 otherwise.
#include "cli/Command.h"
#include "foundation/QZSUStandardVersionComparator.h"

int cli::runVersionCompare(const QStringList &arguments)
{
    if (arguments.size() != 2)
        return cli::fail(
            QStringLiteral("version-compare needs exactly two versions (usage: corvex version-compare A B)"));
    const int result =
        QZSUStandardVersionComparator::defaultComparator().compareVersion(arguments.at(0), arguments.at(1));
    cli::out(QString::number(result) + QLatin1Char('\n'));
    return 0;
}
