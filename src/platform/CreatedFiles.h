// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ExtendedAttributes.h"

#include <QString>

// The files Corvex itself writes (conversions), so that the agent never takes one for a new screenshot, even
// when it lands in the screenshot folder and even when another Corvex process wrote it. A file carries the
// extended attribute ExtendedAttributes::CreatedByCorvex; where its file system refuses extended attributes,
// its identity (device, inode and birth time where the file system keeps one) and its path go to a short list
// in the user's runtime folder instead, kept for an hour. The attributes are those of the store given, which
// must outlive the object.
class CreatedFiles
{
public:
    explicit CreatedFiles(const ExtendedAttributes &attributes = ExtendedAttributes::fileSystem())
        : mAttributes(attributes)
    {
    }

    // Marks the file, which must exist, as written by Corvex; `finalPath` is the name it will have once
    // complete, when it is written under another one first.
    void markCreated(const QString &path, const QString &finalPath = QString()) const;

    // Whether the file at the path was marked by markCreated().
    bool wasCreated(const QString &path) const;

    // The list used where extended attributes are refused.
    static QString registryPath();

private:
    const ExtendedAttributes &mAttributes;
};
