// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/BundlePlugIns.h"

#include <QDir>
#include <QFileInfo>

QString bundlePlugInPath(const QString &fileName)
{
    QDir dir = QFileInfo(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath()).absoluteDir();
    for (int level = 0; level < 6; ++level) {
        for (const QString &folder : {dir.filePath(QStringLiteral("PlugIns")),
                                      dir.filePath(QStringLiteral("Corvex.app/Contents/PlugIns"))}) {
            QString path = folder + QLatin1Char('/') + fileName;
            if (QFileInfo::exists(path))
                return path;
        }
        if (!dir.cdUp())
            break;
    }
    return {};
}
