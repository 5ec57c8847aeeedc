// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The PDF reader module: page 1 of a document, measured and drawn through poppler's QPainter renderer.
#include "core/PDFReaderModule.h"

#include <QPainter>
#include <atomic>
#include <cmath>
#include <memory>
#include <poppler-qt6.h>

namespace {

constexpr double InchesPerMeter = 0.0254;

std::atomic<void (*)(const QString &)> gMessageHandler{nullptr};

void forwardPopplerMessage(const QString &message, const QVariant &)
{
    if (const auto handler = gMessageHandler.load())
        handler(message);
}

struct FirstPage
{
    std::unique_ptr<Poppler::Document> document;
    std::unique_ptr<Poppler::Page> page;
    PDFReaderModule::Status status = PDFReaderModule::Status::NotOpened;
};

FirstPage openFirstPage(const QString &path)
{
    FirstPage first;
    first.document = Poppler::Document::load(path);
    if (!first.document || first.document->isLocked()) {
        first.document.reset();
        return first;
    }
    if (first.document->numPages() > 0)
        first.page = first.document->page(0);
    first.status = first.page ? PDFReaderModule::Status::Ok : PDFReaderModule::Status::NoFirstPage;
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

QSizeF firstPageSize(const QString &path, PDFReaderModule::Status *status)
{
    const FirstPage first = openFirstPage(path);
    *status = first.status;
    return first.page ? unrotatedSize(*first.page) : QSizeF(0, 0);
}

QImage renderFirstPage(const QString &path, qint64 maximumBytes, PDFReaderModule::Status *status,
                       QString *reason)
{
    FirstPage first = openFirstPage(path);
    *status = first.status;
    if (!first.page) {
        *reason = first.document ? QStringLiteral("the document has no pages")
                                 : QStringLiteral("the document could not be opened");
        return {};
    }
    const QSizeF points = unrotatedSize(*first.page);
    const double width = std::ceil(points.width()), height = std::ceil(points.height());
    if (width < 1 || height < 1 || width * height * 4 > double(maximumBytes)) {
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
        *reason = QStringLiteral("the page could not be rendered");
        return image;
    }
    // One pixel per point: the image keeps the page's size in points wherever it goes next.
    image.setDotsPerMeterX(qRound(72.0 / InchesPerMeter));
    image.setDotsPerMeterY(qRound(72.0 / InchesPerMeter));
    return image;
}

void setMessageHandler(void (*handler)(const QString &))
{
    gMessageHandler = handler;
    Poppler::setDebugErrorFunction(forwardPopplerMessage, QVariant());
}

const PDFReaderModule kModule{PDFReaderModule::Version, setMessageHandler, firstPageSize, renderFirstPage};

} // namespace

extern "C" Q_DECL_EXPORT const PDFReaderModule *corvex_pdf_reader_module()
{
    return &kModule;
}
