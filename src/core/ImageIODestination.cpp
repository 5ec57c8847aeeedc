// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ImageIODestination.h"

#include "ExtendedAttributes.h"

#include "FileFormat.h"
#include "ImageIOGIFEncoder.h"
#include "ImageIOPDF.h"
#include "ImageIOPNG.h"
#include "ImageIOSource.h"

#include <QImageWriter>
#include <QPainter>

namespace {

void setReason(QString *reason, const QString &text)
{
    if (reason)
        *reason = text;
}

// JPEG and BMP have no transparency: partly transparent pixels are shown over white, as a viewer would.
QImage flattenedOntoWhite(const QImage &image)
{
    if (!image.hasAlphaChannel())
        return image;
    QImage flat(image.size(), QImage::Format_RGB888);
    flat.setDotsPerMeterX(image.dotsPerMeterX());
    flat.setDotsPerMeterY(image.dotsPerMeterY());
    flat.fill(Qt::white);
    QPainter painter(&flat);
    painter.drawImage(0, 0, image);
    painter.end();
    return flat;
}

bool writeWithQt(const QImage &image, QIODevice *device, const QByteArray &format, QString *reason)
{
    QImageWriter writer(device, format);
    if (format == "jpeg") {
        writer.setQuality(ImageIODestination::JPEGQuality);
        writer.setOptimizedWrite(true);
    } else if (format == "tiff") {
        writer.setCompression(1); // LZW
    }
    if (!writer.write(image)) {
        setReason(reason, writer.errorString());
        return false;
    }
    return true;
}

} // namespace

bool ImageIODestination::canWrite(const QString &uti)
{
    return FileFormat::fileFormatForUTI(uti) != nullptr;
}

std::unique_ptr<ImageIODestination> ImageIODestination::createWithURL(const QUrl &url, const QString &uti,
                                                                      QString *reason)
{
    if (!canWrite(uti)) {
        setReason(reason, QStringLiteral("files of type %1 cannot be written").arg(uti));
        return nullptr;
    }
    if (!url.isLocalFile()) {
        setReason(reason, QStringLiteral("%1 is not a local file").arg(url.toString()));
        return nullptr;
    }
    // NewOnly: an existing file is never overwritten; nothing is created when opening fails.
    auto file = std::make_unique<QFile>(url.toLocalFile());
    if (!file->open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        setReason(reason, file->errorString());
        return nullptr;
    }
    // Marked before anything is written, so that whoever notices the finished file knows who made it. A file
    // system without extended attributes simply leaves the mark out.
    ExtendedAttributes::set(file->fileName(), ExtendedAttributes::CreatedByCorvex, QByteArray("1"));
    return std::unique_ptr<ImageIODestination>(new ImageIODestination(uti, std::move(file)));
}

ImageIODestination::ImageIODestination(const QString &uti, std::unique_ptr<QFile> file)
    : mUTI(uti), mFile(std::move(file))
{
}

ImageIODestination::~ImageIODestination()
{
    // A destination given up before finalize() holds nothing: remove the empty file it created.
    if (!mFinalized && mFile->isOpen()) {
        mFile->close();
        if (mFile->size() == 0)
            mFile->remove();
    }
}

void ImageIODestination::addImageFromSource(const ImageIOSource &source)
{
    mImage = source.image();
}

void ImageIODestination::addImage(const QImage &image)
{
    mImage = image;
}

bool ImageIODestination::encode(QString *reason)
{
    QIODevice *device = mFile.get();
    if (mUTI == FileFormat::PNGType)
        return ImageIOPNG::write(mImage, device, reason);
    if (mUTI == FileFormat::GIFType) {
        ImageIOGIFEncoder encoder(mImage);
        return encoder.quantize(reason) && encoder.write(device, reason);
    }
    if (mUTI == FileFormat::PDFType)
        return ImageIOPDF::write(mImage, device, reason);
    if (mUTI == FileFormat::JPEGType)
        return writeWithQt(flattenedOntoWhite(mImage), device, "jpeg", reason);
    if (mUTI == FileFormat::BMPType)
        return writeWithQt(flattenedOntoWhite(mImage), device, "bmp", reason);
    if (mUTI == FileFormat::TIFFType)
        return writeWithQt(mImage, device, "tiff", reason);
    setReason(reason, QStringLiteral("files of type %1 cannot be written").arg(mUTI));
    return false;
}

bool ImageIODestination::finalize(QString *reason)
{
    if (mFinalized || !mFile->isOpen()) {
        setReason(reason, QStringLiteral("the destination was already finalized"));
        return false;
    }
    mFinalized = true;
    if (mImage.isNull()) {
        setReason(reason, QStringLiteral("no image was added"));
        mFile->close();
        return false;
    }
    bool ok = encode(reason);
    if (ok && !mFile->flush()) {
        setReason(reason, mFile->errorString());
        ok = false;
    }
    if (ok && mFile->error() != QFileDevice::NoError) {
        setReason(reason, mFile->errorString());
        ok = false;
    }
    mFile->close();
    if (ok && mFile->error() != QFileDevice::NoError) {
        setReason(reason, mFile->errorString());
        ok = false;
    }
    return ok;
}
