// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class CorvexError;

// The desktop's Trash (the freedesktop.org Trash: files/ and info/ with a .trashinfo per item).
class Trash
{
public:
    Trash() = delete;

    // Moves the file or folder to the Trash, from where the user can put it back. On success returns true and
    // the absolute path of the item inside the Trash; on failure the item stays where it was.
    static bool moveItemToTrash(const QString &path, QString *pathInTrash = nullptr,
                                CorvexError *error = nullptr);
};
