// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class CorvexError;

// Unpacks a release archive (tar, optionally compressed: xz, gzip, bzip2, zstd; or zip) into a folder.
// Only folders, regular files and symbolic links are written; an entry whose path or link target would reach
// outside the folder refuses the whole archive. On any failure nothing unpacked is left behind.
class SUUpdateArchive
{
public:
    SUUpdateArchive() = delete;

    // Unpacks the archive into the destination folder, which must exist and be empty. On success the folder
    // holds the archive's entries, and *bundlePath (when given) is the one application bundle ("X.app") at
    // its top; an archive with other or more top-level entries is refused.
    static bool unpack(const QString &archivePath, const QString &destinationFolder,
                       QString *bundlePath = nullptr, CorvexError *error = nullptr);

    // True when the entry path stays inside the folder it is unpacked into: relative, and no ".." reaches
    // above the top.
    static bool isContainedPath(const QString &entryPath);

    // True when a symbolic link at the entry path with this target stays inside the folder.
    static bool isContainedLink(const QString &entryPath, const QString &target);
};
