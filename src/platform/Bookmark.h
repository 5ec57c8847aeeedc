// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/CorvexError.h"

#include <QByteArray>
#include <QString>
#include <optional>

// File bookmarks: opaque bytes that find a file again after it has been renamed or moved on its file system.
//
// The bytes are a binary property list (a dictionary) holding the path, the device and inode numbers, the
// size, the modification and (where recorded) birth times in nanoseconds, and a version key. Other programs
// may only store and hand them back.
//
// Resolving looks for an item with the recorded device and inode (and, where both are known, the same birth
// time, so that a reused inode number is not mistaken for the file), cheapest places first:
//   1. the recorded path;
//   2. the recorded folder (or, when it is gone, its nearest existing ancestor);
//   3. the folders beside it (its siblings) and its parent folder;
//   4. the folders inside the recorded folder;
//   5. the home folder, Desktop, Documents, Pictures, Downloads and the Trash's "files" folders (the home
//      Trash and the one at the top of the file system the file lives on);
//   6. a breadth-first walk, at most three levels deep, below the parent folder and then below the home
//   folder.
// Only folders on the file's own device are read, hidden folders are skipped by the walk, no folder is read
// twice, and the whole search reads at most 100000 folder entries, so it stays bounded on any tree.
// When no item has the file's identity but an item exists at the recorded path, that item is the answer (the
// file was replaced in place, as editors do when they save). A file that was deleted, or moved to another
// file system, is not found.
class Bookmark
{
public:
    Bookmark() = delete;

    // The version this build writes and understands.
    static constexpr qint64 Version = 1;

    // Makes bookmark data for the item at the path (a symbolic link is bookmarked itself). Returns empty data
    // with *error set (a Cocoa-domain reading error) when the item cannot be examined.
    static QByteArray create(const QString &path, CorvexError *error = nullptr);

    // Finds the bookmarked item. Returns its absolute path, or nothing when it cannot be found or the data is
    // not a bookmark. *isStale is set to true when the item is no longer where the bookmark says (new
    // bookmark data would be worth making), false otherwise.
    static std::optional<QString> resolve(const QByteArray &data, bool *isStale = nullptr);
};
