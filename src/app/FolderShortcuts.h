// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QKeyEvent;

// The file-manager style folder shortcuts of the renaming window: Ctrl+Shift+C/H/D/A/O/U for the root,
// home, Desktop, Applications, Documents and Utilities folders, and Ctrl+D for the Desktop.
class FolderShortcuts
{
public:
    FolderShortcuts() = delete;

    // Whether the key is one of the shortcuts; *folder is its folder (empty when there is none here).
    static bool folderForKey(const QKeyEvent *event, QString *folder);

    // The folders, first entry of each search (empty when there is none).
    static QString rootFolder();
    static QString homeFolder();
    static QString desktopFolder();
    static QString documentsFolder();
    static QString applicationsFolder();
    static QString utilitiesFolder();
};
