// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>

// Readers of the desktop's configuration files that the screenshot settings come from.
namespace DesktopConfigFiles {

// "group/key" -> value of an INI file. Keys of the top, group-less part are stored as "General/key".
using IniValues = QHash<QString, QString>;

enum class IniDialect {
    KConfig,  // KDE's files: "key[$e]" expands $HOME, escapes \s \t \n \r \\, localised "key[de]" skipped
    QSettings // Qt's files: values may be quoted, escapes \" \\ \n \t \r \xHHHH
};

// Reads an INI file; empty when it cannot be read.
IniValues readIni(const QString &path, IniDialect dialect, const QString &home);

// The folders of "user-dirs.dirs" (XDG_DESKTOP_DIR, XDG_PICTURES_DIR, ...) as absolute paths, by variable
// name.
QHash<QString, QString> readUserDirs(const QString &path, const QString &home);

// A folder given as a path or a file: URL, with "~" and "$HOME" expanded; empty when it is neither.
QString folderFromSetting(const QString &value, const QString &home);

} // namespace DesktopConfigFiles
