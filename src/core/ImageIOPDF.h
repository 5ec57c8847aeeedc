// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/PDFReaderModule.h"

#include <QImage>
#include <QSizeF>
#include <QString>

class QIODevice;

// PDF reading (page 1 only, through poppler's QPainter renderer or, for a page that is one upright image,
// that image decoded row by row into the page) and writing (one page the size of the image in points, the
// image embedded losslessly).
class ImageIOPDF
{
public:
    ImageIOPDF() = delete;

    // True when the bytes start like a PDF file.
    static bool hasSignature(const QByteArray &head);

    // The outcome of opening a document and fetching its first page.
    enum class PageStatus { Ok, NotOpened, NoFirstPage };

    // The size of page 1 in points. When the document does not open, logs "Could not open PDF document %1"
    // and then also "Could not get first page of PDF %1"; when page 1 is missing only the latter. Both at
    // error level, when logging. Returns 0 by 0 on failure.
    static QSizeF firstPageSize(const QString &path, PageStatus *status = nullptr, bool logging = true);

    // Page 1 rendered at one pixel per point: unpainted parts stay transparent, so an image written by
    // write() comes back with the same pixels. Logs like firstPageSize(). A null image when the document or
    // page is missing, or when the page would need more than maximumBytes of pixels.
    static QImage renderFirstPage(const QString &path, qint64 maximumBytes, QString *reason = nullptr);

    // Page 1 rendered as above, without any log line.
    static QImage renderFirstPageQuietly(const QString &path, qint64 maximumBytes, QString *reason = nullptr);

    // How a page is rendered: its one image decoded row by row into the page when the page shows nothing else
    // and the image is upright, or drawn by poppler's renderer; both give the same pixels.
    using Route = PDFReaderModule::Route;

    // Page 1 rendered quietly as above, decoded where the page allows it when route is Decoded, always drawn
    // when it is Drawn; *taken says which it was.
    static QImage renderFirstPageBy(Route route, const QString &path, qint64 maximumBytes, Route *taken,
                                    QString *reason = nullptr);

    // Writes a one-page PDF whose page is the image's size in points (pixels × 72 / its resolution), the
    // image filling the page, its pixels stored losslessly.
    static bool write(const QImage &image, QIODevice *device, QString *reason);
};
