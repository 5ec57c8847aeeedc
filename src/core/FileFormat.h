// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <limits>

// The index returned by a lookup that found nothing: the largest signed 64-bit integer.
inline constexpr qsizetype NSNotFound = std::numeric_limits<qint64>::max();

// One image format a screenshot can be saved as: a uniform type identifier, the name shown to the user and
// the lower-case file-name extensions, the preferred one first. Two formats are the same format exactly when
// they are the same row object of allFileFormats(); compare pointers, never fields.
class FileFormat
{
public:
    // The type identifiers of the six formats.
    static inline const QString GIFType = QStringLiteral("com.compuserve.gif");
    static inline const QString JPEGType = QStringLiteral("public.jpeg");
    static inline const QString BMPType = QStringLiteral("com.microsoft.bmp");
    static inline const QString PDFType = QStringLiteral("com.adobe.pdf");
    static inline const QString PNGType = QStringLiteral("public.png");
    static inline const QString TIFFType = QStringLiteral("public.tiff");

    // A new format, owned by the caller; it is never one of the table's rows.
    static FileFormat *fileFormat(const QString &uti, const QString &description,
                                  const QStringList &extensions);

    // The six formats in menu order (GIF, JPEG, BMP, PDF, PNG, TIFF), made once and kept for the life of the
    // process.
    static const QList<const FileFormat *> &allFileFormats();

    // Every extension of every row (nine entries), made once.
    static const QSet<QString> &allKnownExtensions();

    FileFormat() = default;
    FileFormat(QString uti, QString description, QStringList extensions);

    QString uti() const { return mUti; }
    void setUTI(const QString &uti) { mUti = uti; }
    QString description() const { return mDescription; }
    void setDescription(const QString &description) { mDescription = description; }
    QStringList extensions() const { return mExtensions; }
    void setExtensions(const QStringList &extensions) { mExtensions = extensions; }

    // The preferred extension (the first one), or an empty string when there is none.
    QString preferredExtension() const { return mExtensions.value(0); }

    bool isPDF() const { return mUti == PDFType; }

    // Keyed archiving. Encoding deliberately stores the UTI under all three keys "uti", "description" and
    // "extensions"; decoding reads each key into its own field, so an archived format comes back with its UTI
    // as description and extensions. Look the real row up again by UTI or extension.
    QVariantMap encodeWithCoder() const;
    static FileFormat *initWithCoder(const QVariantMap &coder);

    // The row of the table with this UTI, or nullptr.
    static const FileFormat *fileFormatForUTI(const QString &uti);

private:
    QString mUti;
    QString mDescription;
    QStringList mExtensions;
};

// The index of the first format whose extensions contain the lower-cased extension, or NSNotFound.
qsizetype qzIndexOfObjectForExtension(const QList<const FileFormat *> &formats, const QString &extension);

// The first format whose extensions contain the lower-cased extension, or nullptr.
const FileFormat *qzFileFormatForExtension(const QList<const FileFormat *> &formats,
                                           const QString &extension);
