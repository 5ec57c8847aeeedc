// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "CapturingLogger.h"
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

QImage picture(int width = 40, int height = 30)
{
    QImage image(width, height, QImage::Format_RGB888);
    image.setDotsPerMeterX(2835);
    image.setDotsPerMeterY(2835);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, x < width / 2 ? qRgb(250, 250, 250) : qRgb(20, 90, 200));
    return image;
}

class RenameItemTest : public ::testing::Test
{
protected:
    void TearDown() override
    {
        DropboxCheck::resetClientFactsProvider();
        DropboxCheck::resetHomeFolder();
    }

    QString path(const QString &name) const { return mDir.filePath(name); }
    static QUrl url(const QString &file) { return QUrl::fromLocalFile(file); }

    QString writeImage(const QString &name, const QImage &image = picture())
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
        return Processor::sharedProcessor().renameItemAtURL(url(from), format(QFileInfo(from).suffix()),
                                                            url(to), format(QFileInfo(to).suffix()), error);
    }

    // Makes the Dropbox check say that screenshot sharing might be on.
    void pretendDropboxSharesScreenshots()
    {
        const QString home = path(u"dropbox-home"_s);
        const QString folder = home + u"/Dropbox"_s;
        QDir().mkpath(folder + u"/Screenshots"_s);
        corvex::test::writeFile(home + u"/.dropbox/host.db"_s,
                                "0123abcd\n" + folder.toUtf8().toBase64() + "\n");
        DropboxCheck::setHomeFolder(home);
        DropboxCheck::setClientFactsProvider([] { return DropboxClientFacts{true, u"2.4.0"_s, u"2.4.0"_s}; });
        ASSERT_TRUE(DropboxCheck::screenshotFolderTest());
    }

    QTemporaryDir mDir;
};

TEST_F(RenameItemTest, SameFormatMovesWithoutTrash)
{
    const QString source = writeImage(u"shot.png"_s);
    const QByteArray bytes = [&] {
        QFile file(source);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    QDir().mkpath(path(u"sub"_s));
    const QString destination = path(u"sub/renamed.PNG"_s);
    LogCapture log;
    CorvexError error;
    ASSERT_TRUE(rename(source, destination, &error));
    EXPECT_FALSE(QFileInfo::exists(source));
    QFile moved(destination);
    ASSERT_TRUE(moved.open(QIODevice::ReadOnly));
    EXPECT_EQ(moved.readAll(), bytes);
    EXPECT_FALSE(QDir(trashFolder() + u"/files"_s).exists(u"shot.png"_s));
    EXPECT_TRUE(log.messages(DDLogFlagError).isEmpty());
}

TEST_F(RenameItemTest, SameFormatNeverReplacesAnExistingFile)
{
    const QString source = writeImage(u"a.jpg"_s);
    const QString existing = corvex::test::writeFile(path(u"b.jpeg"_s), "older file");
    CorvexError error;
    EXPECT_FALSE(rename(source, existing, &error));
    EXPECT_EQ(error.domain(), CorvexError::CocoaErrorDomain);
    EXPECT_EQ(error.code(), CorvexError::FileWriteFileExistsError);
    EXPECT_TRUE(QFileInfo::exists(source));
    QFile file(existing);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("older file"));
}

TEST_F(RenameItemTest, FreshlyMadeFormatIsNotTheRowSoTheFileIsConverted)
{
    const QString source = writeImage(u"x.jpg"_s);
    std::unique_ptr<FileFormat> fresh(FileFormat::fileFormat(FileFormat::JPEGType, u"JPEG"_s, {u"jpg"_s}));
    const QString destination = path(u"y.jpg"_s);
    ASSERT_TRUE(Processor::sharedProcessor().renameItemAtURL(url(source), format(u"jpg"_s), url(destination),
                                                             fresh.get()));
    // Converted, so the source went to the Trash rather than being renamed.
    EXPECT_TRUE(QFileInfo::exists(destination));
    EXPECT_TRUE(QFileInfo::exists(trashFolder() + u"/files/x.jpg"_s));
}

TEST_F(RenameItemTest, ConversionWritesTheNewFileAndTrashesTheSource)
{
    const QString source = writeImage(u"Screenshot 1.png"_s);
    const QString destination = path(u"Screenshot 1.jpg"_s);
    LogCapture log;
    CorvexError error;
    ASSERT_TRUE(rename(source, destination, &error));
    auto written = ImageIOSource::createWithURL(url(destination));
    ASSERT_NE(written, nullptr);
    EXPECT_EQ(written->image().size(), QSize(40, 30));
    EXPECT_LT(qAbs(qBlue(written->image().pixel(35, 15)) - 200), 8);
    int errorCode = 0;
    if (ExtendedAttributes::size(destination, ExtendedAttributes::CreatedByCorvex, &errorCode) < 0) {
        EXPECT_TRUE(ExtendedAttributes::isUnsupportedError(errorCode))
            << "the conversion is marked as Corvex's";
    }
    EXPECT_FALSE(QFileInfo::exists(source));
    EXPECT_TRUE(QFileInfo::exists(trashFolder() + u"/files/Screenshot 1.png"_s));
    QFile info(trashFolder() + u"/info/Screenshot 1.png.trashinfo"_s);
    ASSERT_TRUE(info.open(QIODevice::ReadOnly));
    const QByteArray text = info.readAll();
    EXPECT_TRUE(text.contains("[Trash Info]"));
    EXPECT_TRUE(text.contains(QByteArray(QByteArray("Path=") + QUrl::toPercentEncoding(source, "/"))))
        << text.constData();
    EXPECT_TRUE(log.messages(DDLogFlagError).isEmpty());
}

TEST_F(RenameItemTest, EveryPairOfFormatsConverts)
{
    const QImage image = picture(25, 17);
    for (const FileFormat *from : FileFormat::allFileFormats()) {
        for (const FileFormat *to : FileFormat::allFileFormats()) {
            if (from == to)
                continue;
            SCOPED_TRACE(QString(from->description() + u" to "_s + to->description()).toStdString());
            const QString stem = from->preferredExtension() + u"-to-"_s + to->preferredExtension();
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
            EXPECT_FALSE(QFileInfo::exists(source));
        }
    }
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
        QFile file(existing);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_EQ(file.readAll(), QByteArray("older file"));
    }
    EXPECT_EQ(QDir(mDir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{u"taken.jpg"_s});
    // Never the source itself.
    const QString self = writeImage(u"self.png"_s);
    std::unique_ptr<FileFormat> fresh(FileFormat::fileFormat(FileFormat::PNGType, u"PNG"_s, {u"png"_s}));
    EXPECT_FALSE(
        Processor::sharedProcessor().renameItemAtURL(url(self), format(u"png"_s), url(self), fresh.get()));
}

TEST_F(RenameItemTest, MissingSourceGivesNoSuchFileAndTheTrashStepFails)
{
    const QString source = path(u"gone.png"_s);
    LogCapture log;
    CorvexError error;
    EXPECT_FALSE(rename(source, path(u"gone.tiff"_s), &error));
    EXPECT_EQ(error.domain(), CorvexError::CocoaErrorDomain);
    EXPECT_EQ(error.code(), 4);
    EXPECT_EQ(error.userInfo().value(CorvexError::URLErrorKey).toUrl(), url(source));
    EXPECT_TRUE(error.localizedRecoverySuggestion().isEmpty());
    EXPECT_EQ(log.messages(DDLogFlagError),
              (QStringList{u"Could not create image source for %1 because file does not exist"_s.arg(source),
                           u"Could not move %1 to Trash."_s.arg(source)}));
    EXPECT_FALSE(QFileInfo::exists(path(u"gone.tiff"_s)));
}

TEST_F(RenameItemTest, MissingPDFLogsBothPDFLinesFirst)
{
    const QString source = path(u"gone.pdf"_s);
    LogCapture log;
    EXPECT_FALSE(rename(source, path(u"gone.png"_s)));
    EXPECT_EQ(log.messages(DDLogFlagError),
              (QStringList{u"Could not open PDF document %1"_s.arg(source),
                           u"Could not get first page of PDF %1"_s.arg(source),
                           u"Could not create image source for %1 because file does not exist"_s.arg(source),
                           u"Could not move %1 to Trash."_s.arg(source)}));
    log.clear();
    EXPECT_EQ(Processor::sharedProcessor().imageDimensionsOfURL(url(source), true), QSizeF(0, 0));
    EXPECT_EQ(log.messages(DDLogFlagError),
              (QStringList{u"Could not open PDF document %1"_s.arg(source),
                           u"Could not get first page of PDF %1"_s.arg(source)}));
}

TEST_F(RenameItemTest, PDFWithoutPagesLogsOnlyTheMissingPage)
{
    const QString source = corvex::test::writeFile(
        path(u"empty.pdf"_s), "%PDF-1.4\n1 0 obj <</Type /Catalog /Pages 2 0 R>> endobj\n"
                              "2 0 obj <</Type /Pages /Kids [] /Count 0>> endobj\n"
                              "trailer <</Root 1 0 R>>\n%%EOF\n");
    LogCapture log;
    CorvexError error;
    EXPECT_FALSE(rename(source, path(u"empty.png"_s), &error));
    EXPECT_EQ(error.domain(), CorvexError::CorvexErrorDomain);
    EXPECT_EQ(error.code(), 1);
    const QStringList errors = log.messages(DDLogFlagError);
    EXPECT_EQ(errors, (QStringList{u"Could not get first page of PDF %1"_s.arg(source),
                                   u"Could not create image source for %1"_s.arg(source)}));
    // The source is in the Trash, from where it can be taken back.
    EXPECT_TRUE(QFileInfo::exists(trashFolder() + u"/files/empty.pdf"_s));
}

TEST_F(RenameItemTest, UnreadableSourcesGiveTheLoadError)
{
    QFile good(writeImage(u"good.png"_s));
    ASSERT_TRUE(good.open(QIODevice::ReadOnly));
    const QByteArray bytes = good.readAll();
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

TEST_F(RenameItemTest, PNGsConvertedRowByRowKeepResolutionAndTransparency)
{
    QImage image(64, 48, QImage::Format_RGBA8888);
    image.fill(qRgba(0, 0, 0, 0));
    for (int y = 0; y < 48; ++y)
        for (int x = 32; x < 64; ++x)
            image.setPixel(x, y, qRgba(20, 90, 200, 255));
    image.setDotsPerMeterX(5669); // 144 dpi: 32 by 24 points
    image.setDotsPerMeterY(5669);
    for (const QString &extension : {u"jpg"_s, u"tiff"_s}) {
        SCOPED_TRACE(extension.toStdString());
        const QString source = writeImage(u"alpha-%1.png"_s.arg(extension), image);
        const QString destination = path(u"alpha."_s + extension);
        ASSERT_TRUE(rename(source, destination));
        const QSizeF points = Processor::sharedProcessor().imageDimensionsOfURL(url(destination), false);
        EXPECT_NEAR(points.width(), 32, 0.1);
        EXPECT_NEAR(points.height(), 24, 0.1);
        auto written = ImageIOSource::createWithURL(url(destination));
        ASSERT_NE(written, nullptr);
        const QRgb clear = written->image().pixel(5, 5), blue = written->image().pixel(50, 20);
        EXPECT_LT(qAbs(qBlue(blue) - 200), 8);
        if (extension == u"jpg"_s)
            EXPECT_GT(qGray(clear), 250) << "transparency is laid over white";
        else
            EXPECT_EQ(qAlpha(clear), 0);
    }
}

TEST_F(RenameItemTest, DestinationThatCannotBeCreatedGivesTheWriteError)
{
    const QString source = writeImage(u"shot.png"_s);
    const QString destination = path(u"missing-folder/shot.bmp"_s);
    LogCapture log;
    CorvexError error;
    EXPECT_FALSE(rename(source, destination, &error));
    EXPECT_EQ(error.domain(), u"Corvex"_s);
    EXPECT_EQ(error.code(), 3);
    EXPECT_EQ(error.localizedFailureReason(),
              u"An error occurred trying to write the Microsoft BMP screenshot to \u201cshot.bmp\u201d."_s);
    EXPECT_EQ(
        log.messages(DDLogFlagError),
        QStringList{u"Could create image destination at %1 with UTI com.microsoft.bmp"_s.arg(destination)});
    EXPECT_TRUE(QFileInfo::exists(trashFolder() + u"/files/shot.png"_s));
}

TEST_F(RenameItemTest, FailedEncodingGivesTheFinalizeError)
{
    // GIF cannot hold an image wider than 65535 pixels.
    const QString source = writeImage(u"wide.png"_s, picture(70000, 1));
    const QString destination = path(u"wide.gif"_s);
    LogCapture log;
    CorvexError error;
    EXPECT_FALSE(rename(source, destination, &error));
    EXPECT_EQ(error.code(), 2);
    EXPECT_EQ(error.localizedFailureReason(),
              u"An error occurred finalizing the GIF screenshot to \u201cwide.gif\u201d."_s);
    EXPECT_EQ(log.messages(DDLogFlagError),
              QStringList{u"CGImageDestinationFinalize failed for %1"_s.arg(destination)});
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

TEST_F(RenameItemTest, ImageDimensionsOfATIFFAndOfText)
{
    EXPECT_EQ(Processor::sharedProcessor().imageDimensionsOfURL(url(writeImage(u"plain.tiff"_s)), false),
              QSizeF(40, 30));
    EXPECT_EQ(Processor::sharedProcessor().imageDimensionsOfURL(
                  url(corvex::test::writeFile(path(u"t.png"_s), "text")), false),
              QSizeF(0, 0));
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
