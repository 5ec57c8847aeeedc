// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ImageIOPDF.h"

#include "Log.h"

#include <QIODevice>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <cmath>
#include <memory>
#include <poppler-qt6.h>

namespace {

constexpr double InchesPerMeter = 0.0254;

struct FirstPage
{
    std::unique_ptr<Poppler::Document> document;
    std::unique_ptr<Poppler::Page> page;
    ImageIOPDF::PageStatus status = ImageIOPDF::PageStatus::NotOpened;
};

FirstPage openFirstPage(const QString &path, bool logging)
{
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

QImage render(FirstPage &first, qint64 maximumBytes, QString *reason)
{
    const QSizeF points = first.page->pageSizeF();
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
    const QSize size = first.page->pageSize();
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    if (!image.isNull()) {
        image.fill(Qt::transparent);
        QPainter painter(&image);
        if (!first.page->renderToPainter(&painter, 72.0, 72.0, 0, 0, size.width(), size.height()))
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
    return first.page ? first.page->pageSizeF() : QSizeF(0, 0);
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
    const double dpiX = image.dotsPerMeterX() > 0 ? image.dotsPerMeterX() * InchesPerMeter : 72.0;
    const double dpiY = image.dotsPerMeterY() > 0 ? image.dotsPerMeterY() * InchesPerMeter : 72.0;
    const QSizeF points(image.width() * 72.0 / dpiX, image.height() * 72.0 / dpiY);
    QPdfWriter writer(device);
    writer.setResolution(72);
    writer.setCreator(QStringLiteral("Corvex"));
    if (!writer.setPageSize(QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch)) ||
        !writer.setPageMargins(QMarginsF(0, 0, 0, 0), QPageLayout::Point)) {
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
