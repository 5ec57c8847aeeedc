// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PathNames.h"

#include "platform/FileAttributes.h"

#include <QDir>
#include <QFileIconProvider>
#include <QFileInfo>

QString PathNames::replacingExtension(const QString &name, const QString &extension)
{
    return deletingExtension(name) + u'.' + extension;
}

QString PathNames::deletingExtension(const QString &name)
{
    return name.left(baseNameLength(name));
}

qsizetype PathNames::baseNameLength(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    // A leading dot (a hidden name) or a trailing one is no extension.
    if (dot <= 0 || dot == name.size() - 1)
        return name.size();
    return dot;
}

QString PathNames::joinedPath(const QString &folder, const QString &name)
{
    if (folder.endsWith(u'/'))
        return folder + name;
    return folder + u'/' + name;
}

QString PathNames::displayFileName(const QString &path, const std::optional<QVariantMap> &attributes)
{
    const QString name = QFileInfo(path).fileName();
    if (attributes && attributes->value(FileAttributes::ExtensionHiddenKey).toBool())
        return deletingExtension(name);
    return name;
}

QString PathNames::displayNameAtPath(const QString &path)
{
    if (path.isEmpty())
        return path;
    const QString clean = QDir::cleanPath(path);
    if (clean == u"/")
        return QStringLiteral("/");
    return QFileInfo(clean).fileName();
}

QIcon PathNames::folderIcon(const QString &path)
{
    static QFileIconProvider provider;
    const QFileInfo info(path);
    return info.exists() ? provider.icon(info) : provider.icon(QFileIconProvider::Folder);
}
