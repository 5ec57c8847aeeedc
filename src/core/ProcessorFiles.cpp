// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The Processor's file operations: measuring an image, and the rename, move or convert of a screenshot.
#include "core/Processor.h"

#include "core/CorvexErrors.h"
#include "core/DropboxCheck.h"
#include "core/FileFormat.h"
#include "core/ImageIODestination.h"
#include "core/ImageIOPDF.h"
#include "core/ImageIOSource.h"
#include "foundation/CorvexError.h"
#include "logging/Log.h"
#include "platform/FileMove.h"
#include "platform/Trash.h"

#include <QFileInfo>

namespace {

std::unique_ptr<ImageIOSource> pdfImageSource(const QString &path)
{
    QString reason;
    const QImage page = ImageIOPDF::renderFirstPage(path, ImageIOSource::MaximumImageBytes, &reason);
    if (page.isNull() && !reason.isEmpty())
        DDLogWarn(QStringLiteral("Could not render %1: %2").arg(path, reason));
    return ImageIOSource::createWithImage(page);
}

} // namespace

CorvexError Processor::decoratedForDropbox(const CorvexError &error) const
{
    if (qz_isCocoaFileNoSuchFileError(error) && mDropboxCheck.screenshotFolderTest())
        return corvexErrorByAddingDropboxIncompatibilityInformation(error);
    return error;
}

QSizeF Processor::imageDimensionsOfURL(const QUrl &url, bool isPDF)
{
    const QString path = url.toLocalFile();
    if (isPDF)
        return ImageIOPDF::firstPageSize(path);
    QSize pixels;
    QSizeF dpi;
    if (!ImageIOSource::readProperties(path, &pixels, &dpi) || dpi.width() <= 0 || dpi.height() <= 0)
        return QSizeF(0, 0);
    return QSizeF(pixels.width() * 72.0 / dpi.width(), pixels.height() * 72.0 / dpi.height());
}

bool Processor::renameItemAtURL(const QUrl &sourceURL, const FileFormat *sourceFormat,
                                const QUrl &destinationURL, const FileFormat *destinationFormat,
                                CorvexError *error)
{
    const QString sourcePath = sourceURL.toLocalFile();
    const QString destinationPath = destinationURL.toLocalFile();

    // The same row of the format table: a plain move, never via the Trash.
    if (sourceFormat == destinationFormat) {
        CorvexError moveError;
        const bool moved = FileMove::moveItemAtPath(sourcePath, destinationPath, &moveError);
        if (!moved) {
            DDLogWarn(QStringLiteral("Could not move %1 to %2: %3")
                          .arg(sourcePath, destinationPath, moveError.localizedDescription()));
            if (error)
                *error = decoratedForDropbox(moveError);
        }
        return moved;
    }

    QString reason;
    const QString uti = destinationFormat ? destinationFormat->uti() : QString();
    const auto sourceFailed = [&] {
        if (QFileInfo::exists(sourcePath) || QFileInfo(sourcePath).isSymLink()) {
            if (!reason.isEmpty())
                DDLogWarn(QStringLiteral("Reading %1 failed: %2").arg(sourcePath, reason));
            DDLogError(QStringLiteral("Could not create image source for %1").arg(sourcePath));
            if (error)
                *error = corvexErrorCGImageSourceCreateWithURL(sourceURL);
        } else {
            DDLogError(QStringLiteral("Could not create image source for %1 because file does not exist")
                           .arg(sourcePath));
            if (error)
                *error = decoratedForDropbox(corvexErrorNoSuchFile(sourceURL));
        }
    };
    const auto creationFailed = [&] {
        DDLogWarn(QStringLiteral("Creating %1 failed: %2").arg(destinationPath, reason));
        DDLogError(
            QStringLiteral("Could create image destination at %1 with UTI %2").arg(destinationPath, uti));
        if (error)
            *error = corvexErrorCGImageDestinationCreateWithURL(destinationURL, destinationFormat);
    };
    const auto finalizeFailed = [&] {
        DDLogWarn(QStringLiteral("Writing %1 failed: %2").arg(destinationPath, reason));
        DDLogError(QStringLiteral("CGImageDestinationFinalize failed for %1").arg(destinationPath));
        if (error)
            *error = corvexErrorCGImageDestinationFinalizeWithURL(destinationURL, destinationFormat);
    };

    // A file at the destination is replaced once the new one is complete; never the source itself.
    const ImageIODestination::Existing existing = QFileInfo(sourcePath) == QFileInfo(destinationPath)
                                                      ? ImageIODestination::Existing::Refuse
                                                      : ImageIODestination::Existing::Replace;
    bool result = false;
    if ((!sourceFormat || sourceFormat->uti() != FileFormat::PDFType) &&
        ImageIODestination::canStreamFromPNG(uti) &&
        ImageIOSource::kindOfFile(sourcePath) == ImageIOSource::Kind::PNG) {
        // A PNG is decoded row by row into the new file: the whole image is never held. Its header is read
        // first, so a file that cannot be read or is too large is refused before anything is created.
        QSize pixels;
        if (!ImageIOSource::readProperties(sourcePath, &pixels, nullptr, &reason)) {
            sourceFailed();
        } else if (qint64(pixels.width()) * pixels.height() * 4 > ImageIOSource::MaximumImageBytes) {
            reason = QStringLiteral("the image is too large (%1 by %2 pixels)")
                         .arg(pixels.width())
                         .arg(pixels.height());
            sourceFailed();
        } else if (auto destination =
                       ImageIODestination::createWithURL(destinationURL, uti, &reason, existing)) {
            bool unreadable = false;
            result = destination->finalizeFromPNG(sourcePath, ImageIOSource::MaximumImageBytes, &unreadable,
                                                  &reason);
            if (!result && unreadable)
                sourceFailed();
            else if (!result)
                finalizeFailed();
        } else {
            creationFailed();
        }
    } else {
        std::unique_ptr<ImageIOSource> source;
        if (sourceFormat && sourceFormat->uti() == FileFormat::PDFType)
            source = pdfImageSource(sourcePath);
        else
            source = ImageIOSource::createWithURL(sourceURL, &reason);
        if (!source) {
            sourceFailed();
        } else if (auto destination =
                       ImageIODestination::createWithURL(destinationURL, uti, &reason, existing)) {
            destination->addImageFromSource(*source);
            source.reset(); // the destination holds the pixels now
            result = destination->finalize(&reason);
            if (!result)
                finalizeFailed();
        } else {
            creationFailed();
        }
    }

    // Converted or not, the source leaves its place for the Trash, from where it can be taken back.
    if (!Trash::moveItemToTrash(sourcePath))
        DDLogError(QStringLiteral("Could not move %1 to Trash.").arg(sourcePath));
    return result;
}
