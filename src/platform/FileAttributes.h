// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/CorvexError.h"

#include <QString>
#include <QVariantMap>

// The file-system attributes of one item, as a dictionary of property-list values under the platform's
// attribute keys. This is the dictionary that travels as "fileAttributes" in the screenshot notification.
//
//   NSFileCreationDate           date: the birth time where the file system records one, else the
//                                modification time
//   NSFileModificationDate       date (to the millisecond, UTC)
//   NSFileSize                   integer, bytes
//   NSFileType                   string, one of the type constants below
//   NSFilePosixPermissions       integer, the permission bits (mode & 07777)
//   NSFileOwnerAccountID         integer, uid
//   NSFileGroupOwnerAccountID    integer, gid
//   NSFileOwnerAccountName       string, only when the uid has a name
//   NSFileGroupOwnerAccountName  string, only when the gid has a name
//   NSFileSystemNumber           integer, the device of the file system
//   NSFileSystemFileNumber       integer, the inode
//   NSFileReferenceCount         integer, the hard-link count
//   NSFileExtensionHidden        boolean: true only when the extended attribute "user.corvex.hideExtension"
//                                holds "1", "true" or "yes"
//
// A symbolic link is described itself, not the item it points to.
class FileAttributes
{
public:
    FileAttributes() = delete;

    static inline const QString CreationDateKey = QStringLiteral("NSFileCreationDate");
    static inline const QString ModificationDateKey = QStringLiteral("NSFileModificationDate");
    static inline const QString SizeKey = QStringLiteral("NSFileSize");
    static inline const QString TypeKey = QStringLiteral("NSFileType");
    static inline const QString PosixPermissionsKey = QStringLiteral("NSFilePosixPermissions");
    static inline const QString OwnerAccountIDKey = QStringLiteral("NSFileOwnerAccountID");
    static inline const QString GroupOwnerAccountIDKey = QStringLiteral("NSFileGroupOwnerAccountID");
    static inline const QString OwnerAccountNameKey = QStringLiteral("NSFileOwnerAccountName");
    static inline const QString GroupOwnerAccountNameKey = QStringLiteral("NSFileGroupOwnerAccountName");
    static inline const QString SystemNumberKey = QStringLiteral("NSFileSystemNumber");
    static inline const QString SystemFileNumberKey = QStringLiteral("NSFileSystemFileNumber");
    static inline const QString ReferenceCountKey = QStringLiteral("NSFileReferenceCount");
    static inline const QString ExtensionHiddenKey = QStringLiteral("NSFileExtensionHidden");

    static inline const QString TypeRegular = QStringLiteral("NSFileTypeRegular");
    static inline const QString TypeDirectory = QStringLiteral("NSFileTypeDirectory");
    static inline const QString TypeSymbolicLink = QStringLiteral("NSFileTypeSymbolicLink");
    static inline const QString TypeSocket = QStringLiteral("NSFileTypeSocket");
    static inline const QString TypeCharacterSpecial = QStringLiteral("NSFileTypeCharacterSpecial");
    static inline const QString TypeBlockSpecial = QStringLiteral("NSFileTypeBlockSpecial");
    static inline const QString TypeUnknown = QStringLiteral("NSFileTypeUnknown");

    // The extended attribute that marks a file's extension as hidden.
    static inline const char HideExtensionAttribute[] = "user.corvex.hideExtension";

    // Returns the attributes of the item at the path, or an empty map with *error set (a Cocoa-domain
    // reading error: a missing item gives code 260).
    static QVariantMap attributesOfItemAtPath(const QString &path, CorvexError *error = nullptr);
};
