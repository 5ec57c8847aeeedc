// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOTIFF.h"

#include <QIODevice>
#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <tiffio.h>
#include <vector>

struct ImageIOTIFF::State
{
    QIODevice *device = nullptr;
    TIFF *tiff = nullptr;
    QString message;
    int width = 0;
    int height = 0;
    int channels = 3;
    int rowsWritten = 0;
    int rowsPerStrip = 1;
    int rowsInStrip = 0;
    std::vector<uchar> strip; // the rows of the strip being filled; the predictor then works on it in place
};

namespace {

// Strips of about this many bytes: each is compressed on its own, and one is held while it fills.
constexpr qint64 StripBytes = 256 * 1024;

QIODevice *deviceOf(thandle_t handle)
{
    return static_cast<ImageIOTIFF::State *>(handle)->device;
}

tmsize_t readProc(thandle_t handle, void *data, tmsize_t size)
{
    return tmsize_t(deviceOf(handle)->read(static_cast<char *>(data), qint64(size)));
}

tmsize_t writeProc(thandle_t handle, void *data, tmsize_t size)
{
    return tmsize_t(deviceOf(handle)->write(static_cast<const char *>(data), qint64(size)));
}

toff_t seekProc(thandle_t handle, toff_t offset, int whence)
{
    QIODevice *device = deviceOf(handle);
    qint64 target = qint64(offset);
    if (whence == SEEK_CUR)
        target += device->pos();
    else if (whence == SEEK_END)
        target += device->size();
    return device->seek(target) ? toff_t(target) : toff_t(-1);
}

int closeProc(thandle_t)
{
    return 0; // the device belongs to the caller
}

toff_t sizeProc(thandle_t handle)
{
    return toff_t(deviceOf(handle)->size());
}

int mapProc(thandle_t, void **, toff_t *)
{
    return 0;
}

void unmapProc(thandle_t, void *, toff_t) {}

// Keeps the first error of this file as the reason; nothing goes to stderr.
int errorHandler(TIFF *, void *user, const char *module, const char *format, va_list arguments)
{
    auto *state = static_cast<ImageIOTIFF::State *>(user);
    if (state->message.isEmpty()) {
        char text[512];
        std::vsnprintf(text, sizeof text, format, arguments);
        state->message =
            module ? QStringLiteral("%1: %2").arg(QString::fromUtf8(module), QString::fromUtf8(text))
                   : QString::fromUtf8(text);
    }
    return 1;
}

int warningHandler(TIFF *, void *, const char *, const char *, va_list)
{
    return 1;
}

// Resolutions often come from whole pixels per metre (72 dpi is 2835, 72.009 dpi): a tenth of a dot per inch
// is kept, so that a 72-dpi image measures its whole pixel size in points.
float storedResolution(double dotsPerInch)
{
    return dotsPerInch > 0 ? float(std::round(dotsPerInch * 10.0) / 10.0) : 72.0f;
}

bool failed(ImageIOTIFF::State *state, const QString &fallback, QString *reason)
{
    if (reason)
        *reason = state->message.isEmpty() ? fallback : state->message;
    return false;
}

} // namespace

ImageIOTIFF::ImageIOTIFF(QIODevice *device) : d(std::make_unique<State>())
{
    d->device = device;
}

ImageIOTIFF::~ImageIOTIFF()
{
    if (d->tiff)
        TIFFCleanup(d->tiff);
}

bool ImageIOTIFF::begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch, QString *reason)
{
    State *state = d.get();
    if (state->tiff || size.isEmpty() ||
        (format != QImage::Format_RGB888 && format != QImage::Format_RGBA8888)) {
        if (reason)
            *reason =
                QStringLiteral("a TIFF image cannot be %1 by %2 pixels").arg(size.width()).arg(size.height());
        return false;
    }
    state->width = size.width();
    state->height = size.height();
    state->channels = format == QImage::Format_RGBA8888 ? 4 : 3;
    TIFFOpenOptions *options = TIFFOpenOptionsAlloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options, errorHandler, state);
    TIFFOpenOptionsSetWarningHandlerExtR(options, warningHandler, state);
    state->tiff = TIFFClientOpenExt("image.tiff", "w", state, readProc, writeProc, seekProc, closeProc,
                                    sizeProc, mapProc, unmapProc, options);
    TIFFOpenOptionsFree(options);
    if (!state->tiff)
        return failed(state, QStringLiteral("the TIFF file could not be started"), reason);
    TIFF *tiff = state->tiff;
    const qint64 rowBytes = qint64(state->width) * state->channels;
    state->rowsPerStrip = int(std::clamp<qint64>(StripBytes / rowBytes, 1, state->height));
    state->strip.resize(size_t(rowBytes) * size_t(state->rowsPerStrip));
    bool ok = TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, quint32(state->width)) &&
              TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, quint32(state->height)) &&
              TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8) &&
              TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, state->channels) &&
              TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB) &&
              TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
              TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT) &&
              TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, quint32(state->rowsPerStrip)) &&
              TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH) &&
              TIFFSetField(tiff, TIFFTAG_XRESOLUTION, storedResolution(dotsPerInch.width())) &&
              TIFFSetField(tiff, TIFFTAG_YRESOLUTION, storedResolution(dotsPerInch.height())) &&
              TIFFSetField(tiff, TIFFTAG_SOFTWARE, "Corvex");
    if (ok && state->channels == 4) {
        const quint16 extra[] = {EXTRASAMPLE_UNASSALPHA};
        ok = TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, extra);
    }
    // Deflate at its quickest level with the horizontal predictor: flat areas and text shrink to a fraction
    // while costing little more time than writing the raw pixels.
    if (ok)
        ok = TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE) &&
             TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL) &&
             TIFFSetField(tiff, TIFFTAG_ZIPQUALITY, 1);
    if (!ok)
        return failed(state, QStringLiteral("the TIFF header could not be written"), reason);
    return true;
}

bool ImageIOTIFF::writeRows(const uchar *pixels, int count, QString *reason)
{
    State *state = d.get();
    if (!state->tiff || count < 0 || state->rowsWritten + count > state->height) {
        if (reason)
            *reason = QStringLiteral("more rows than the image has");
        return false;
    }
    const size_t rowBytes = size_t(state->width) * size_t(state->channels);
    for (int row = 0; row < count; ++row) {
        std::memcpy(state->strip.data() + size_t(state->rowsInStrip) * rowBytes,
                    pixels + size_t(row) * rowBytes, rowBytes);
        ++state->rowsInStrip;
        ++state->rowsWritten;
        // A whole strip is encoded in one go, which lets libtiff use its fastest deflate.
        if (state->rowsInStrip == state->rowsPerStrip || state->rowsWritten == state->height) {
            const quint32 index = quint32((state->rowsWritten - 1) / state->rowsPerStrip);
            if (TIFFWriteEncodedStrip(state->tiff, index, state->strip.data(),
                                      tmsize_t(rowBytes) * state->rowsInStrip) < 0)
                return failed(state, QStringLiteral("the TIFF rows could not be written"), reason);
            state->rowsInStrip = 0;
        }
    }
    return true;
}

bool ImageIOTIFF::finish(QString *reason)
{
    State *state = d.get();
    if (!state->tiff || state->rowsWritten != state->height) {
        if (reason)
            *reason = QStringLiteral("the image ended after %1 of its %2 rows")
                          .arg(state->rowsWritten)
                          .arg(state->height);
        return false;
    }
    const bool ok = TIFFWriteDirectory(state->tiff) && TIFFFlush(state->tiff);
    TIFFCleanup(state->tiff);
    state->tiff = nullptr;
    return ok || failed(state, QStringLiteral("the TIFF file could not be completed"), reason);
}

bool ImageIOTIFF::write(const QImage &image, QIODevice *device, QString *reason)
{
    ImageIOTIFF encoder(device);
    return ImageRowWriter::writeImage(image, encoder, reason);
}
