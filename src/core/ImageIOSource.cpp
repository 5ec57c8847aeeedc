// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOSource.h"

#include <cmath>

#include "core/ImageIOPDF.h"
#include "core/ImageIOPNG.h"
#include "core/ImageIOResolution.h"

#include <QFile>
#include <QImageReader>

namespace {

constexpr double InchesPerMeter = 0.0254;

QByteArray qtFormatName(ImageIOSource::Kind kind)
{
    switch (kind) {
    case ImageIOSource::Kind::GIF:
        return QByteArrayLiteral("gif");
    case ImageIOSource::Kind::JPEG:
        return QByteArrayLiteral("jpeg");
    case ImageIOSource::Kind::BMP:
        return QByteArrayLiteral("bmp");
    case ImageIOSource::Kind::TIFF:
        return QByteArrayLiteral("tiff");
    default:
        return {};
    }
}

// The resolution the file stores (72 dpi when none): Qt's readers leave 96 dpi on images whose file has none.
QSizeF storedResolution(const QString &path, ImageIOSource::Kind kind)
{
    switch (kind) {
    case ImageIOSource::Kind::JPEG:
        return ImageIOResolution::storedDotsPerInch(path, ImageIOResolution::Container::JPEG);
    case ImageIOSource::Kind::TIFF:
        return ImageIOResolution::storedDotsPerInch(path, ImageIOResolution::Container::TIFF);
    case ImageIOSource::Kind::BMP:
        return ImageIOResolution::storedDotsPerInch(path, ImageIOResolution::Container::BMP);
    default:
        return QSizeF(72, 72);
    }
}

void setResolution(QImage *image, const QSizeF &dpi)
{
    image->setDotsPerMeterX(qRound(dpi.width() / InchesPerMeter));
    image->setDotsPerMeterY(qRound(dpi.height() / InchesPerMeter));
}

QSizeF resolutionOf(const QImage &image)
{
    const int x = image.dotsPerMeterX(), y = image.dotsPerMeterY();
    if (x <= 0 || y <= 0)
        return QSizeF(72, 72);
    // Pixels per metre are whole numbers: 72 dpi is stored as 2835 (72.009 dpi). Round to a tenth of a dot
    // per inch so that a 72-dpi image measures its whole pixel size in points.
    const auto perInch = [](int perMetre) { return std::round(perMetre * InchesPerMeter * 10.0) / 10.0; };
    return QSizeF(perInch(x), perInch(y));
}

void setReason(QString *reason, const QString &text)
{
    if (reason)
        *reason = text;
}

} // namespace

ImageIOSource::Kind ImageIOSource::kindOfFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Kind::Unknown;
    const QByteArray head = file.read(1024);
    if (ImageIOPNG::hasSignature(head))
        return Kind::PNG;
    if (head.startsWith("\xff\xd8\xff"))
        return Kind::JPEG;
    if (head.startsWith("GIF87a") || head.startsWith("GIF89a"))
        return Kind::GIF;
    if (head.startsWith(QByteArray("II*\0", 4)) || head.startsWith(QByteArray("MM\0*", 4)))
        return Kind::TIFF;
    if (head.startsWith("BM") && head.size() >= 26)
        return Kind::BMP;
    if (ImageIOPDF::hasSignature(head))
        return Kind::PDF;
    return Kind::Unknown;
}

QImage ImageIOSource::readWithQt(const QString &path, Kind kind, QString *reason)
{
    QImageReader reader(path, qtFormatName(kind));
    reader.setAllocationLimit(int(MaximumImageBytes >> 20));
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() * 4 > MaximumImageBytes) {
        setReason(
            reason,
            QStringLiteral("the image is too large (%1 by %2 pixels)").arg(size.width()).arg(size.height()));
        return {};
    }
    QImage image;
    if (!reader.read(&image)) {
        setReason(reason, reader.errorString());
        return {};
    }
    setResolution(&image, storedResolution(path, kind));
    return image;
}

std::unique_ptr<ImageIOSource> ImageIOSource::createWithURL(const QUrl &url, QString *reason)
{
    const QString path = url.toLocalFile();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        setReason(reason, file.errorString());
        return nullptr;
    }
    file.close();
    QImage image;
    switch (const Kind kind = kindOfFile(path)) {
    case Kind::Unknown:
        setReason(reason, QStringLiteral("the file is not an image of a known kind"));
        return nullptr;
    case Kind::PNG:
        image = ImageIOPNG::read(path, MaximumImageBytes, reason);
        break;
    case Kind::PDF:
        // One pixel per point.
        image = ImageIOPDF::renderFirstPageQuietly(path, MaximumImageBytes, reason);
        if (!image.isNull())
            setResolution(&image, QSizeF(72, 72));
        break;
    default:
        image = readWithQt(path, kind, reason);
        break;
    }
    if (image.isNull())
        return nullptr;
    return std::unique_ptr<ImageIOSource>(new ImageIOSource(std::move(image)));
}

std::unique_ptr<ImageIOSource> ImageIOSource::createWithImage(const QImage &image)
{
    if (image.isNull())
        return nullptr;
    return std::unique_ptr<ImageIOSource>(new ImageIOSource(image));
}

bool ImageIOSource::readProperties(const QString &path, QSize *pixelSize, QSizeF *dotsPerInch,
                                   QString *reason)
{
    const Kind kind = kindOfFile(path);
    switch (kind) {
    case Kind::Unknown:
        setReason(reason, QStringLiteral("the file is not an image of a known kind"));
        return false;
    case Kind::PNG:
        return ImageIOPNG::readProperties(path, pixelSize, dotsPerInch, reason);
    case Kind::PDF: {
        // A PDF measures its first page, in points.
        ImageIOPDF::PageStatus status;
        const QSizeF size = ImageIOPDF::firstPageSize(path, &status, false);
        if (status != ImageIOPDF::PageStatus::Ok) {
            setReason(reason, QStringLiteral("the document has no first page"));
            return false;
        }
        if (pixelSize)
            *pixelSize = size.toSize();
        if (dotsPerInch)
            *dotsPerInch = QSizeF(72, 72);
        return true;
    }
    default: {
        QImageReader reader(path, qtFormatName(kind));
        const QSize size = reader.size();
        if (!size.isValid() || size.isEmpty()) {
            setReason(reason, reader.errorString());
            return false;
        }
        if (pixelSize)
            *pixelSize = size;
        if (dotsPerInch)
            *dotsPerInch = storedResolution(path, kind);
        return true;
    }
    }
}

QSizeF ImageIOSource::pointSize() const
{
    const QSizeF dpi = resolutionOf(mImage);
    return QSizeF(mImage.width() * 72.0 / dpi.width(), mImage.height() * 72.0 / dpi.height());
}
