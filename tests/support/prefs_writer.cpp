// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// prefs_writer DOMAIN PREFIX COUNT: writes the integers 0..COUNT-1 under the keys PREFIX0, PREFIX1, ... of
// the domain, one write (and synchronisation) at a time, as a second process beside a test would.
#include "core/AppUserDefaults.h"

#include <QCoreApplication>
#include <QStringList>
#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    bool ok = false;
    const int count = arguments.size() == 4 ? arguments.at(3).toInt(&ok) : 0;
    if (!ok || count < 0) {
        std::fputs("usage: prefs_writer DOMAIN PREFIX COUNT\n", stderr);
        return 2;
    }
    AppUserDefaults defaults(arguments.at(1));
    for (int i = 0; i < count; ++i)
        defaults.setInteger(i, arguments.at(2) + QString::number(i));
    return 0;
}
