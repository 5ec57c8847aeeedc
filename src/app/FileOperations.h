// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>

class CorvexError;

// The file operations the renaming window makes itself (renaming and converting are the Processor's).
class FileOperations
{
public:
    FileOperations() = delete;

    // The error's user information as one line of text, for the log.
    static QString userInfoDescription(const QVariantMap &userInfo);
    // Creates the folder with its missing parents; *reason says why it could not.
    static bool createFolder(const QString &path, QString *reason);
    // Marks the file's extension as hidden (the extended attribute "user.corvex.hideExtension" = "1") or
    // clears the mark. False with *error when it failed; true with *error when the file system holds no such
    // marks.
    static bool setExtensionHidden(const QString &path, bool hidden, CorvexError *error);
    // Deletes the file (or folder, with its contents).
    static bool removeItemAtPath(const QString &path, CorvexError *error);
    // Moves the file to the Trash.
    static bool recycleFile(const QString &path, CorvexError *error);
};
