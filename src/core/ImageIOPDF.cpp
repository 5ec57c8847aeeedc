// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOPDF.h"

#include "core/PDFReaderModule.h"
#include "foundation/BundlePlugIns.h"
#include "logging/Log.h"

#include <QIODevice>
#include <QLibrary>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <cmath>

namespace {

constexpr double InchesPerMeter = 0.0254;

// poppler's own complaints about a document ("Error (123): Illegal character") join the log as warnings
// instead of going straight to stderr: most are repaired on the way, and a failure to read is reported as
// an error by the caller anyway.
void logPopplerMessage(const QString &message)
{
    DDLogWarn(QStringLiteral("PDF reader: %1").arg(message));
}

struct Reader
{
    const PDFReaderModule *module = nullptr;
    QString problem; // why there is none
};

// The reader module, loaded once, on first use, from the PlugIns folder of the bundle. It is never unloaded.
const Reader &reader()
{
    static const Reader loaded = [] {
        Reader result;
        const QString path = bundlePlugInPath(QLatin1String(PDFReaderModule::FileName));
        if (path.isEmpty()) {
            result.problem =
                QStringLiteral("PDF support is not installed: there is no %1 in the PlugIns folder of "
                               "Corvex.app")
                    .arg(QLatin1String(PDFReaderModule::FileName));
            return result;
        }
        QLibrary library(path);
        const auto entry =
            reinterpret_cast<PDFReaderModuleEntry>(library.resolve(PDFReaderModule::EntryName));
        const PDFReaderModule *module = entry ? entry() : nullptr;
        if (module && module->version == PDFReaderModule::Version) {
            module->setMessageHandler(logPopplerMessage);
            result.module = module;
            return result;
        }
        result.problem =
            QStringLiteral("PDF support is not installed properly: %1 %2")
                .arg(path, module ? QStringLiteral("is of another version") : library.errorString());
        return result;
    }();
    return loaded;
}

ImageIOPDF::PageStatus pageStatus(PDFReaderModule::Status status)
{
    switch (status) {
    case PDFReaderModule::Status::Ok:
        return ImageIOPDF::PageStatus::Ok;
    case PDFReaderModule::Status::NoFirstPage:
        return ImageIOPDF::PageStatus::NoFirstPage;
    case PDFReaderModule::Status::NotOpened:
        break;
    }
    return ImageIOPDF::PageStatus::NotOpened;
}

// The error lines of a document that did not open, or of a missing page 1.
void logFailure(ImageIOPDF::PageStatus status, const QString &path)
{
    if (status == ImageIOPDF::PageStatus::NotOpened)
        DDLogError(QStringLiteral("Could not open PDF document %1").arg(path));
    if (status != ImageIOPDF::PageStatus::Ok)
        DDLogError(QStringLiteral("Could not get first page of PDF %1").arg(path));
}

QImage render(const QString &path, qint64 maximumBytes, QString *reason, bool logging,
              ImageIOPDF::Route route = ImageIOPDF::Route::Decoded, ImageIOPDF::Route *taken = nullptr)
{
    const Reader &pdf = reader();
    QString why;
    PDFReaderModule::Status status = PDFReaderModule::Status::NotOpened;
    ImageIOPDF::Route used = ImageIOPDF::Route::Drawn;
    QImage image;
    if (pdf.module) {
        image = pdf.module->renderFirstPage(path, maximumBytes, route, &used, &status, &why);
    } else {
        why = pdf.problem;
        if (logging)
            DDLogError(pdf.problem);
    }
    if (logging)
        logFailure(pageStatus(status), path);
    if (image.isNull() && reason)
        *reason = why;
    if (taken)
        *taken = used;
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
    const Reader &pdf = reader();
    PDFReaderModule::Status found = PDFReaderModule::Status::NotOpened;
    QSizeF size(0, 0);
    if (pdf.module)
        size = pdf.module->firstPageSize(path, &found);
    else if (logging)
        DDLogError(pdf.problem);
    if (status)
        *status = pageStatus(found);
    if (logging)
        logFailure(pageStatus(found), path);
    return size;
}

QImage ImageIOPDF::renderFirstPage(const QString &path, qint64 maximumBytes, QString *reason)
{
    return render(path, maximumBytes, reason, true);
}

QImage ImageIOPDF::renderFirstPageQuietly(const QString &path, qint64 maximumBytes, QString *reason)
{
    return render(path, maximumBytes, reason, false);
}

QImage ImageIOPDF::renderFirstPageBy(Route route, const QString &path, qint64 maximumBytes, Route *taken,
                                     QString *reason)
{
    return render(path, maximumBytes, reason, false, route, taken);
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
