// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "utilities/PFMoveApplicationLaunchers.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace {

const QString launcherFileName = QStringLiteral("com.ostrel.Corvex.desktop");

QString readText(const QString &path, bool *ok)
{
    QFile file(path);
    *ok = file.open(QIODevice::ReadOnly);
    return *ok ? QString::fromUtf8(file.readAll()) : QString();
}

bool writeText(const QString &path, const QString &text)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(text.toUtf8());
    return file.commit();
}

// The old bundle path inside a command line: as a word of its own or inside quotes, always followed by "/".
QString retargetCommand(QString value, const QString &oldBundlePath, const QString &newBundlePath)
{
    const QString from = oldBundlePath + u'/';
    const QString to = newBundlePath + u'/';
    for (const QString &lead : {QString(), QStringLiteral("\""), QStringLiteral("'")}) {
        if (value.startsWith(lead + from))
            return lead + to + value.mid(lead.size() + from.size());
    }
    return value;
}

} // namespace

QString PFMoveApplicationLaunchers::retargetEntry(const QString &text, const QString &oldBundlePath,
                                                  const QString &newBundlePath)
{
    QStringList lines = text.split(u'\n');
    for (QString &line : lines) {
        for (const QString &key : {QStringLiteral("Exec="), QStringLiteral("TryExec=")}) {
            if (line.startsWith(key))
                line = key + retargetCommand(line.mid(key.size()), oldBundlePath, newBundlePath);
        }
    }
    return lines.join(u'\n');
}

int PFMoveApplicationLaunchers::updateEntries(const QString &oldBundlePath, const QString &newBundlePath,
                                              const QString &launcherDirectory,
                                              const QString &autostartDirectory)
{
    int written = 0;
    for (const QString &folder : {launcherDirectory, autostartDirectory}) {
        const QFileInfoList entries =
            QDir(folder).entryInfoList({QStringLiteral("*.desktop")}, QDir::Files | QDir::Readable);
        for (const QFileInfo &entry : entries) {
            bool ok = false;
            const QString text = readText(entry.absoluteFilePath(), &ok);
            const QString retargeted = retargetEntry(text, oldBundlePath, newBundlePath);
            if (ok && retargeted != text && writeText(entry.absoluteFilePath(), retargeted))
                ++written;
        }
    }

    const QString launcher = QDir(launcherDirectory).filePath(launcherFileName);
    if (QFileInfo::exists(launcher))
        return written;
    bool ok = false;
    QString text =
        readText(QDir(newBundlePath)
                     .filePath(QStringLiteral("Contents/Resources/desktop/com.ostrel.Corvex.desktop.in")),
                 &ok);
    if (!ok)
        return written;
    text.replace(QStringLiteral("@CORVEX_BUNDLE_PATH@"), newBundlePath);
    // Without an installed icon theme entry, the icon comes from the bundle itself.
    const QString icon =
        QDir(newBundlePath)
            .filePath(QStringLiteral("Contents/Resources/icons/hicolor/scalable/apps/com.ostrel.Corvex.svg"));
    text.replace(QStringLiteral("\nIcon=com.ostrel.Corvex\n"), QStringLiteral("\nIcon=") + icon + u'\n');
    if (QDir().mkpath(launcherDirectory) && writeText(launcher, text))
        ++written;
    return written;
}
