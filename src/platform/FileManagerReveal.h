// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Shows a file in the desktop's file manager, selected. The file manager is asked through the
// org.freedesktop.FileManager1 service of the session bus (its ShowItems call); where no such service is
// running or can be started, the file's folder is opened with the desktop's default handler for folders.
class FileManagerReveal
{
public:
    FileManagerReveal() = delete;

    // The bus name, object path and interface of the file manager service.
    static inline const QString ServiceName = QStringLiteral("org.freedesktop.FileManager1");
    static inline const QString ObjectPath = QStringLiteral("/org/freedesktop/FileManager1");

    // Selects the file at the path in a file manager window. The root path, when not empty, names the folder
    // the window should show instead of the file's own one; file managers of this desktop always open the
    // file's folder, so a root path only matters where the file cannot be shown selected. Returns false when
    // neither the file manager service nor the folder fallback could be asked (nothing is shown then).
    static bool selectFile(const QString &path, const QString &rootFullPath = QString());

    // Whether a file manager service is running on the session bus or can be started by it.
    static bool isServiceAvailable();
};
