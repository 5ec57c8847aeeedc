// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "CapturingLogger.h"
#include "HandWrittenPDF.h"
#include "PNGChunks.h"
#include "TestSupport.h"
#include "core/FileFormat.h"
#include "core/ImageIODestination.h"
#include "core/ImageIOGIFEncoder.h"
#include "core/ImageIOPDF.h"
#include "core/ImageIOSource.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::psnr;

using namespace pngchunks;

// A smooth two-way gradient with thousands of colours.
QImage gradient(int width = 300, int height = 200)
{
    QImage image(width, height, QImage::Format_RGB888);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x * 255 / (width - 1), y * 255 / (height - 1), (x + y) % 256));
    image.setDotsPerMeterX(2835);
    image.setDotsPerMeterY(2835);
    return image;
}

// A PDF file of the objects, numbered from 1; the first is the catalog.
QString writePDF(const QString &path, const QList<QByteArray> &objects)
{
    return corvex::test::writeFile(path, corvex::test::handWrittenPDF(objects));
}

QByteArray pdfStream(const QByteArray &dictionary, const QByteArray &data)
{
    return "<<" + dictionary + " /Length " + QByteArray::number(data.size()) + ">> stream\n" + data +
           "\nendstream";
}

class ImageIOTest : public ::testing::Test
{
protected:
    QString path(const QString &name) const { return mDir.filePath(name); }

    // Writes the image with the destination for the format; the path's file must not exist yet.
    QString write(const QString &name, const QString &uti, const QImage &image)
    {
        QString reason;
        auto destination = ImageIODestination::createWithURL(QUrl::fromLocalFile(path(name)), uti, &reason);
        EXPECT_NE(destination, nullptr) << reason.toStdString();
        if (!destination)
            return {};
        destination->addImage(image);
        EXPECT_TRUE(destination->finalize(&reason)) << reason.toStdString();
        return path(name);
    }

    QImage read(const QString &file)
    {
        QString reason;
        auto source = ImageIOSource::createWithURL(QUrl::fromLocalFile(file), &reason);
        EXPECT_NE(source, nullptr) << file.toStdString() << ": " << reason.toStdString();
        return source ? source->image() : QImage();
    }

    QTemporaryDir mDir;
};

TEST_F(ImageIOTest, KindIsRecognisedFromContentNotName)
{
    const QImage image = blocks();
    EXPECT_EQ(ImageIOSource::kindOfFile(write(u"a.jpg"_s, FileFormat::PNGType, image)),
              ImageIOSource::Kind::PNG);
    EXPECT_EQ(ImageIOSource::kindOfFile(write(u"b.png"_s, FileFormat::JPEGType, image)),
              ImageIOSource::Kind::JPEG);
    EXPECT_EQ(ImageIOSource::kindOfFile(write(u"c"_s, FileFormat::GIFType, image)), ImageIOSource::Kind::GIF);
    EXPECT_EQ(ImageIOSource::kindOfFile(write(u"d"_s, FileFormat::BMPType, image)), ImageIOSource::Kind::BMP);
    EXPECT_EQ(ImageIOSource::kindOfFile(write(u"e"_s, FileFormat::TIFFType, image)),
              ImageIOSource::Kind::TIFF);
    EXPECT_EQ(ImageIOSource::kindOfFile(write(u"f"_s, FileFormat::PDFType, image)), ImageIOSource::Kind::PDF);
    EXPECT_EQ(ImageIOSource::kindOfFile(corvex::test::writeFile(path(u"g.png"_s), "hello")),
              ImageIOSource::Kind::Unknown);
    EXPECT_EQ(ImageIOSource::kindOfFile(path(u"missing.png"_s)), ImageIOSource::Kind::Unknown);
}

TEST_F(ImageIOTest, TransparencySurvivesWhereTheFormatHasIt)
{
    QImage image(20, 10, QImage::Format_RGBA8888);
    image.setDotsPerMeterX(2835);
    image.setDotsPerMeterY(2835);
    image.fill(Qt::transparent);
    for (int x = 0; x < 10; ++x)
        for (int y = 0; y < 10; ++y)
            image.setPixel(x, y, qRgba(200, 10, 10, 255));
    image.setPixel(15, 5, qRgba(0, 0, 0, 128)); // half-transparent black

    const QImage png = read(write(u"t.png"_s, FileFormat::PNGType, image));
    EXPECT_EQ(png.format(), QImage::Format_RGBA8888);
    EXPECT_EQ(png.pixel(15, 5), qRgba(0, 0, 0, 128));
    EXPECT_EQ(qAlpha(png.pixel(19, 9)), 0);

    const QImage pdf = read(write(u"t.pdf"_s, FileFormat::PDFType, image));
    EXPECT_EQ(qAlpha(pdf.pixel(19, 9)), 0);
    EXPECT_EQ(pdf.pixel(3, 3), qRgba(200, 10, 10, 255));

    // GIF: the fully transparent pixels stay transparent, the half-transparent one is blended onto white.
    const QImage gif = read(write(u"t.gif"_s, FileFormat::GIFType, image));
    EXPECT_EQ(qAlpha(gif.pixel(19, 9)), 0);
    EXPECT_EQ(gif.pixel(3, 3), qRgb(200, 10, 10));
    EXPECT_EQ(gif.pixel(15, 5), qRgb(127, 127, 127));
}

TEST_F(ImageIOTest, GIFKeepsFewColoursExactlyAndQuantisesMany)
{
    ImageIOGIFEncoder few(blocks());
    ASSERT_TRUE(few.quantize(nullptr));
    EXPECT_TRUE(few.isExact());
    EXPECT_EQ(few.palette().size(), 40);
    // At the bound: 256 distinct colours still fit a palette exactly, 257 do not.
    for (const int colours : {256, 257}) {
        QImage strip(colours, 1, QImage::Format_RGB32);
        for (int x = 0; x < colours; ++x)
            strip.setPixel(x, 0, qRgb(x % 256, x / 256, 7));
        ImageIOGIFEncoder encoder(strip);
        ASSERT_TRUE(encoder.quantize(nullptr));
        EXPECT_EQ(encoder.isExact(), colours == 256) << colours;
        EXPECT_LE(encoder.palette().size(), 256);
    }

    const QImage rich = gradient();
    ImageIOGIFEncoder many(rich);
    ASSERT_TRUE(many.quantize(nullptr));
    EXPECT_FALSE(many.isExact());
    EXPECT_LE(many.palette().size(), 256);
    const QImage back = read(write(u"rich.gif"_s, FileFormat::GIFType, rich));
    ASSERT_EQ(back.size(), rich.size());
    EXPECT_GT(psnr(back, rich), 30.0);
}

TEST_F(ImageIOTest, ResolutionGivesPointSizeAndTravelsWithTheImage)
{
    QImage image = blocks(144, 72);
    image.setDotsPerMeterX(5669); // 144 dpi
    image.setDotsPerMeterY(5669);
    const QString png = write(u"retina.png"_s, FileFormat::PNGType, image);
    QSize pixels;
    QSizeF dpi;
    ASSERT_TRUE(ImageIOSource::readProperties(png, &pixels, &dpi));
    EXPECT_EQ(pixels, QSize(144, 72));
    EXPECT_NEAR(dpi.width(), 144.0, 0.1);
    auto source = ImageIOSource::createWithURL(QUrl::fromLocalFile(png));
    ASSERT_NE(source, nullptr);
    EXPECT_NEAR(source->pointSize().width(), 72.0, 0.1);
    EXPECT_NEAR(source->pointSize().height(), 36.0, 0.1);

    // A PDF page is the image's size in points.
    const QString pdf = write(u"retina.pdf"_s, FileFormat::PDFType, image);
    const QSizeF page = ImageIOPDF::firstPageSize(pdf);
    EXPECT_NEAR(page.width(), 72.0, 0.01);
    EXPECT_NEAR(page.height(), 36.0, 0.01);

    for (const QString &uti : {FileFormat::JPEGType, FileFormat::TIFFType}) {
        SCOPED_TRACE(uti.toStdString());
        ASSERT_TRUE(ImageIOSource::readProperties(write(u"r-"_s + QString::number(qHash(uti)), uti, image),
                                                  &pixels, &dpi));
        EXPECT_EQ(pixels, image.size());
        EXPECT_NEAR(dpi.width(), 144.0, 0.5);
    }

    // 72 dpi is stored as 2835 pixels per metre (72.009 dpi): it reads as 72, and the size in points stays
    // whole.
    const QString plain = write(u"plain.png"_s, FileFormat::PNGType, blocks(1440, 900));
    ASSERT_TRUE(ImageIOSource::readProperties(plain, &pixels, &dpi));
    EXPECT_EQ(dpi, QSizeF(72, 72));
    source = ImageIOSource::createWithURL(QUrl::fromLocalFile(plain));
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(int(source->pointSize().width()), 1440);
    EXPECT_EQ(int(source->pointSize().height()), 900);
}

TEST_F(ImageIOTest, BrokenFilesAreRefusedWithAReason)
{
    const QByteArray bytes = corvex::test::readFile(write(u"good.png"_s, FileFormat::PNGType, gradient()));
    const QStringList broken{
        corvex::test::writeFile(path(u"empty.png"_s), QByteArray()),
        corvex::test::writeFile(path(u"cut.png"_s), bytes.left(bytes.size() / 2)),
        corvex::test::writeFile(path(u"text.png"_s), "This is not a picture.\n"),
        corvex::test::writeFile(path(u"cut.jpg"_s), QByteArray("\xff\xd8\xff\xe0", 4)),
        corvex::test::writeFile(path(u"nopages.pdf"_s),
                                "%PDF-1.4\n1 0 obj <</Type /Catalog /Pages 2 0 R>> endobj\n"
                                "2 0 obj <</Type /Pages /Kids [] /Count 0>> endobj\n"
                                "trailer <</Root 1 0 R>>\n%%EOF\n"),
        path(u"missing.png"_s),
    };
    QDir().mkpath(path(u"folder.png"_s));
    for (const QString &brokenPath : broken + QStringList{path(u"folder.png"_s)}) {
        SCOPED_TRACE(brokenPath.toStdString());
        QString reason;
        EXPECT_EQ(ImageIOSource::createWithURL(QUrl::fromLocalFile(brokenPath), &reason), nullptr);
        EXPECT_FALSE(reason.isEmpty());
        // A cut file still has its header: it can be measured, not converted.
        if (!brokenPath.endsWith(QLatin1String("cut.png"))) {
            EXPECT_FALSE(ImageIOSource::readProperties(brokenPath, nullptr, nullptr));
        }
    }
}

TEST_F(ImageIOTest, HugeDeclaredSizesAreRefusedBeforeDecoding)
{
    // A valid PNG header claiming 30000 by 30000 pixels, followed by a tiny image stream.
    const QByteArray header = bigEndian(30000) + bigEndian(30000) + QByteArray("\x08\x02\x00\x00\x00", 5);
    const QByteArray idat = QByteArray::fromHex("789c030000000001");
    const QByteArray png = QByteArray("\x89PNG\r\n\x1a\n", 8) + chunk("IHDR", header) + chunk("IDAT", idat) +
                           chunk("IEND", QByteArray());
    const QString pngPath = corvex::test::writeFile(path(u"huge.png"_s), png);
    QString reason;
    EXPECT_EQ(ImageIOSource::createWithURL(QUrl::fromLocalFile(pngPath), &reason), nullptr);
    EXPECT_TRUE(reason.contains(u"too large"_s)) << reason.toStdString();
    // The header alone can still be measured.
    QSize pixels;
    EXPECT_TRUE(ImageIOSource::readProperties(pngPath, &pixels, nullptr));
    EXPECT_EQ(pixels, QSize(30000, 30000));

    // A BMP header claiming the same.
    QByteArray bmp("BM", 2);
    const auto le32 = [](quint32 value) { return littleEndian(value); };
    bmp += le32(54 + 16) + le32(0) + le32(54) + le32(40) + le32(30000) + le32(30000) +
           QByteArray("\x01\x00\x18\x00", 4) + le32(0) + le32(16) + le32(2835) + le32(2835) + le32(0) +
           le32(0) + QByteArray(16, '\0');
    const QString bmpPath = corvex::test::writeFile(path(u"huge.bmp"_s), bmp);
    EXPECT_EQ(ImageIOSource::createWithURL(QUrl::fromLocalFile(bmpPath), &reason), nullptr);
}

TEST_F(ImageIOTest, DestinationNeverReplacesAndCreatesNothingOnFailure)
{
    const QString existing = corvex::test::writeFile(path(u"there.jpg"_s), "keep me");
    QString reason;
    EXPECT_EQ(ImageIODestination::createWithURL(QUrl::fromLocalFile(existing), FileFormat::JPEGType, &reason),
              nullptr);
    EXPECT_EQ(corvex::test::readFile(existing), QByteArray("keep me"));

    EXPECT_EQ(ImageIODestination::createWithURL(QUrl::fromLocalFile(path(u"x.webp"_s)),
                                                u"org.webmproject.webp"_s, &reason),
              nullptr);
    EXPECT_FALSE(QFileInfo::exists(path(u"x.webp"_s)));
    EXPECT_EQ(ImageIODestination::createWithURL(QUrl::fromLocalFile(path(u"no/such/folder.png"_s)),
                                                FileFormat::PNGType, &reason),
              nullptr);

    // Given up before finalising: the empty file it made goes again.
    {
        auto destination =
            ImageIODestination::createWithURL(QUrl::fromLocalFile(path(u"later.png"_s)), FileFormat::PNGType);
        ASSERT_NE(destination, nullptr);
        EXPECT_TRUE(QFileInfo::exists(path(u"later.png"_s)));
    }
    EXPECT_FALSE(QFileInfo::exists(path(u"later.png"_s)));

    // Nothing added: finalising fails.
    auto destination =
        ImageIODestination::createWithURL(QUrl::fromLocalFile(path(u"nothing.png"_s)), FileFormat::PNGType);
    ASSERT_NE(destination, nullptr);
    EXPECT_FALSE(destination->finalize(&reason));
}

} // namespace

TEST_F(ImageIOTest, APDFPageIsExactlyTheImagesSizeInPoints)
{
    for (const int width : {1, 2880, 4000, 4999, 5000, 5120, 7680}) {
        SCOPED_TRACE(width);
        const QImage image = blocks(width, 3);
        const QString pdf = write(u"w%1.pdf"_s.arg(width), FileFormat::PDFType, image);
        EXPECT_EQ(ImageIOPDF::firstPageSize(pdf), QSizeF(width, 3));
        EXPECT_EQ(read(pdf).size(), QSize(width, 3));
    }
}

TEST_F(ImageIOTest, APDFIsMeasuredAndDrawnByPageOnesWholeMediaBoxUnrotated)
{
    // Page 1 paints a red square at 400,600 (from the box's lower left corner) to 500,700: outside every
    // crop box below. Page 2, of another size, is never looked at.
    const auto page = [this](const QByteArray &media, const QByteArray &extra) {
        const QByteArray content = "q 1 0 0 rg " + QByteArray::number(400 + media.split(' ').at(0).toInt()) +
                                   " " + QByteArray::number(600 + media.split(' ').at(1).toInt()) +
                                   " 100 100 re f Q";
        return writePDF(
            path(u"box.pdf"_s),
            {"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R 5 0 R] /Count 2>>",
             "<</Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [" + media + "] " + extra + ">>",
             pdfStream("", content),
             "<</Type /Page /Parent 2 0 R /Contents 4 0 R /MediaBox [0 0 300 400]>>"});
    };
    const struct
    {
        QByteArray media, extra;
    } cases[] = {{"0 0 612 792", ""},
                 {"0 0 612 792", "/Rotate 90"},
                 {"0 0 612 792", "/Rotate 180"},
                 {"0 0 612 792", "/Rotate 270"},
                 {"0 0 612 792", "/CropBox [0 0 300 200]"},
                 {"0 0 612 792", "/CropBox [0 0 300 200] /Rotate 90"},
                 {"100 100 712 892", "/CropBox [100 100 400 300]"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(QByteArray(c.media + " " + c.extra).constData());
        const QString file = page(c.media, c.extra);
        EXPECT_EQ(ImageIOPDF::firstPageSize(file), QSizeF(612, 792));
        const QImage image = read(file);
        ASSERT_EQ(image.size(), QSize(612, 792));
        EXPECT_EQ(image.pixel(450, 792 - 650), qRgb(255, 0, 0));
        EXPECT_EQ(qAlpha(image.pixel(300, 500)), 0);
        QSize pixels;
        ASSERT_TRUE(ImageIOSource::readProperties(file, &pixels, nullptr));
        EXPECT_EQ(pixels, QSize(612, 792));
        QFile::remove(file);
    }
}

TEST_F(ImageIOTest, APageThatIsOneUprightImageIsDecodedToTheSamePixelsAsDrawn)
{
    // 40 by 30 samples of many colours and every alpha value, as RGB, grey, JPEGs and a soft mask.
    QImage picture(40, 30, QImage::Format_ARGB32);
    QByteArray rgb, grey, alpha, rgbJPEG, greyJPEG;
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 40; ++x) {
            picture.setPixel(x, y, qRgba(x * 6, y * 8, (x * y) % 256, (x + 40 * y) % 256));
            rgb.append(char(x * 6)).append(char(y * 8)).append(char(x * y));
            grey += char(x * 6 + y);
            alpha += char((x + 40 * y) % 256);
        }
    QBuffer rgbBuffer(&rgbJPEG), greyBuffer(&greyJPEG);
    ASSERT_TRUE(picture.convertToFormat(QImage::Format_RGB32).save(&rgbBuffer, "JPEG"));
    ASSERT_TRUE(picture.convertToFormat(QImage::Format_Grayscale8).save(&greyBuffer, "JPEG"));
    const QByteArray sampled = "/Type /XObject /Subtype /Image /Width 40 /Height 30 /BitsPerComponent 8 ";
    const QByteArray rgbFlate = sampled + "/ColorSpace /DeviceRGB /Filter /FlateDecode",
                     flateRGB = qCompress(rgb).mid(4);
    // At 7, 11 from the top left corner of a 60 by 50 point page.
    const QByteArray placed = "q 40 0 0 30 7 9 cm /Im Do Q";
    using Route = ImageIOPDF::Route;
    const struct
    {
        const char *name;
        QByteArray image, samples, content, page;
        Route route;
    } cases[] = {
        {"RGB", rgbFlate, flateRGB, placed, "", Route::Decoded},
        {"grey", sampled + "/ColorSpace /DeviceGray /Filter /FlateDecode", qCompress(grey).mid(4), placed, "",
         Route::Decoded},
        {"RGB JPEG", sampled + "/ColorSpace /DeviceRGB /Filter /DCTDecode", rgbJPEG, placed, "",
         Route::Decoded},
        {"grey JPEG", sampled + "/ColorSpace /DeviceGray /Filter /DCTDecode", greyJPEG, placed, "",
         Route::Decoded},
        {"inverted", rgbFlate + " /Decode [1 0 1 0 1 0]", flateRGB, placed, "", Route::Decoded},
        {"soft mask", rgbFlate + " /SMask 6 0 R", flateRGB, placed, "", Route::Decoded},
        {"flipped", rgbFlate, flateRGB, "q 40 0 0 -30 7 39 cm /Im Do Q", "", Route::Drawn},
        {"turned", rgbFlate, flateRGB, "q 0 40 -30 0 37 9 cm /Im Do Q", "", Route::Drawn},
        {"translucent", rgbFlate, flateRGB, "/Half gs " + placed, "", Route::Drawn},
        {"clipped", rgbFlate, flateRGB, "10 10 20 20 re W n " + placed, "", Route::Drawn},
        {"drawn over", rgbFlate, flateRGB, placed + " 0 0 1 rg 0 0 9 9 re f", "", Route::Drawn},
        {"rotated page", rgbFlate, flateRGB, placed, "/Rotate 90", Route::Drawn},
    };
    const auto expectSamePixels = [](const QString &file, Route route) {
        Route taken = Route::Drawn, reference = Route::Decoded;
        const QImage page = ImageIOPDF::renderFirstPageBy(Route::Decoded, file, 1 << 24, &taken);
        const QImage drawn = ImageIOPDF::renderFirstPageBy(Route::Drawn, file, 1 << 24, &reference);
        EXPECT_EQ(taken, route);
        EXPECT_EQ(reference, Route::Drawn);
        EXPECT_FALSE(drawn.isNull());
        EXPECT_TRUE(page == drawn);
    };
    const auto writePage = [&](const QString &name, const QByteArray &image, const QByteArray &samples,
                               const QByteArray &content, const QByteArray &page,
                               const QByteArray &media = "0 0 60 50") {
        return writePDF(path(name + u".pdf"_s),
                        {"<</Type /Catalog /Pages 2 0 R>>", "<</Type /Pages /Kids [3 0 R] /Count 1>>",
                         "<</Type /Page /Parent 2 0 R /MediaBox [" + media + "] /Contents 4 0 R " + page +
                             " /Resources <</XObject <</Im 5 0 R>> /ExtGState <</Half <</ca 0.5>>>>>>>>",
                         pdfStream("", content), pdfStream(image, samples),
                         pdfStream(sampled + "/ColorSpace /DeviceGray", alpha)});
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        expectSamePixels(writePage(QLatin1String(c.name), c.image, c.samples, c.content, c.page), c.route);
    }
    // Scaled images, off the page's grid by fractions of a pixel, partly off the page when enlarged or moved
    // over its edges, on pages of whole and fractional sizes (the page is the media box rounded to whole
    // pixels), are decoded a band of rows at a time: RGB with a soft mask, and grey of an odd size.
    const QByteArray oddGrey = "/Type /XObject /Subtype /Image /Width 39 /Height 29 /BitsPerComponent 8 "
                               "/ColorSpace /DeviceGray /Filter /FlateDecode";
    const struct
    {
        QByteArray media, at;
    } placements[] = {{"0 0 60 50", "7.25 9.5"},
                      {"0 0 60 50", "-3.5 -2.5"},
                      {"0 0 60.5 50.25", "7.25 9.5"},
                      {"0 0 60.75 49.5", "40.5 -2.5"},
                      {"0 0 60.25 50.75", "-3.5 35.75"}};
    for (const auto &placement : placements)
        for (const QByteArray scale : {"0.75", "0.5", "0.6666667", "0.6", "1.5", "2"})
            for (const auto &[image, samples] : {std::pair(QByteArray(rgbFlate + " /SMask 6 0 R"), flateRGB),
                                                 std::pair(oddGrey, qCompress(grey).mid(4))}) {
                SCOPED_TRACE(QByteArray(placement.media + " at " + placement.at + " by " + scale +
                                        (image == oddGrey ? " grey" : " RGB"))
                                 .constData());
                const QByteArray content =
                    "q " + scale + " 0 0 " + scale + " " + placement.at + " cm 40 0 0 30 0 0 cm /Im Do Q";
                expectSamePixels(writePage(u"scaled"_s, image, samples, content, "", placement.media),
                                 Route::Decoded);
            }
    // At one sample per pixel on a page of fractions of a point, on its pixels: straight into the page.
    expectSamePixels(writePage(u"fractional"_s, rgbFlate + " /SMask 6 0 R", flateRGB,
                               "q 40 0 0 30 7 9.25 cm /Im Do Q", "", "0 0 60.5 50.25"),
                     Route::Decoded);
    // The pages Corvex writes, with transparency and without.
    picture.setDotsPerMeterX(2835);
    picture.setDotsPerMeterY(2835);
    expectSamePixels(write(u"alpha.pdf"_s, FileFormat::PDFType, picture), Route::Decoded);
    expectSamePixels(
        write(u"opaque.pdf"_s, FileFormat::PDFType, picture.convertToFormat(QImage::Format_RGB32)),
        Route::Decoded);
    // At 96 dpi, 39 by 29 pixels are 29.25 by 21.75 points, on a page of whole points.
    picture.setDotsPerMeterX(3780);
    picture.setDotsPerMeterY(3780);
    expectSamePixels(write(u"96dpi.pdf"_s, FileFormat::PDFType, picture.copy(0, 0, 39, 29)), Route::Decoded);
}

TEST_F(ImageIOTest, TheReadersOwnComplaintsGoToTheLog)
{
    LogCapture capture;
    const QString damaged = corvex::test::writeFile(
        path(u"damaged.pdf"_s), "%PDF-1.4\n1 0 obj <</Type /Catalog /Pages 2 0 R>> endobj\n"
                                "2 0 obj <</Type /Pages /Kids [] /Count 0>> endobj\n"
                                "startxref\n99999\n%%EOF\n");
    testing::internal::CaptureStderr();
    ImageIOPDF::firstPageSize(damaged);
    const std::string standardError = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(capture.messages(DDLogFlagWarning).filter(u"PDF reader: "_s).isEmpty());
    EXPECT_EQ(standardError.find("Error"), std::string::npos) << standardError;
}
