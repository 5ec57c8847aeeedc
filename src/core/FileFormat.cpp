// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileFormat.h"

namespace {
const QString UTIKey = QStringLiteral("uti");
const QString DescriptionKey = QStringLiteral("description");
const QString ExtensionsKey = QStringLiteral("extensions");
} // namespace

FileFormat::FileFormat(QString uti, QString description, QStringList extensions)
    : mUti(std::move(uti)), mDescription(std::move(description)), mExtensions(std::move(extensions))
{
}

FileFormat *FileFormat::fileFormat(const QString &uti, const QString &description,
                                   const QStringList &extensions)
{
    return new FileFormat(uti, description, extensions);
}

const QList<const FileFormat *> &FileFormat::allFileFormats()
{
    // Function-local statics are initialised once, thread-safely; the rows are never freed.
    static const QList<const FileFormat *> formats{
        new FileFormat(GIFType, QStringLiteral("GIF"), {QStringLiteral("gif")}),
        new FileFormat(JPEGType, QStringLiteral("JPEG"),
                       {QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("jpe")}),
        new FileFormat(BMPType, QStringLiteral("Microsoft BMP"), {QStringLiteral("bmp")}),
        new FileFormat(PDFType, QStringLiteral("PDF"), {QStringLiteral("pdf")}),
        new FileFormat(PNGType, QStringLiteral("PNG"), {QStringLiteral("png")}),
        new FileFormat(TIFFType, QStringLiteral("TIFF"), {QStringLiteral("tiff"), QStringLiteral("tif")}),
    };
    return formats;
}

const QSet<QString> &FileFormat::allKnownExtensions()
{
    static const QSet<QString> extensions = [] {
        QSet<QString> set;
        for (const FileFormat *format : allFileFormats())
            for (const QString &extension : format->extensions())
                set.insert(extension);
        return set;
    }();
    return extensions;
}

const FileFormat *FileFormat::fileFormatForUTI(const QString &uti)
{
    for (const FileFormat *format : allFileFormats())
        if (format->uti() == uti)
            return format;
    return nullptr;
}

QVariantMap FileFormat::encodeWithCoder() const
{
    // The UTI under every key is how formats have always been archived; decoders rely on it.
    QVariantMap coder;
    coder.insert(UTIKey, mUti);
    coder.insert(DescriptionKey, mUti);
    coder.insert(ExtensionsKey, mUti);
    return coder;
}

FileFormat *FileFormat::initWithCoder(const QVariantMap &coder)
{
    auto *format = new FileFormat;
    format->mUti = coder.value(UTIKey).toString();
    format->mDescription = coder.value(DescriptionKey).toString();
    format->mExtensions = coder.value(ExtensionsKey).toStringList();
    return format;
}

qsizetype qzIndexOfObjectForExtension(const QList<const FileFormat *> &formats, const QString &extension)
{
    const QString lowered = extension.toLower();
    for (qsizetype index = 0; index < formats.size(); ++index)
        if (formats.at(index) && formats.at(index)->extensions().contains(lowered))
            return index;
    return NSNotFound;
}

const FileFormat *qzFileFormatForExtension(const QList<const FileFormat *> &formats, const QString &extension)
{
    const qsizetype index = qzIndexOfObjectForExtension(formats, extension);
    return index == NSNotFound ? nullptr : formats.at(index);
}
