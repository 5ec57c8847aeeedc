// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

// Extended attributes of files, by path, following no options (symbolic links are followed). Names without a
// namespace ("vofungudip.log.archived") live in the "user." namespace. Every call returns the system call's
// result (negative on failure) and, when asked, the errno value. fileSystem() makes the system calls; code
// that reads or writes attributes takes a store, so that another one (say, one that refuses user attributes,
// as some file systems do) can stand in.
class ExtendedAttributes
{
public:
    ExtendedAttributes() = default;
    virtual ~ExtendedAttributes() = default;
    ExtendedAttributes(const ExtendedAttributes &) = delete;
    ExtendedAttributes &operator=(const ExtendedAttributes &) = delete;

    // The attributes of the files themselves, for the whole process.
    static const ExtendedAttributes &fileSystem();

    // Marks the files Corvex itself writes (conversions): the agent never takes such a file for a new
    // screenshot, even when it lands in the screenshot folder.
    static inline const QString CreatedByCorvex = QStringLiteral("corvex.created");

    // The name as the system knows it: "user." is added unless the name already has a namespace.
    static QByteArray platformName(const QString &name);

    // True when the error says the file system does not take such attributes at all.
    static bool isUnsupportedError(int errorCode);

    // The size of the attribute's value; negative when it is missing or cannot be read.
    virtual long size(const QString &path, const QString &name, int *errorCode = nullptr) const;

    // The attribute's value; a null array when it is missing or cannot be read.
    virtual QByteArray value(const QString &path, const QString &name, int *errorCode = nullptr) const;

    // Sets the attribute (creating or replacing it). 0 on success.
    virtual int set(const QString &path, const QString &name, const QByteArray &value,
                    int *errorCode = nullptr) const;

    // Removes the attribute. 0 on success; a missing attribute gives ENODATA (the platform's ENOATTR).
    virtual int remove(const QString &path, const QString &name, int *errorCode = nullptr) const;
};
