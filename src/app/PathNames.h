// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QString>
#include <QVariantMap>
#include <optional>

// The renaming window's names of files and folders: extensions, joined paths, display names and icons.
class PathNames
{
public:
    PathNames() = delete;

    // The name with its extension replaced (or the extension appended when it has none).
    static QString replacingExtension(const QString &name, const QString &extension);
    // The name without its extension.
    static QString deletingExtension(const QString &name);
    // The length of the name without its extension (a leading or trailing dot is no extension).
    static qsizetype baseNameLength(const QString &name);
    // Folder + "/" + name, without doubling a slash at the end of the folder.
    static QString joinedPath(const QString &folder, const QString &name);

    // The name shown for a file: its last component, without the extension when the file's attributes say
    // the extension is hidden.
    static QString displayFileName(const QString &path, const std::optional<QVariantMap> &attributes);
    // The file manager's name of a folder.
    static QString displayNameAtPath(const QString &path);
    // The folder's icon, 16 by 16.
    static QIcon folderIcon(const QString &path);
};
