// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileFormat.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

TEST(FileFormatTable, RowsInMenuOrder)
{
    const auto &formats = FileFormat::allFileFormats();
    ASSERT_EQ(formats.size(), 6);
    const QStringList utis{QStringLiteral("com.compuserve.gif"), QStringLiteral("public.jpeg"),
                           QStringLiteral("com.microsoft.bmp"),  QStringLiteral("com.adobe.pdf"),
                           QStringLiteral("public.png"),         QStringLiteral("public.tiff")};
    const QStringList descriptions{QStringLiteral("GIF"),           QStringLiteral("JPEG"),
                                   QStringLiteral("Microsoft BMP"), QStringLiteral("PDF"),
                                   QStringLiteral("PNG"),           QStringLiteral("TIFF")};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(formats.at(i)->uti(), utis.at(i));
        EXPECT_EQ(formats.at(i)->description(), descriptions.at(i));
    }
    EXPECT_EQ(formats.at(1)->extensions(),
              (QStringList{QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("jpe")}));
    EXPECT_EQ(formats.at(5)->extensions(), (QStringList{QStringLiteral("tiff"), QStringLiteral("tif")}));
    EXPECT_TRUE(formats.at(3)->isPDF());
    EXPECT_FALSE(formats.at(4)->isPDF());
    // The rows are made once: every call hands out the same objects.
    EXPECT_EQ(FileFormat::allFileFormats().at(2), formats.at(2));
}

TEST(FileFormatTable, KnownExtensionsAreTheNineOfTheRows)
{
    const QSet<QString> expected{QStringLiteral("gif"), QStringLiteral("jpg"),  QStringLiteral("jpeg"),
                                 QStringLiteral("jpe"), QStringLiteral("bmp"),  QStringLiteral("pdf"),
                                 QStringLiteral("png"), QStringLiteral("tiff"), QStringLiteral("tif")};
    EXPECT_EQ(FileFormat::allKnownExtensions(), expected);
}

TEST(FileFormatLookup, ExtensionsIgnoreCaseOfTheArgument)
{
    const auto &formats = FileFormat::allFileFormats();
    EXPECT_EQ(qzFileFormatForExtension(formats, QStringLiteral("JPG")), formats.at(1));
    EXPECT_EQ(qzFileFormatForExtension(formats, QStringLiteral("jpe")), formats.at(1));
    EXPECT_EQ(qzFileFormatForExtension(formats, QStringLiteral("Tif")), formats.at(5));
    EXPECT_EQ(qzIndexOfObjectForExtension(formats, QStringLiteral("PNG")), 4);
    EXPECT_EQ(qzIndexOfObjectForExtension(formats, QStringLiteral("gif")), 0);
}

TEST(FileFormatLookup, UnknownExtensionGivesNotFoundMarker)
{
    const auto &formats = FileFormat::allFileFormats();
    EXPECT_EQ(qzFileFormatForExtension(formats, QStringLiteral("webp")), nullptr);
    EXPECT_EQ(qzFileFormatForExtension(formats, QString()), nullptr);
    EXPECT_EQ(qzFileFormatForExtension(formats, QStringLiteral(".png")), nullptr);
    EXPECT_EQ(qzIndexOfObjectForExtension(formats, QStringLiteral("webp")), NSNotFound);
    EXPECT_EQ(NSNotFound, qsizetype(9223372036854775807LL));
    EXPECT_EQ(qzIndexOfObjectForExtension({}, QStringLiteral("png")), NSNotFound);
}

TEST(FileFormatLookup, FirstMatchingElementWins)
{
    std::unique_ptr<FileFormat> custom(FileFormat::fileFormat(
        QStringLiteral("public.jpeg"), QStringLiteral("Mine"), {QStringLiteral("jpg")}));
    const QList<const FileFormat *> formats{FileFormat::allFileFormats().at(4), custom.get(),
                                            FileFormat::allFileFormats().at(1)};
    EXPECT_EQ(qzIndexOfObjectForExtension(formats, QStringLiteral("JPG")), 1);
    EXPECT_EQ(qzFileFormatForExtension(formats, QStringLiteral("jpeg")), FileFormat::allFileFormats().at(1));
}

TEST(FileFormatIdentity, FreshFormatWithSameFieldsIsDifferent)
{
    const FileFormat *row = FileFormat::allFileFormats().at(1);
    std::unique_ptr<FileFormat> fresh(
        FileFormat::fileFormat(row->uti(), row->description(), row->extensions()));
    EXPECT_NE(static_cast<const FileFormat *>(fresh.get()), row);
    EXPECT_EQ(fresh->uti(), row->uti());
    fresh->setDescription(QStringLiteral("Changed"));
    EXPECT_EQ(row->description(), QStringLiteral("JPEG"));
}

TEST(FileFormatArchiving, UTIIsStoredUnderEveryKey)
{
    const FileFormat *png = FileFormat::allFileFormats().at(4);
    const QVariantMap archive = png->encodeWithCoder();
    EXPECT_EQ(archive.size(), 3);
    EXPECT_EQ(archive.value(QStringLiteral("uti")).toString(), QStringLiteral("public.png"));
    EXPECT_EQ(archive.value(QStringLiteral("description")).toString(), QStringLiteral("public.png"));
    EXPECT_EQ(archive.value(QStringLiteral("extensions")).toString(), QStringLiteral("public.png"));
}

TEST(FileFormatArchiving, DecodedFormatCarriesUTIEverywhereAndIsNotTheRow)
{
    const FileFormat *tiff = FileFormat::allFileFormats().at(5);
    std::unique_ptr<FileFormat> decoded(FileFormat::initWithCoder(tiff->encodeWithCoder()));
    EXPECT_EQ(decoded->uti(), QStringLiteral("public.tiff"));
    EXPECT_EQ(decoded->description(), QStringLiteral("public.tiff"));
    EXPECT_EQ(decoded->extensions(), QStringList{QStringLiteral("public.tiff")});
    EXPECT_NE(static_cast<const FileFormat *>(decoded.get()), tiff);
    // The real row is found again through the UTI, not through the broken extensions.
    EXPECT_EQ(FileFormat::fileFormatForUTI(decoded->uti()), tiff);
    EXPECT_EQ(qzFileFormatForExtension(FileFormat::allFileFormats(), decoded->extensions().value(0)),
              nullptr);
}

TEST(FileFormatArchiving, KeysAreDecodedIndependently)
{
    const QVariantMap archive{{QStringLiteral("uti"), QStringLiteral("public.png")},
                              {QStringLiteral("description"), QStringLiteral("PNG")},
                              {QStringLiteral("extensions"), QStringList{QStringLiteral("png")}}};
    std::unique_ptr<FileFormat> decoded(FileFormat::initWithCoder(archive));
    EXPECT_EQ(decoded->description(), QStringLiteral("PNG"));
    EXPECT_EQ(decoded->extensions(), QStringList{QStringLiteral("png")});
}

} // namespace
