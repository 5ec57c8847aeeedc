// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSizeF>
#include <QString>

// The PDF reader, a module of its own (libcorvex_pdf.so in the bundle's Contents/PlugIns): poppler and the
// many libraries it brings are loaded only when a PDF is read. Its one exported function,
// PDFReaderModule::EntryName, hands out this table.
struct PDFReaderModule
{
    static constexpr int Version = 2;
    static constexpr const char *EntryName = "corvex_pdf_reader_module";
    static constexpr const char *FileName = "libcorvex_pdf.so";

    enum class Status { Ok, NotOpened, NoFirstPage };

    // The two ways a page is rendered. Decoded: the page shows nothing but one upright image, which is
    // decoded row by row, straight into the page when it lies pixel for pixel on its grid, else a band of
    // rows at a time drawn as the renderer draws the whole image, so that only the page is ever held whole.
    // Drawn: poppler's QPainter renderer draws the page (holding a decoded image whole as well). Where both
    // are possible they give the same pixels.
    enum class Route { Decoded, Drawn };

    int version;
    // Where poppler's own complaints about a document go ("Error (123): Illegal character").
    void (*setMessageHandler)(void (*handler)(const QString &message));
    // The size of page 1's media box in points, as it lies in the file (its /Rotate not applied); 0 by 0 on
    // failure.
    QSizeF (*firstPageSize)(const QString &path, Status *status);
    // Page 1's whole media box at one pixel per point, unrotated, unpainted parts transparent; a null image,
    // with the reason, when the document or page is missing or the page would need more than maximumBytes of
    // pixels. Decoded where the page allows it when route is Decoded, always drawn when it is Drawn; *taken
    // says which it was.
    QImage (*renderFirstPage)(const QString &path, qint64 maximumBytes, Route route, Route *taken,
                              Status *status, QString *reason);
};

extern "C" {
using PDFReaderModuleEntry = const PDFReaderModule *(*)();
}
