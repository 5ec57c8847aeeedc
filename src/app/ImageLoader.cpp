// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ImageLoader.h"

#include "ImageIOSource.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QIcon>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPainter>
#include <QStyle>
#include <QUrl>

namespace {

QIcon iconForFileType(const QString &fileExtension)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFile(QStringLiteral("file.") + fileExtension,
                                                           QMimeDatabase::MatchExtension);
    QIcon icon = QIcon::fromTheme(type.iconName());
    if (icon.isNull())
        icon = QIcon::fromTheme(type.genericIconName());
    if (icon.isNull())
        icon = QApplication::style()->standardIcon(QStyle::SP_FileIcon);
    return icon;
}

} // namespace

QSizeF ImageLoader::imageSizeOfFile(const QString &path)
{
    QSize pixels;
    QSizeF dotsPerInch;
    if (!ImageIOSource::readProperties(path, &pixels, &dotsPerInch) || pixels.isEmpty())
        return QSizeF();
    if (dotsPerInch.width() <= 0 || dotsPerInch.height() <= 0)
        return QSizeF(pixels);
    return QSizeF(qRound(pixels.width() * 72.0 / dotsPerInch.width()),
                  qRound(pixels.height() * 72.0 / dotsPerInch.height()));
}

ImageLoader::Result ImageLoader::load(const QString &path, const QSize &displayBound)
{
    Result result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        result.status = Status::ReadFailed;
        return result;
    }
    file.close();
    std::unique_ptr<ImageIOSource> source = ImageIOSource::createWithURL(QUrl::fromLocalFile(path));
    if (!source || source->image().isNull()) {
        result.status = Status::DecodeFailed;
        return result;
    }
    result.status = Status::Loaded;
    result.image = source->image();
    const QSizeF points = source->pointSize();
    source.reset(); // the picture is no longer shared: what follows changes it without a copy
    // A picture stored at more than 72 dpi (a screenshot of a high-density screen) is shown at its size in
    // points.
    if (points.width() > 0 && result.image.width() / points.width() > 1.01)
        result.image.setDevicePixelRatio(result.image.width() / points.width());
    if (!displayBound.isEmpty()) {
        result.display = scaledToFit(result.image, displayBound);
        if (result.display.hasAlphaChannel())
            result.display.convertTo(QImage::Format_ARGB32_Premultiplied);
        else
            result.display.convertTo(QImage::Format_RGB32);
    }
    return result;
}

QImage ImageLoader::scaledToFit(const QImage &image, const QSize &bound)
{
    if (image.isNull() || bound.isEmpty())
        return image;
    const QSize target = image.size().scaled(bound, Qt::KeepAspectRatio).boundedTo(image.size());
    if (target == image.size())
        return image;
    QImage source = image;
    source.setDevicePixelRatio(1);
    // A large reduction first drops whole pixels down to twice the target, which the smooth pass then
    // averages: the same look at a fraction of the time.
    if (source.width() > target.width() * 4 && source.height() > target.height() * 4) {
        source = source.scaled(target * 2, Qt::IgnoreAspectRatio, Qt::FastTransformation);
        // The smooth pass is fastest on 32-bit pixels; converting the reduced copy costs little.
        source.convertTo(source.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                  : QImage::Format_RGB32);
    }
    return source.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage ImageLoader::fileNotFoundImageForFileType(const QString &fileExtension)
{
    // Both icons at 128 by 128 (drawn scaled where the icon has no such size).
    const QSize size(128, 128);
    const QPixmap caution = QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size);
    const int width = size.width();
    const int height = size.height();
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setOpacity(1.0);
    if (!caution.isNull())
        painter.drawPixmap(QRect(0, 0, width, height), caution);
    const QPixmap typeIcon = iconForFileType(fileExtension).pixmap(size);
    const int halfWidth = width / 2;
    const int halfHeight = height / 2;
    if (!typeIcon.isNull())
        painter.drawPixmap(QRect(width - halfWidth, height - halfHeight, halfWidth, halfHeight), typeIcon);
    painter.end();
    return image;
}
