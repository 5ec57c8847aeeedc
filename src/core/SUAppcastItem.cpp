// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUAppcastItem.h"

#include <QCoreApplication>
#include <QFileInfo>

QString SUAppcastItem::displayVersionString() const
{
    return shortVersionString.isEmpty() ? versionString : shortVersionString;
}

bool SUAppcastItem::isInstallable() const
{
    return installabilityProblem().isEmpty();
}

QString SUAppcastItem::installabilityProblem() const
{
    if (!fileURL.isValid() || fileURL.isEmpty())
        return QCoreApplication::translate("SUAppcastItem", "The update %1 names no archive to download.")
            .arg(displayVersionString());
    if (versionString.isEmpty())
        return QCoreApplication::translate("SUAppcastItem", "The update at %1 gives no version.")
            .arg(fileURL.toDisplayString());
    if (edSignature.isEmpty())
        return QCoreApplication::translate("SUAppcastItem",
                                           "The update %1 is not signed, so it cannot be trusted.")
            .arg(displayVersionString());
    return {};
}

QString SUAppcastItem::suggestedFileName() const
{
    const QString name = QFileInfo(fileURL.path()).fileName();
    if (name.isEmpty() || name == QLatin1String("..") || name == QLatin1String("."))
        return QStringLiteral("update.tar.xz");
    return name;
}
