// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/ScreenshotMatcher.h"

#include "core/FileFormat.h"

#include <QDir>
#include <QFileInfo>

ScreenshotMatcher::ScreenshotMatcher(const QString &folder, const QString &namePrefix, bool dedicated)
    : mFolder(folder.isEmpty() ? QString() : QDir::cleanPath(QFileInfo(folder).absoluteFilePath())),
      mNamePrefix(namePrefix), mDedicated(dedicated)
{
}

bool ScreenshotMatcher::isImageExtension(const QString &extension)
{
    return !extension.isEmpty() && FileFormat::allKnownExtensions().contains(extension.toLower());
}

bool ScreenshotMatcher::matches(const QString &path) const
{
    if (mFolder.isEmpty())
        return false;
    const QFileInfo info(path);
    if (QDir::cleanPath(info.absolutePath()) != mFolder)
        return false;
    const QString name = info.fileName();
    if (name.isEmpty() || name.startsWith(u'.'))
        return false;
    if (!isImageExtension(info.suffix()))
        return false;
    return mDedicated || name.startsWith(mNamePrefix, Qt::CaseInsensitive);
}

bool ScreenshotMatcher::operator==(const ScreenshotMatcher &other) const
{
    return mFolder == other.mFolder && mNamePrefix == other.mNamePrefix && mDedicated == other.mDedicated;
}
