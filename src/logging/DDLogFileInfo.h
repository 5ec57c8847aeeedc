// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ExtendedAttributes.h"

#include <QDateTime>
#include <QString>
#include <QVariantMap>
#include <memory>
#include <optional>

// One log file on disk. Its attributes are read once, on first use, and kept until reset(). A file is
// archived (finished, never written again) when it carries the extended attribute "vofungudip.log.archived";
// where the file system takes no user attributes, an empty flag file beside it (".<name>.archived") means the
// same. The extended attributes are those of the store given (the file system's unless told otherwise), which
// must outlive the object. Not safe for use from two threads at once.
class DDLogFileInfo
{
public:
    static inline const QString ArchivedAttributeName = QStringLiteral("vofungudip.log.archived");
    // Where the file system keeps no creation dates, the creation time is kept in this attribute.
    static inline const QString CreationDateAttributeName = QStringLiteral("vofungudip.log.created");

    static std::shared_ptr<DDLogFileInfo>
    logFileWithPath(const QString &filePath,
                    const ExtendedAttributes &attributes = ExtendedAttributes::fileSystem());
    explicit DDLogFileInfo(const QString &filePath,
                           const ExtendedAttributes &attributes = ExtendedAttributes::fileSystem());

    const QString &filePath() const { return mFilePath; }
    // The last path component of filePath().
    QString fileName() const;

    // The attributes as read from the file system: "NSFileSize", "NSFileCreationDate",
    // "NSFileModificationDate", "NSFilePosixPermissions", "NSFileType"; empty when the file cannot be read.
    const QVariantMap &fileAttributes() const;
    QDateTime creationDate() const;
    QDateTime modificationDate() const;
    quint64 fileSize() const;
    // Seconds since the creation date (positive for a date in the past).
    double age() const;

    bool isArchived() const;
    // Adds or removes the archived flag.
    void setIsArchived(bool flag);

    // Forgets the attributes read so far.
    void reset();

    // Moves the file to the new name in the same folder (its flag files follow). Either way the path becomes
    // the new one and the attributes are read anew.
    void renameFile(const QString &newFileName);

    // Extended attributes (or their flag files where the file system takes none).
    bool hasExtendedAttributeWithName(const QString &attrName) const;
    void addExtendedAttributeWithName(const QString &attrName);
    void removeExtendedAttributeWithName(const QString &attrName);

    // Keeps the creation time in an attribute when the file system does not record one itself.
    void recordCreationDate();

    // The flag file that stands for the attribute beside the file.
    QString flagFilePathForAttribute(const QString &attrName) const;

    // Same path.
    bool isEqual(const DDLogFileInfo &other) const { return mFilePath == other.mFilePath; }
    bool operator==(const DDLogFileInfo &other) const { return isEqual(other); }

    // The later date orders first: -1 when this one's date is later, 1 when the other's is, 0 when equal.
    int reverseCompareByCreationDate(const DDLogFileInfo &other) const;
    int reverseCompareByModificationDate(const DDLogFileInfo &other) const;

private:
    struct Attributes
    {
        QVariantMap map;
        QDateTime creationDate;
        QDateTime modificationDate;
        qint64 creationNSecs = 0; // for ordering files made within one millisecond
        qint64 modificationNSecs = 0;
        quint64 fileSize = 0;
    };
    const Attributes &attributes() const;

    QString mFilePath;
    const ExtendedAttributes *mExtendedAttributes;
    mutable std::optional<Attributes> mAttributes;
};
