// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIODestination.h"

#include "platform/CreatedFiles.h"

#include "core/FileFormat.h"
#include "core/ImageIOGIFEncoder.h"
#include "core/ImageIOJPEG.h"
#include "core/ImageIOPDF.h"
#include "core/ImageIOPNG.h"
#include "core/ImageIORowPipeline.h"
#include "core/ImageIOSource.h"
#include "core/ImageIOTIFF.h"

#include <QImageWriter>
#include <QPainter>
#include <QRandomGenerator>
#include <cerrno>
#include <cstdio>
#include <cstring>

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
    if (!writer.write(image)) {
        setReason(reason, writer.errorString());
        return false;
    }
    return true;
}

} // namespace

bool ImageIODestination::canStreamFromPNG(const QString &uti)
{
    return uti == FileFormat::JPEGType || uti == FileFormat::TIFFType;
}

bool ImageIODestination::canWrite(const QString &uti)
{
    return FileFormat::fileFormatForUTI(uti) != nullptr;
}

std::unique_ptr<ImageIODestination> ImageIODestination::createWithURL(const QUrl &url, const QString &uti,
                                                                      QString *reason, Existing existing)
{
    if (!canWrite(uti)) {
        setReason(reason, QStringLiteral("files of type %1 cannot be written").arg(uti));
        return nullptr;
    }
    if (!url.isLocalFile()) {
        setReason(reason, QStringLiteral("%1 is not a local file").arg(url.toString()));
        return nullptr;
    }
    const QString path = url.toLocalFile();
    const QFileInfo target(path);
    QString replacedPath;
    if (existing == Existing::Replace && (target.exists() || target.isSymLink())) {
        if (target.isDir() && !target.isSymLink()) {
            setReason(reason, QStringLiteral("%1 is a folder").arg(path));
            return nullptr;
        }
        replacedPath = path;
    }
    // NewOnly: an existing file is never overwritten; nothing is created when opening fails. A file to be
    // replaced stays as it is until the new one is complete under a hidden name beside it.
    auto file = std::make_unique<QFile>(path);
    for (int attempt = 0; !replacedPath.isEmpty() && attempt < 100; ++attempt) {
        file->setFileName(target.absolutePath() + QStringLiteral("/.") + target.fileName() +
                          QStringLiteral(".corvex-%1")
                              .arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0')));
        if (!QFileInfo::exists(file->fileName()))
            break;
    }
    if (!file->open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        setReason(reason, file->errorString());
        return nullptr;
    }
    // Marked before anything is written, so that whoever notices the finished file knows who made it.
    CreatedFiles().markCreated(file->fileName(), replacedPath);
    return std::unique_ptr<ImageIODestination>(new ImageIODestination(uti, std::move(file), replacedPath));
}

ImageIODestination::ImageIODestination(const QString &uti, std::unique_ptr<QFile> file,
                                       const QString &replacedPath)
    : mUTI(uti), mFile(std::move(file)), mReplacedPath(replacedPath)
{
}

ImageIODestination::~ImageIODestination()
{
    // A destination given up before finalize() holds nothing: remove the empty file it created.
    if (!mFinalized && mFile->isOpen()) {
        mFile->close();
        if (mFile->size() == 0 || !mReplacedPath.isEmpty())
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
        return ImageIOJPEG::write(mImage, device, reason);
    if (mUTI == FileFormat::BMPType)
        return writeWithQt(flattenedOntoWhite(mImage), device, "bmp", reason);
    if (mUTI == FileFormat::TIFFType)
        return ImageIOTIFF::write(mImage, device, reason);
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
        return close(false, nullptr);
    }
    return close(encode(reason), reason);
}

bool ImageIODestination::finalizeFromPNG(const QString &path, qint64 maximumBytes, bool *sourceFailed,
                                         QString *reason)
{
    if (sourceFailed)
        *sourceFailed = false;
    if (mFinalized || !mFile->isOpen()) {
        setReason(reason, QStringLiteral("the destination was already finalized"));
        return false;
    }
    mFinalized = true;
    std::unique_ptr<ImageRowWriter> writer;
    if (mUTI == FileFormat::JPEGType)
        writer = std::make_unique<ImageIOJPEG>(mFile.get());
    else if (mUTI == FileFormat::TIFFType)
        writer = std::make_unique<ImageIOTIFF>(mFile.get());
    if (!writer) {
        setReason(reason, QStringLiteral("files of type %1 cannot be written row by row").arg(mUTI));
        return close(false, nullptr);
    }
    ImageIORowPipeline::Failure failure = ImageIORowPipeline::Failure::None;
    const bool ok = ImageIORowPipeline::convertPNG(path, maximumBytes, *writer, &failure, reason);
    if (sourceFailed)
        *sourceFailed = failure == ImageIORowPipeline::Failure::Source;
    writer.reset();
    return close(ok, reason);
}

// Flushes and closes the file; a file that failed, or fails now, is removed: it was made here and would only
// hold part of an image.
bool ImageIODestination::close(bool ok, QString *reason)
{
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
    // A complete file takes the place of the one it replaces in one step.
    if (ok && !mReplacedPath.isEmpty() &&
        ::rename(QFile::encodeName(mFile->fileName()).constData(),
                 QFile::encodeName(mReplacedPath).constData()) != 0) {
        setReason(reason, QString::fromLocal8Bit(std::strerror(errno)));
        ok = false;
    }
    if (!ok)
        mFile->remove();
    return ok;
}
