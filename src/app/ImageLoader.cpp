// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ImageLoader.h"

#include "app/AreaScaler.h"
#include "core/ImageIOPNG.h"
#include "core/ImageIOResolution.h"
#include "core/ImageIOSource.h"
#include "core/PNGRowReader.h"

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QImageReader>
#include <QMimeDatabase>
#include <QPainter>
#include <QStyle>
#include <QUrl>
#include <cmath>
#include <optional>

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

// The size a picture is shown at: its size in points when it is stored at more than 72 dpi (a screenshot of a
// high-density screen), otherwise its pixel size.
QSizeF logicalSize(const QSize &pixels, const QSizeF &dotsPerInch)
{
    if (dotsPerInch.width() <= 0 || dotsPerInch.height() <= 0)
        return QSizeF(pixels);
    // Files store dots per metre, a whole number: 144 dpi is stored as 5669 (143.99 dpi). Resolutions are
    // taken to a tenth of a dot per inch.
    const QSizeF rounded(std::round(dotsPerInch.width() * 10.0) / 10.0,
                         std::round(dotsPerInch.height() * 10.0) / 10.0);
    const QSizeF points(pixels.width() * 72.0 / rounded.width(), pixels.height() * 72.0 / rounded.height());
    if (points.width() > 0 && pixels.width() / points.width() > 1.01)
        return points;
    return QSizeF(pixels);
}

// Gives an image of the picture the device pixel ratio that makes its logical size the picture's.
void setLogicalWidth(QImage *image, qreal logicalWidth)
{
    if (image->isNull() || logicalWidth <= 0)
        return;
    const qreal ratio = image->width() / logicalWidth;
    image->setDevicePixelRatio(qAbs(ratio - 1.0) < 1e-9 ? 1.0 : ratio);
}

// Takes a PNG's rows as they are decoded and averages them straight down to the display size.
class DisplayRowReader final : public PNGRowReader
{
public:
    explicit DisplayRowReader(const QSize &bound) : mBound(bound) {}

    bool begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch) override
    {
        mSize = size;
        mDotsPerInch = dotsPerInch;
        mScaler.emplace(size, format, AreaScaler::fittingSize(size, mBound));
        return mScaler->isValid();
    }
    bool row(int, const uchar *pixels) override { return mScaler->addRow(pixels); }

    QSize size() const { return mSize; }
    QSizeF dotsPerInch() const { return mDotsPerInch; }
    QImage result() const { return mScaler ? mScaler->result() : QImage(); }

private:
    QSize mBound;
    QSize mSize;
    QSizeF mDotsPerInch;
    std::optional<AreaScaler> mScaler;
};

// A JPEG decoded at a reduced scale, turned upright as its orientation says; pixelSize and dotsPerInch get
// the upright full picture's.
QImage readScaledJPEG(const QString &path, const QSize &bound, QSize *pixelSize, QSizeF *dotsPerInch)
{
    QImageReader reader(path, QByteArrayLiteral("jpeg"));
    reader.setAutoTransform(true);
    reader.setAllocationLimit(int(ImageIOSource::MaximumImageBytes >> 20));
    const QSize stored = reader.size();
    if (!stored.isValid() || qint64(stored.width()) * stored.height() * 4 > ImageIOSource::MaximumImageBytes)
        return {};
    // The scaled size applies before the picture is turned upright.
    const bool turned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize upright = turned ? stored.transposed() : stored;
    const QSize target = AreaScaler::fittingSize(upright, bound);
    if (target != upright) {
        reader.setScaledSize(turned ? target.transposed() : target);
        reader.setQuality(100); // smooth scaling after the reduced decode
    }
    QImage image;
    if (!reader.read(&image))
        return {};
    const QSizeF stored72 = ImageIOResolution::storedDotsPerInch(path, ImageIOResolution::Container::JPEG);
    *pixelSize = upright;
    *dotsPerInch = turned ? stored72.transposed() : stored72;
    return image;
}

QImage displayFormat(QImage image)
{
    image.convertTo(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    return image;
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
    result.status = Status::DecodeFailed;
    QSizeF dotsPerInch;
    switch (ImageIOSource::kindOfFile(path)) {
    case ImageIOSource::Kind::PNG: {
        DisplayRowReader reader(displayBound);
        if (!ImageIOPNG::readRows(path, ImageIOSource::MaximumImageBytes, reader, nullptr))
            return result;
        result.display = reader.result();
        result.pixelSize = reader.size();
        dotsPerInch = reader.dotsPerInch();
        break;
    }
    case ImageIOSource::Kind::JPEG:
        result.display = displayFormat(readScaledJPEG(path, displayBound, &result.pixelSize, &dotsPerInch));
        break;
    default: {
        // The other formats are decoded whole, then reduced.
        std::unique_ptr<ImageIOSource> source = ImageIOSource::createWithURL(QUrl::fromLocalFile(path));
        if (!source || source->image().isNull())
            return result;
        const QImage &image = source->image();
        result.pixelSize = image.size();
        const QSizeF points = source->pointSize();
        dotsPerInch = QSizeF(image.width() * 72.0 / points.width(), image.height() * 72.0 / points.height());
        result.display = displayFormat(scaledToFit(image, displayBound));
        break;
    }
    }
    if (result.display.isNull())
        return result;
    result.status = Status::Loaded;
    setLogicalWidth(&result.display, logicalSize(result.pixelSize, dotsPerInch).width());
    if (result.display.size() == result.pixelSize)
        result.image = result.display;
    return result;
}

ImageLoader::Result ImageLoader::loadFullImage(const QString &path)
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
    result.pixelSize = result.image.size();
    const QSizeF dotsPerInch(result.image.width() * 72.0 / points.width(),
                             result.image.height() * 72.0 / points.height());
    setLogicalWidth(&result.image, logicalSize(result.pixelSize, dotsPerInch).width());
    return result;
}

QImage ImageLoader::scaledToFit(const QImage &image, const QSize &bound)
{
    if (image.isNull() || bound.isEmpty())
        return image;
    const QSize target = AreaScaler::fittingSize(image.size(), bound);
    if (target == image.size())
        return image;
    return AreaScaler::scaled(image, target);
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
