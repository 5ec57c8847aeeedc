// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOPDF.h"

#include "logging/Log.h"

#include <QIODevice>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <cmath>
#include <memory>
#include <mutex>
#include <poppler-qt6.h>

namespace {

constexpr double InchesPerMeter = 0.0254;

struct FirstPage
{
    std::unique_ptr<Poppler::Document> document;
    std::unique_ptr<Poppler::Page> page;
    ImageIOPDF::PageStatus status = ImageIOPDF::PageStatus::NotOpened;
};

// poppler's own complaints about a document ("Error (123): Illegal character") join the log as warnings
// instead of going straight to stderr: most are repaired on the way, and a failure to read is reported as
// an error by the caller anyway.
void logPopplerMessage(const QString &message, const QVariant &closure)
{
    Q_UNUSED(closure);
    DDLogWarn(QStringLiteral("PDF reader: %1").arg(message));
}

void routePopplerMessages()
{
    static std::once_flag once;
    std::call_once(once, [] { Poppler::setDebugErrorFunction(logPopplerMessage, QVariant()); });
}

FirstPage openFirstPage(const QString &path, bool logging)
{
    routePopplerMessages();
    FirstPage first;
    first.document = Poppler::Document::load(path);
    if (!first.document || first.document->isLocked()) {
        first.document.reset();
        if (logging) {
            DDLogError(QStringLiteral("Could not open PDF document %1").arg(path));
            DDLogError(QStringLiteral("Could not get first page of PDF %1").arg(path));
        }
        return first;
    }
    if (first.document->numPages() > 0)
        first.page = first.document->page(0);
    if (!first.page) {
        first.status = ImageIOPDF::PageStatus::NoFirstPage;
        if (logging)
            DDLogError(QStringLiteral("Could not get first page of PDF %1").arg(path));
        return first;
    }
    first.status = ImageIOPDF::PageStatus::Ok;
    return first;
}

// The rotation that undoes the page's own /Rotate: the page is measured and drawn as it lies in its box.
Poppler::Page::Rotation unrotation(const Poppler::Page &page)
{
    switch (page.orientation()) {
    case Poppler::Page::Landscape:
        return Poppler::Page::Rotate270;
    case Poppler::Page::UpsideDown:
        return Poppler::Page::Rotate180;
    case Poppler::Page::Seascape:
        return Poppler::Page::Rotate90;
    case Poppler::Page::Portrait:
        break;
    }
    return Poppler::Page::Rotate0;
}

// The page's size in points without its rotation.
QSizeF unrotatedSize(const Poppler::Page &page)
{
    const QSizeF rotated = page.pageSizeF();
    const Poppler::Page::Orientation orientation = page.orientation();
    return orientation == Poppler::Page::Landscape || orientation == Poppler::Page::Seascape
               ? rotated.transposed()
               : rotated;
}

QImage render(FirstPage &first, qint64 maximumBytes, QString *reason)
{
    const QSizeF points = unrotatedSize(*first.page);
    const double width = std::ceil(points.width()), height = std::ceil(points.height());
    if (width < 1 || height < 1 || width * height * 4 > double(maximumBytes)) {
        if (reason)
            *reason = QStringLiteral("the page is too large or empty (%1 by %2 points)")
                          .arg(points.width())
                          .arg(points.height());
        return {};
    }
    // The QPainter renderer draws an image placed at 1:1 pixel for pixel; the Splash renderer smooths it.
    // Shapes are not antialiased, which would blend the page's outermost pixels of a full-page image with
    // the transparent paper; text still is.
    first.document->setRenderBackend(Poppler::Document::QPainterBackend);
    first.document->setPaperColor(Qt::transparent);
    first.document->setRenderHint(Poppler::Document::Antialiasing, false);
    first.document->setRenderHint(Poppler::Document::TextAntialiasing, true);
    // Drawn into premultiplied pixels, the raster engine's own format: about a fifth quicker than the
    // straight-alpha image the renderer would make itself.
    const QSize size = points.toSize();
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (!image.isNull()) {
        image.fill(Qt::transparent);
        QPainter painter(&image);
        if (!first.page->renderToPainter(&painter, 72.0, 72.0, 0, 0, size.width(), size.height(),
                                         unrotation(*first.page)))
            image = QImage();
    }
    if (image.isNull()) {
        if (reason)
            *reason = QStringLiteral("the page could not be rendered");
        return image;
    }
    // One pixel per point: the image keeps the page's size in points wherever it goes next.
    image.setDotsPerMeterX(qRound(72.0 / InchesPerMeter));
    image.setDotsPerMeterY(qRound(72.0 / InchesPerMeter));
    return image;
}

} // namespace

bool ImageIOPDF::hasSignature(const QByteArray &head)
{
    // Readers accept the header anywhere in the first kilobyte.
    return head.left(1024).contains(QByteArrayLiteral("%PDF-"));
}

QSizeF ImageIOPDF::firstPageSize(const QString &path, PageStatus *status, bool logging)
{
    const FirstPage first = openFirstPage(path, logging);
    if (status)
        *status = first.status;
    return first.page ? unrotatedSize(*first.page) : QSizeF(0, 0);
}

QImage ImageIOPDF::renderFirstPage(const QString &path, qint64 maximumBytes, QString *reason)
{
    FirstPage first = openFirstPage(path, true);
    return first.page ? render(first, maximumBytes, reason) : QImage();
}

QImage ImageIOPDF::renderFirstPageQuietly(const QString &path, qint64 maximumBytes, QString *reason)
{
    FirstPage first = openFirstPage(path, false);
    if (!first.page && reason)
        *reason = first.document ? QStringLiteral("the document has no pages")
                                 : QStringLiteral("the document could not be opened");
    return first.page ? render(first, maximumBytes, reason) : QImage();
}

bool ImageIOPDF::write(const QImage &image, QIODevice *device, QString *reason)
{
    // Resolutions travel in whole dots per metre: 72 dpi arrives as 2835 (72.009 dpi), which would make a
    // 5000-pixel picture a 4999.4-point page. A resolution that close to whole dots per inch is that one.
    const auto dotsPerInch = [](int dotsPerMeter) {
        if (dotsPerMeter <= 0)
            return 72.0;
        const double dpi = dotsPerMeter * InchesPerMeter;
        return std::abs(dpi - std::round(dpi)) < 0.02 ? std::round(dpi) : dpi;
    };
    const double dpiX = dotsPerInch(image.dotsPerMeterX());
    const double dpiY = dotsPerInch(image.dotsPerMeterY());
    const QSizeF points(image.width() * 72.0 / dpiX, image.height() * 72.0 / dpiY);
    QPdfWriter writer(device);
    writer.setResolution(72);
    writer.setCreator(QStringLiteral("Corvex"));
    // A whole number of points goes in as such: the fractional constructor loses a point on many widths
    // (5000 comes out as 4999), and the picture would be resampled into the narrower page.
    const QSize wholePoints = points.toSize();
    const QPageSize pageSize = QSizeF(wholePoints) == points
                                   ? QPageSize(wholePoints, QString(), QPageSize::ExactMatch)
                                   : QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch);
    if (!writer.setPageSize(pageSize) || !writer.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Point)) {
        if (reason)
            *reason = QStringLiteral("the page size %1 by %2 points is not possible")
                          .arg(points.width())
                          .arg(points.height());
        return false;
    }
    QPainter painter;
    if (!painter.begin(&writer)) {
        if (reason)
            *reason = QStringLiteral("the PDF could not be started");
        return false;
    }
    // Without this hint the image is embedded as a lossy JPEG.
    painter.setRenderHint(QPainter::LosslessImageRendering, true);
    painter.drawImage(QRectF(QPointF(0, 0), points), image);
    if (!painter.end()) {
        if (reason)
            *reason = QStringLiteral("the PDF could not be finished");
        return false;
    }
    return true;
}
