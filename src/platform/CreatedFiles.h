// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// The files Corvex itself writes (conversions), so that the agent never takes one for a new screenshot, even
// when it lands in the screenshot folder and even when another Corvex process wrote it. A file carries the
// extended attribute ExtendedAttributes::CreatedByCorvex; where its file system refuses extended attributes,
// its identity (device, inode and birth time where the file system keeps one) and its path go to a short list
// in the user's runtime folder instead, kept for an hour.
class CreatedFiles
{
public:
    CreatedFiles() = delete;

    // Marks the file, which must exist, as written by Corvex; `finalPath` is the name it will have once
    // complete, when it is written under another one first.
    static void markCreated(const QString &path, const QString &finalPath = QString());

    // Whether the file at the path was marked by markCreated().
    static bool wasCreated(const QString &path);

    // The list used where extended attributes are refused.
    static QString registryPath();
};
