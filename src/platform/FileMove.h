// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class CorvexError;

// Moving a file the way the file manager does.
class FileMove
{
public:
    FileMove() = delete;

    // Moves the file (or symbolic link) to the destination path. Never replaces an existing destination
    // (Cocoa error 516). Within one file system the move is a rename; across file systems the file is copied,
    // checked and only then removed from its old place, with its permissions and times. On failure the source
    // stays where it was and no partial destination is left. A missing source gives the Cocoa error 4.
    static bool moveItemAtPath(const QString &sourcePath, const QString &destinationPath,
                               CorvexError *error = nullptr);
};
