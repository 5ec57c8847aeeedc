// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The PDF reader module: page 1 of a document, measured by its media box with poppler's core and drawn
// through poppler's QPainter renderer.
#include "core/PDFReaderModule.h"

// poppler's core headers want its object model first.
#include <Object.h>

#include <Array.h>
#include <Error.h>
#include <GlobalParams.h>
#include <PDFDoc.h>
#include <Page.h>
#include <QFile>
#include <QPainter>
#include <Stream.h>
#include <XRef.h>
#include <atomic>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <poppler-qt6.h>

namespace {

constexpr double InchesPerMeter = 0.0254;

std::atomic<void (*)(const QString &)> gMessageHandler{nullptr};

// poppler's shared state (its global parameters, which its Qt documents make and drop as they come and go)
// is touched by one call at a time.
std::mutex gPopplerMutex;

void forwardPopplerMessage(const QString &message, const QVariant &)
{
    if (const auto handler = gMessageHandler.load())
        handler(message);
}

void forwardCoreMessage(ErrorCategory, Goffset position, const char *message)
{
    forwardPopplerMessage(position >= 0
                              ? QStringLiteral("Error (%1): %2").arg(position).arg(QString::fromUtf8(message))
                              : QStringLiteral("Error: %1").arg(QString::fromUtf8(message)),
                          QVariant());
}

// A document written into memory.
class ByteArrayOutStream final : public OutStream
{
public:
    explicit ByteArrayOutStream(QByteArray *bytes) : mBytes(bytes) {}
    void close() override {}
    Goffset getPos() override { return mBytes->size(); }
    void put(char c) override { mBytes->append(c); }
    void printf(const char *format, ...) override
    {
        va_list arguments;
        va_start(arguments, format);
        va_list again;
        va_copy(again, arguments);
        const int length = std::vsnprintf(nullptr, 0, format, arguments);
        va_end(arguments);
        if (length > 0) {
            const qsizetype at = mBytes->size();
            mBytes->resize(at + length + 1);
            std::vsnprintf(mBytes->data() + at, size_t(length) + 1, format, again);
            mBytes->chop(1);
        }
        va_end(again);
    }

private:
    QByteArray *mBytes;
};

struct FirstPage
{
    // The document as poppler's core reads it, and its page 1 (owned by the document).
    std::unique_ptr<PDFDoc> document;
    Page *page = nullptr;
    PDFReaderModule::Status status = PDFReaderModule::Status::NotOpened;

    // Page 1's media box in points, as it lies in the file: its /Rotate is not applied.
    QSizeF mediaSize() const
    {
        const PDFRectangle *box = page->getMediaBox();
        return QSizeF(std::abs(box->x2 - box->x1), std::abs(box->y2 - box->y1));
    }
};

FirstPage openFirstPage(const QString &path)
{
    if (!globalParams)
        globalParams = std::make_unique<GlobalParams>();
    setErrorCallback(forwardCoreMessage);
    FirstPage first;
    first.document =
        std::make_unique<PDFDoc>(std::make_unique<GooString>(QFile::encodeName(path).constData()));
    if (!first.document->isOk()) {
        first.document.reset();
        return first;
    }
    if (first.document->getNumPages() > 0)
        first.page = first.document->getPage(1);
    first.status = first.page ? PDFReaderModule::Status::Ok : PDFReaderModule::Status::NoFirstPage;
    return first;
}

// The document for the renderer, which draws a page's crop box turned by its /Rotate: when page 1 has a
// crop box of its own or a rotation, a copy in memory whose page 1 shows its whole media box as it lies.
std::unique_ptr<Poppler::Document> documentShowingTheMediaBox(const QString &path, FirstPage &first)
{
    const PDFRectangle *media = first.page->getMediaBox(), *crop = first.page->getCropBox();
    if (first.page->getRotate() == 0 && media->x1 == crop->x1 && media->y1 == crop->y1 &&
        media->x2 == crop->x2 && media->y2 == crop->y2)
        return Poppler::Document::load(path);
    XRef *xref = first.document->getXRef();
    const Ref ref = first.page->getRef();
    Object dictionary = xref->fetch(ref);
    if (!dictionary.isDict())
        return nullptr;
    auto *box = new Array(xref);
    for (const double edge : {media->x1, media->y1, media->x2, media->y2})
        box->add(Object(edge));
    dictionary.dictSet("CropBox", Object(box));
    dictionary.dictSet("Rotate", Object(0));
    xref->setModifiedObject(&dictionary, ref);
    QByteArray bytes;
    ByteArrayOutStream out(&bytes);
    if (first.document->saveAs(&out, writeStandard) != errNone)
        return nullptr;
    return Poppler::Document::loadFromData(bytes);
}

QSizeF firstPageSize(const QString &path, PDFReaderModule::Status *status)
{
    const std::lock_guard lock(gPopplerMutex);
    const FirstPage first = openFirstPage(path);
    *status = first.status;
    return first.page ? first.mediaSize() : QSizeF(0, 0);
}

QImage renderFirstPage(const QString &path, qint64 maximumBytes, PDFReaderModule::Status *status,
                       QString *reason)
{
    const std::lock_guard lock(gPopplerMutex);
    FirstPage first = openFirstPage(path);
    *status = first.status;
    if (!first.page) {
        *reason = first.document ? QStringLiteral("the document has no pages")
                                 : QStringLiteral("the document could not be opened");
        return {};
    }
    const QSizeF points = first.mediaSize();
    const double width = std::ceil(points.width()), height = std::ceil(points.height());
    if (width < 1 || height < 1 || width * height * 4 > double(maximumBytes)) {
        *reason = QStringLiteral("the page is too large or empty (%1 by %2 points)")
                      .arg(points.width())
                      .arg(points.height());
        return {};
    }
    const std::unique_ptr<Poppler::Document> document = documentShowingTheMediaBox(path, first);
    first = FirstPage(); // the core's copy is no longer needed
    const std::unique_ptr<Poppler::Page> page =
        document && !document->isLocked() ? document->page(0) : nullptr;
    QImage image;
    if (page) {
        // The QPainter renderer draws an image placed at 1:1 pixel for pixel; the Splash renderer smooths
        // it. Shapes are not antialiased, which would blend the page's outermost pixels of a full-page image
        // with the transparent paper; text still is.
        document->setRenderBackend(Poppler::Document::QPainterBackend);
        document->setPaperColor(Qt::transparent);
        document->setRenderHint(Poppler::Document::Antialiasing, false);
        document->setRenderHint(Poppler::Document::TextAntialiasing, true);
        // Drawn into premultiplied pixels, the raster engine's own format: about a fifth quicker than the
        // straight-alpha image the renderer would make itself.
        const QSize size = points.toSize();
        image = QImage(size, QImage::Format_ARGB32_Premultiplied);
        if (!image.isNull()) {
            image.fill(Qt::transparent);
            QPainter painter(&image);
            if (!page->renderToPainter(&painter, 72.0, 72.0, 0, 0, size.width(), size.height()))
                image = QImage();
        }
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
    const std::lock_guard lock(gPopplerMutex);
    gMessageHandler = handler;
    Poppler::setDebugErrorFunction(forwardPopplerMessage, QVariant());
    setErrorCallback(forwardCoreMessage);
}

const PDFReaderModule kModule{PDFReaderModule::Version, setMessageHandler, firstPageSize, renderFirstPage};

} // namespace

extern "C" Q_DECL_EXPORT const PDFReaderModule *corvex_pdf_reader_module()
{
    return &kModule;
}
