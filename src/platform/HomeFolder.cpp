// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/HomeFolder.h"

#include <QDir>
#include <QFile>
#include <pwd.h>

QString expandTildeInPath(const QString &path, const QString &home)
{
    if (!path.startsWith(QLatin1Char('~')))
        return path;
    const qsizetype slash = path.indexOf(QLatin1Char('/'));
    const QString user = path.mid(1, slash < 0 ? -1 : slash - 1);
    QString folder;
    if (user.isEmpty()) {
        folder = home.isEmpty() ? QDir::homePath() : home;
    } else {
        const passwd *entry = getpwnam(QFile::encodeName(user).constData());
        if (!entry || !entry->pw_dir)
            return path;
        folder = QFile::decodeName(entry->pw_dir);
    }
    return slash < 0 ? folder : folder + path.mid(slash);
}
