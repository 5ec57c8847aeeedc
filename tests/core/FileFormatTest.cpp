// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FileFormat.h"

#include <gtest/gtest.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

TEST(FileFormatTable, RowsInMenuOrder)
{
    const auto &formats = FileFormat::allFileFormats();
    ASSERT_EQ(formats.size(), 6);
    const QStringList utis{u"com.compuserve.gif"_s, u"public.jpeg"_s, u"com.microsoft.bmp"_s,
                           u"com.adobe.pdf"_s,      u"public.png"_s,  u"public.tiff"_s};
    const QStringList descriptions{u"GIF"_s, u"JPEG"_s, u"Microsoft BMP"_s, u"PDF"_s, u"PNG"_s, u"TIFF"_s};
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(formats.at(i)->uti(), utis.at(i));
        EXPECT_EQ(formats.at(i)->description(), descriptions.at(i));
    }
    EXPECT_EQ(formats.at(1)->extensions(), (QStringList{u"jpg"_s, u"jpeg"_s, u"jpe"_s}));
    EXPECT_EQ(formats.at(5)->extensions(), (QStringList{u"tiff"_s, u"tif"_s}));
    EXPECT_TRUE(formats.at(3)->isPDF());
    EXPECT_FALSE(formats.at(4)->isPDF());
    // The rows are made once: every call hands out the same objects.
    EXPECT_EQ(FileFormat::allFileFormats().at(2), formats.at(2));
    EXPECT_EQ(FileFormat::allKnownExtensions(),
              (QSet<QString>{u"gif"_s, u"jpg"_s, u"jpeg"_s, u"jpe"_s, u"bmp"_s, u"pdf"_s, u"png"_s, u"tiff"_s,
                             u"tif"_s}));
}

TEST(FileFormatLookup, ExtensionsIgnoreCaseOfTheArgumentAndUnknownOnesAreNotFound)
{
    const auto &formats = FileFormat::allFileFormats();
    EXPECT_EQ(qzFileFormatForExtension(formats, u"JPG"_s), formats.at(1));
    EXPECT_EQ(qzFileFormatForExtension(formats, u"jpe"_s), formats.at(1));
    EXPECT_EQ(qzFileFormatForExtension(formats, u"Tif"_s), formats.at(5));
    EXPECT_EQ(qzIndexOfObjectForExtension(formats, u"PNG"_s), 4);
    EXPECT_EQ(qzIndexOfObjectForExtension(formats, u"gif"_s), 0);
    for (const QString &unknown : {u"webp"_s, QString(), u".png"_s})
        EXPECT_EQ(qzFileFormatForExtension(formats, unknown), nullptr) << unknown.toStdString();
    EXPECT_EQ(qzIndexOfObjectForExtension(formats, u"webp"_s), NSNotFound);
    EXPECT_EQ(NSNotFound, qsizetype(9223372036854775807LL));
    EXPECT_EQ(qzIndexOfObjectForExtension({}, u"png"_s), NSNotFound);
}

TEST(FileFormatLookup, FirstMatchingElementWins)
{
    std::unique_ptr<FileFormat> custom(FileFormat::fileFormat(u"public.jpeg"_s, u"Mine"_s, {u"jpg"_s}));
    const QList<const FileFormat *> formats{FileFormat::allFileFormats().at(4), custom.get(),
                                            FileFormat::allFileFormats().at(1)};
    EXPECT_EQ(qzIndexOfObjectForExtension(formats, u"JPG"_s), 1);
    EXPECT_EQ(qzFileFormatForExtension(formats, u"jpeg"_s), FileFormat::allFileFormats().at(1));
}

TEST(FileFormatArchiving, TheUTIIsStoredUnderEveryKeyAndEachKeyIsDecodedOnItsOwn)
{
    const FileFormat *tiff = FileFormat::allFileFormats().at(5);
    const QVariantMap archive = tiff->encodeWithCoder();
    EXPECT_EQ(archive, (QVariantMap{{u"uti"_s, u"public.tiff"_s},
                                    {u"description"_s, u"public.tiff"_s},
                                    {u"extensions"_s, u"public.tiff"_s}}));
    std::unique_ptr<FileFormat> decoded(FileFormat::initWithCoder(archive));
    EXPECT_EQ(decoded->description(), u"public.tiff"_s);
    EXPECT_EQ(decoded->extensions(), QStringList{u"public.tiff"_s});
    EXPECT_NE(static_cast<const FileFormat *>(decoded.get()), tiff);
    // The real row is found again through the UTI, not through the broken extensions.
    EXPECT_EQ(FileFormat::fileFormatForUTI(decoded->uti()), tiff);
    EXPECT_EQ(qzFileFormatForExtension(FileFormat::allFileFormats(), decoded->extensions().value(0)),
              nullptr);

    decoded.reset(FileFormat::initWithCoder({{u"uti"_s, u"public.png"_s},
                                             {u"description"_s, u"PNG"_s},
                                             {u"extensions"_s, QStringList{u"png"_s}}}));
    EXPECT_EQ(decoded->description(), u"PNG"_s);
    EXPECT_EQ(decoded->extensions(), QStringList{u"png"_s});
}

} // namespace
