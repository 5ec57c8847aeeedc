// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "CapturingLogger.h"
#include "PNGChunks.h"
#include "TestSupport.h"
#include "core/CorvexErrors.h"
#include "core/DropboxCheck.h"
#include "core/FileFormat.h"
#include "core/ImageIODestination.h"
#include "core/ImageIOSource.h"
#include "core/Processor.h"
#include "foundation/CorvexError.h"
#include "platform/ExtendedAttributes.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

const FileFormat *format(const QString &extension)
{
    return qzFileFormatForExtension(FileFormat::allFileFormats(), extension);
}

QString trashFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Trash"_s;
}

using pngchunks::blocks;

class RenameItemTest : public ::testing::Test
{
protected:
    QString path(const QString &name) const { return mDir.filePath(name); }
    static QUrl url(const QString &file) { return QUrl::fromLocalFile(file); }

    QString writeImage(const QString &name, const QImage &image = blocks())
    {
        auto destination =
            ImageIODestination::createWithURL(url(path(name)), format(QFileInfo(name).suffix())->uti());
        EXPECT_NE(destination, nullptr);
        destination->addImage(image);
        EXPECT_TRUE(destination->finalize());
        return path(name);
    }

    bool rename(const QString &from, const QString &to, CorvexError *error = nullptr)
    {
        return mProcessor->renameItemAtURL(url(from), format(QFileInfo(from).suffix()), url(to),
                                           format(QFileInfo(to).suffix()), error);
    }

    // Renames from here on with a processor whose Dropbox check says that screenshot sharing might be on.
    void pretendDropboxSharesScreenshots()
    {
        const QString home = path(u"dropbox-home"_s);
        const QString folder = home + u"/Dropbox"_s;
        QDir().mkpath(folder + u"/Screenshots"_s);
        corvex::test::writeFile(home + u"/.dropbox/host.db"_s,
                                "0123abcd\n" + folder.toUtf8().toBase64() + "\n");
        const DropboxCheck dropbox(home, [] { return DropboxClientFacts{true, u"2.4.0"_s, u"2.4.0"_s}; });
        ASSERT_TRUE(dropbox.screenshotFolderTest());
        mOwnProcessor = std::make_unique<Processor>(dropbox);
        mProcessor = mOwnProcessor.get();
    }

    QTemporaryDir mDir;
    std::unique_ptr<Processor> mOwnProcessor;
    Processor *mProcessor = &Processor::sharedProcessor();
};

TEST_F(RenameItemTest, OnlyTheSameRowMovesWithoutTrashAndNeverOntoAFile)
{
    const QString source = writeImage(u"shot.png"_s);
    const QByteArray bytes = corvex::test::readFile(source);
    QDir().mkpath(path(u"sub"_s));
    const QString destination = path(u"sub/renamed.PNG"_s);
    LogCapture log;
    CorvexError error;
    ASSERT_TRUE(rename(source, destination, &error));
    EXPECT_FALSE(QFileInfo::exists(source));
    EXPECT_EQ(corvex::test::readFile(destination), bytes);
    EXPECT_FALSE(QDir(trashFolder() + u"/files"_s).exists(u"shot.png"_s));
    EXPECT_TRUE(log.messages(DDLogFlagError).isEmpty());

    const QString existing = corvex::test::writeFile(path(u"older.png"_s), "older file");
    EXPECT_FALSE(rename(destination, existing, &error));
    EXPECT_EQ(error.domain(), CorvexError::CocoaErrorDomain);
    EXPECT_EQ(error.code(), CorvexError::FileWriteFileExistsError);
    EXPECT_TRUE(QFileInfo::exists(destination));
    EXPECT_EQ(corvex::test::readFile(existing), QByteArray("older file"));

    // A freshly made format is not the row, even with the same fields: the file is converted, so the source
    // goes to the Trash rather than being renamed.
    std::unique_ptr<FileFormat> fresh(FileFormat::fileFormat(FileFormat::PNGType, u"PNG"_s, {u"png"_s}));
    ASSERT_TRUE(Processor::sharedProcessor().renameItemAtURL(url(destination), format(u"png"_s),
                                                             url(path(u"fresh.png"_s)), fresh.get()));
    EXPECT_TRUE(QFileInfo::exists(path(u"fresh.png"_s)));
    EXPECT_TRUE(QFileInfo::exists(trashFolder() + u"/files/renamed.PNG"_s));
}

TEST_F(RenameItemTest, EveryPairOfFormatsConvertsAndTheSourceGoesToTheTrash)
{
    const QImage image = blocks(25, 17);
    LogCapture log;
    for (const FileFormat *from : FileFormat::allFileFormats()) {
        for (const FileFormat *to : FileFormat::allFileFormats()) {
            if (from == to)
                continue;
            SCOPED_TRACE(QString(from->description() + u" to "_s + to->description()).toStdString());
            const QString stem = from->preferredExtension() + u" to "_s + to->preferredExtension();
            const QString source = writeImage(stem + QLatin1Char('.') + from->preferredExtension(), image);
            const QString destination = path(stem + QLatin1Char('.') + to->preferredExtension());
            CorvexError error;
            ASSERT_TRUE(rename(source, destination, &error)) << error.localizedDescription().toStdString();
            auto written = ImageIOSource::createWithURL(url(destination));
            ASSERT_NE(written, nullptr);
            ASSERT_EQ(written->image().size(), image.size());
            // Lossless pairs give back every pixel; through JPEG the picture stays close.
            const bool lossy = from->uti() == FileFormat::JPEGType || to->uti() == FileFormat::JPEGType;
            if (lossy)
                EXPECT_GT(corvex::test::psnr(written->image(), image), 28.0);
            else
                EXPECT_EQ(corvex::test::psnr(written->image(), image), 99.0);
            int errorCode = 0;
            if (ExtendedAttributes::fileSystem().size(destination, ExtendedAttributes::CreatedByCorvex,
                                                      &errorCode) < 0) {
                EXPECT_TRUE(ExtendedAttributes::isUnsupportedError(errorCode))
                    << "the conversion is marked as Corvex's";
            }
            EXPECT_FALSE(QFileInfo::exists(source));
            EXPECT_TRUE(QFileInfo::exists(trashFolder() + u"/files/"_s + QFileInfo(source).fileName()));
        }
    }
    EXPECT_TRUE(log.messages(DDLogFlagError).isEmpty());
    const QString source = path(u"png to jpg.png"_s);
    const QByteArray text = corvex::test::readFile(trashFolder() + u"/info/png to jpg.png.trashinfo"_s);
    EXPECT_TRUE(text.contains("[Trash Info]"));
    EXPECT_TRUE(text.contains(QByteArray(QByteArray("Path=") + QUrl::toPercentEncoding(source, "/"))))
        << text.constData();
}

TEST_F(RenameItemTest, ConvertingOntoAFileReplacesItOnlyWithAWholeNewOne)
{
    const QString existing = corvex::test::writeFile(path(u"taken.jpg"_s), "older file");
    ASSERT_TRUE(rename(writeImage(u"taken.png"_s), existing));
    EXPECT_EQ(ImageIOSource::kindOfFile(existing), ImageIOSource::Kind::JPEG);

    // A conversion that fails keeps the file it would have replaced, and leaves nothing beside it.
    corvex::test::writeFile(existing, "older file");
    for (const QString &name : {u"broken.png"_s, u"broken.bmp"_s}) {
        SCOPED_TRACE(name.toStdString());
        EXPECT_FALSE(rename(corvex::test::writeFile(path(name), "not an image"), existing));
        EXPECT_EQ(corvex::test::readFile(existing), QByteArray("older file"));
    }
    EXPECT_EQ(QDir(mDir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"taken.jpg"_s});
    // Never the source itself.
    const QString self = writeImage(u"self.png"_s);
    std::unique_ptr<FileFormat> fresh(FileFormat::fileFormat(FileFormat::PNGType, u"PNG"_s, {u"png"_s}));
    EXPECT_FALSE(
        Processor::sharedProcessor().renameItemAtURL(url(self), format(u"png"_s), url(self), fresh.get()));
}

TEST_F(RenameItemTest, EachFailingStepGivesItsErrorAndLogLines)
{
    const QString gonePNG = path(u"gone.png"_s), gonePDF = path(u"gone.pdf"_s);
    const QString emptyPDF = corvex::test::writeFile(
        path(u"empty.pdf"_s), "%PDF-1.4\n1 0 obj <</Type /Catalog /Pages 2 0 R>> endobj\n"
                              "2 0 obj <</Type /Pages /Kids [] /Count 0>> endobj\n"
                              "trailer <</Root 1 0 R>>\n%%EOF\n");
    const QString shot = writeImage(u"unwritable.png"_s), unwritable = path(u"missing-folder/shot.bmp"_s);
    // GIF cannot hold an image wider than 65535 pixels.
    const QString wide = writeImage(u"wide.png"_s, blocks(70000, 1)), wideGIF = path(u"wide.gif"_s);
    const QString noSuchFile = u"Could not create image source for %1 because file does not exist"_s;
    const struct
    {
        QString source, destination, domain;
        int code;
        QString failureReason; // empty: not checked
        QStringList errors;
        bool trashed;
    } cases[] = {
        {gonePNG,
         path(u"gone.tiff"_s),
         CorvexError::CocoaErrorDomain,
         4,
         {},
         {noSuchFile.arg(gonePNG), u"Could not move %1 to Trash."_s.arg(gonePNG)},
         false},
        {gonePDF,
         path(u"gone2.png"_s),
         CorvexError::CocoaErrorDomain,
         4,
         {},
         {u"Could not open PDF document %1"_s.arg(gonePDF),
          u"Could not get first page of PDF %1"_s.arg(gonePDF), noSuchFile.arg(gonePDF),
          u"Could not move %1 to Trash."_s.arg(gonePDF)},
         false},
        {emptyPDF,
         path(u"empty.png"_s),
         CorvexError::CorvexErrorDomain,
         1,
         {},
         {u"Could not get first page of PDF %1"_s.arg(emptyPDF),
          u"Could not create image source for %1"_s.arg(emptyPDF)},
         true},
        {shot,
         unwritable,
         CorvexError::CorvexErrorDomain,
         3,
         u"An error occurred trying to write the Microsoft BMP screenshot to \u201cshot.bmp\u201d."_s,
         {u"Could create image destination at %1 with UTI com.microsoft.bmp"_s.arg(unwritable)},
         true},
        {wide,
         wideGIF,
         CorvexError::CorvexErrorDomain,
         2,
         u"An error occurred finalizing the GIF screenshot to \u201cwide.gif\u201d."_s,
         {u"CGImageDestinationFinalize failed for %1"_s.arg(wideGIF)},
         true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.destination.toStdString());
        LogCapture log;
        CorvexError error;
        EXPECT_FALSE(rename(c.source, c.destination, &error));
        EXPECT_EQ(error.domain(), c.domain);
        EXPECT_EQ(error.code(), c.code);
        if (c.code == 4) {
            EXPECT_EQ(error.userInfo().value(CorvexError::URLErrorKey).toUrl(), url(c.source));
        }
        if (!c.failureReason.isEmpty()) {
            EXPECT_EQ(error.localizedFailureReason(), c.failureReason);
        }
        EXPECT_TRUE(error.localizedRecoverySuggestion().isEmpty());
        EXPECT_EQ(log.messages(DDLogFlagError), c.errors);
        EXPECT_FALSE(QFileInfo::exists(c.destination));
        // The source is in the Trash, from where it can be taken back.
        EXPECT_EQ(QFileInfo::exists(trashFolder() + u"/files/"_s + QFileInfo(c.source).fileName()),
                  c.trashed);
    }
}

TEST_F(RenameItemTest, UnreadableSourcesGiveTheLoadError)
{
    const QByteArray bytes = corvex::test::readFile(writeImage(u"good.png"_s));
    // GIF takes a whole decoded image; JPEG and TIFF take a PNG's rows while they are decoded, so a cut PNG
    // fails after its destination was made: that partial file goes again.
    for (const QString &extension : {u"gif"_s, u"jpg"_s, u"tiff"_s}) {
        const QStringList sources{
            corvex::test::writeFile(path(extension + u"-zero.png"_s), QByteArray()),
            corvex::test::writeFile(path(extension + u"-cut.png"_s), bytes.left(bytes.size() - 30)),
            corvex::test::writeFile(path(extension + u"-notes.png"_s), "just some text\n")};
        for (const QString &source : sources) {
            SCOPED_TRACE(source.toStdString());
            LogCapture log;
            CorvexError error;
            const QString destination = source.chopped(3) + extension;
            EXPECT_FALSE(rename(source, destination, &error));
            EXPECT_EQ(error.domain(), u"Corvex"_s);
            EXPECT_EQ(error.code(), 1);
            EXPECT_EQ(error.localizedFailureReason(),
                      u"The file \u201c%1\u201d couldn\u2019t be loaded as an image."_s.arg(
                          QFileInfo(source).fileName()));
            EXPECT_EQ(log.messages(DDLogFlagError),
                      QStringList{u"Could not create image source for %1"_s.arg(source)});
            EXPECT_FALSE(QFileInfo::exists(destination));
            EXPECT_FALSE(QFileInfo::exists(source));
        }
    }
}

TEST_F(RenameItemTest, DropboxExplanationIsAddedToVanishedFiles)
{
    pretendDropboxSharesScreenshots();
    CorvexError error;
    EXPECT_FALSE(rename(path(u"vanished.png"_s), path(u"moved.png"_s), &error));
    EXPECT_TRUE(qz_isCocoaFileNoSuchFileError(error));
    EXPECT_TRUE(error.localizedRecoverySuggestion().startsWith(
        u"Do you have \u201cShare screenshots using Dropbox\u201d turned on?"_s));

    error = CorvexError();
    EXPECT_FALSE(rename(path(u"vanished.png"_s), path(u"moved.jpg"_s), &error));
    EXPECT_EQ(error.code(), 4);
    EXPECT_FALSE(error.localizedRecoverySuggestion().isEmpty());

    // Other failures are not about Dropbox.
    const QString existing = corvex::test::writeFile(path(u"taken.png"_s), "x");
    error = CorvexError();
    EXPECT_FALSE(rename(writeImage(u"real.png"_s), existing, &error));
    EXPECT_TRUE(error.localizedRecoverySuggestion().isEmpty());
}

TEST(CorvexErrors, NoSuchFileRecognition)
{
    EXPECT_TRUE(qz_isCocoaFileNoSuchFileError(CorvexError(CorvexError::CocoaErrorDomain, 4)));
    EXPECT_TRUE(qz_isCocoaFileNoSuchFileError(CorvexError(CorvexError::CocoaErrorDomain, 260)));
    EXPECT_FALSE(qz_isCocoaFileNoSuchFileError(CorvexError(CorvexError::CocoaErrorDomain, 516)));
    EXPECT_FALSE(qz_isCocoaFileNoSuchFileError(CorvexError(CorvexError::POSIXErrorDomain, 4)));
    EXPECT_FALSE(qz_isCocoaFileNoSuchFileError(CorvexError(u"Corvex"_s, 4)));
}

TEST(CorvexErrors, DropboxDecorationReplacesTheSuggestionAndKeepsTheRest)
{
    QVariantMap info{{CorvexError::LocalizedRecoverySuggestionErrorKey, u"Old advice"_s},
                     {CorvexError::FilePathErrorKey, u"/x.png"_s}};
    const CorvexError decorated = corvexErrorByAddingDropboxIncompatibilityInformation(
        CorvexError(CorvexError::CocoaErrorDomain, 260, info));
    EXPECT_EQ(decorated.domain(), CorvexError::CocoaErrorDomain);
    EXPECT_EQ(decorated.code(), 260);
    EXPECT_EQ(decorated.userInfo().value(CorvexError::FilePathErrorKey).toString(), u"/x.png"_s);
    EXPECT_EQ(decorated.localizedRecoverySuggestion(),
              QStringLiteral(
                  "Do you have \u201cShare screenshots using Dropbox\u201d turned on? That feature is "
                  "currently incompatible with Corvex. Try turning it off in the Dropbox app preferences."));
    const CorvexError bare = corvexErrorByAddingDropboxIncompatibilityInformation(CorvexError(u"D"_s, 9));
    EXPECT_EQ(bare.userInfo().size(), 1);
}

} // namespace
