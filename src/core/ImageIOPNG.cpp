// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOPNG.h"

#include <QFile>
#include <QIODevice>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <spng.h>
#include <sys/mman.h>
#include <vector>

namespace {

constexpr double InchesPerMeter = 0.0254;

struct SpngDeleter
{
    void operator()(spng_ctx *context) const { spng_ctx_free(context); }
};
using SpngContext = std::unique_ptr<spng_ctx, SpngDeleter>;

struct FileCloser
{
    void operator()(FILE *file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, FileCloser>;

QString spngReason(int code)
{
    return QString::fromUtf8(spng_strerror(code));
}

// Opens the file and reads the header; sets the limits a hostile header could otherwise abuse.
bool openDecoder(const QString &path, File *file, SpngContext *context, spng_ihdr *header, QString *reason)
{
    file->reset(std::fopen(QFile::encodeName(path).constData(), "rb"));
    if (!*file) {
        if (reason)
            *reason = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    context->reset(spng_ctx_new(0));
    if (!*context) {
        if (reason)
            *reason = QStringLiteral("out of memory");
        return false;
    }
    spng_set_chunk_limits(context->get(), 64 * 1024 * 1024, 64 * 1024 * 1024);
    int status = spng_set_png_file(context->get(), file->get());
    if (status == 0)
        status = spng_get_ihdr(context->get(), header);
    if (status != 0) {
        if (reason)
            *reason = spngReason(status);
        return false;
    }
    return true;
}

QSizeF resolutionOf(spng_ctx *context)
{
    spng_phys phys{};
    if (spng_get_phys(context, &phys) == 0 && phys.unit_specifier == 1 && phys.ppu_x > 0 && phys.ppu_y > 0)
        return QSizeF(phys.ppu_x * InchesPerMeter, phys.ppu_y * InchesPerMeter);
    return QSizeF(72, 72);
}

bool hasTransparency(spng_ctx *context, const spng_ihdr &header)
{
    if (header.color_type == SPNG_COLOR_TYPE_GRAYSCALE_ALPHA ||
        header.color_type == SPNG_COLOR_TYPE_TRUECOLOR_ALPHA)
        return true;
    spng_trns trns{};
    return spng_get_trns(context, &trns) == 0;
}

int writeToDevice(spng_ctx *, void *user, void *data, size_t length)
{
    auto *device = static_cast<QIODevice *>(user);
    return device->write(static_cast<const char *>(data), qint64(length)) == qint64(length) ? 0
                                                                                            : SPNG_IO_ERROR;
}

// An image whose pixels lie in memory backed by huge pages where the system allows it: a screenshot's tens of
// megabytes then cost a few dozen page faults instead of thousands.
QImage allocateImage(int width, int height, QImage::Format format)
{
    constexpr size_t HugePage = 2 * 1024 * 1024;
    const int bytesPerLine = ((width * (format == QImage::Format_RGB888 ? 3 : 4)) + 3) & ~3;
    const size_t size = size_t(bytesPerLine) * size_t(height);
    if (size < 4 * HugePage)
        return QImage(width, height, format);
    void *memory = std::aligned_alloc(HugePage, (size + HugePage - 1) / HugePage * HugePage);
    if (!memory)
        return {};
    ::madvise(memory, size, MADV_HUGEPAGE);
    return QImage(static_cast<uchar *>(memory), width, height, bytesPerLine, format, std::free, memory);
}

bool isOpaque(const QImage &image)
{
    if (!image.hasAlphaChannel())
        return true;
    for (int y = 0; y < image.height(); ++y) {
        const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(pixels[x]) != 255)
                return false;
    }
    return true;
}

// One row of a 32-bit image as RGB or RGBA bytes (straight alpha).
void packRow(const QImage &image, int y, int channels, uchar *out)
{
    const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(y));
    const bool premultiplied = image.format() == QImage::Format_ARGB32_Premultiplied;
    for (int x = 0; x < image.width(); ++x, out += channels) {
        const QRgb p = premultiplied ? qUnpremultiply(pixels[x]) : pixels[x];
        out[0] = uchar(qRed(p));
        out[1] = uchar(qGreen(p));
        out[2] = uchar(qBlue(p));
        if (channels == 4)
            out[3] = uchar(qAlpha(p));
    }
}

} // namespace

bool ImageIOPNG::hasSignature(const QByteArray &head)
{
    return head.startsWith(QByteArrayLiteral("\x89PNG\r\n\x1a\n"));
}

bool ImageIOPNG::readProperties(const QString &path, QSize *pixelSize, QSizeF *dotsPerInch, QString *reason)
{
    File file;
    SpngContext context;
    spng_ihdr header{};
    if (!openDecoder(path, &file, &context, &header, reason))
        return false;
    if (pixelSize)
        *pixelSize = QSize(int(header.width), int(header.height));
    if (dotsPerInch)
        *dotsPerInch = resolutionOf(context.get());
    return true;
}

bool ImageIOPNG::readRows(const QString &path, qint64 maximumBytes, PNGRowReader &reader, QString *reason)
{
    File file;
    SpngContext context;
    spng_ihdr header{};
    if (!openDecoder(path, &file, &context, &header, reason))
        return false;
    if (header.width > 0x7fffffffu / 4 || header.height > 0x7fffffffu ||
        qint64(header.width) * header.height * 4 > maximumBytes) {
        if (reason)
            *reason = QStringLiteral("the image is too large (%1 by %2 pixels)")
                          .arg(header.width)
                          .arg(header.height);
        return false;
    }
    const bool alpha = hasTransparency(context.get(), header);
    const int format = alpha ? SPNG_FMT_RGBA8 : SPNG_FMT_RGB8;
    const int height = int(header.height);
    const size_t rowBytes = size_t(header.width) * (alpha ? 4 : 3);
    if (!reader.begin(QSize(int(header.width), height),
                      alpha ? QImage::Format_RGBA8888 : QImage::Format_RGB888, resolutionOf(context.get())))
        return false;
    int status = 0;
    bool stopped = false;
    if (header.interlace_method == SPNG_INTERLACE_NONE) {
        // One row buffer, reused: the rows stay in the cache and the whole image is never held.
        std::vector<unsigned char> row(rowBytes);
        status =
            spng_decode_image(context.get(), nullptr, 0, format, SPNG_DECODE_TRNS | SPNG_DECODE_PROGRESSIVE);
        for (int y = 0; status == 0 && !stopped && y < height; ++y) {
            status = spng_decode_row(context.get(), row.data(), rowBytes);
            if ((status == 0 || (status == SPNG_EOI && y == height - 1)) && !reader.row(y, row.data()))
                stopped = true;
        }
        if (status == SPNG_EOI)
            status = 0;
    } else {
        // Interlaced rows arrive in seven passes: the whole image is needed before the first row is complete.
        size_t size = 0;
        status = spng_decoded_image_size(context.get(), format, &size);
        std::vector<unsigned char> pixels;
        if (status == 0) {
            pixels.resize(size);
            status = spng_decode_image(context.get(), pixels.data(), size, format, SPNG_DECODE_TRNS);
        }
        for (int y = 0; status == 0 && !stopped && y < height; ++y)
            stopped = !reader.row(y, pixels.data() + size_t(y) * rowBytes);
    }
    if (status != 0) {
        if (reason)
            *reason = spngReason(status);
        return false;
    }
    return !stopped;
}

namespace {

// Collects the rows into one image carrying the stored resolution.
class ImageCollector final : public PNGRowReader
{
public:
    bool begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch) override
    {
        m_image = allocateImage(size.width(), size.height(), format);
        if (m_image.isNull())
            return false;
        m_rowBytes = size_t(size.width()) * (format == QImage::Format_RGB888 ? 3 : 4);
        m_image.setDotsPerMeterX(qRound(dotsPerInch.width() / InchesPerMeter));
        m_image.setDotsPerMeterY(qRound(dotsPerInch.height() / InchesPerMeter));
        return true;
    }
    bool row(int y, const uchar *pixels) override
    {
        std::memcpy(m_image.scanLine(y), pixels, m_rowBytes);
        return true;
    }
    QImage m_image;
    size_t m_rowBytes = 0;
};

} // namespace

QImage ImageIOPNG::read(const QString &path, qint64 maximumBytes, QString *reason)
{
    ImageCollector collector;
    QString why;
    if (!readRows(path, maximumBytes, collector, &why)) {
        if (reason)
            *reason = why.isEmpty() ? QStringLiteral("out of memory") : why;
        return {};
    }
    return std::move(collector.m_image);
}

bool ImageIOPNG::write(const QImage &source, QIODevice *device, QString *reason)
{
    QImage image = source;
    quint8 colorType = SPNG_COLOR_TYPE_TRUECOLOR;
    int channels = 3;
    switch (image.format()) {
    case QImage::Format_RGB888:
        break;
    case QImage::Format_RGBA8888:
        colorType = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
        channels = 4;
        break;
    case QImage::Format_Grayscale8:
        colorType = SPNG_COLOR_TYPE_GRAYSCALE;
        channels = 1;
        break;
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        // Converted row by row below, without a second whole image; an opaque one is stored without alpha.
        if (!isOpaque(image)) {
            colorType = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
            channels = 4;
        }
        break;
    default:
        if (image.hasAlphaChannel()) {
            image.convertTo(QImage::Format_RGBA8888);
            colorType = SPNG_COLOR_TYPE_TRUECOLOR_ALPHA;
            channels = 4;
        } else {
            image.convertTo(QImage::Format_RGB888);
        }
        break;
    }
    SpngContext context(spng_ctx_new(SPNG_CTX_ENCODER));
    if (!context) {
        if (reason)
            *reason = QStringLiteral("out of memory");
        return false;
    }
    spng_ihdr header{};
    header.width = quint32(image.width());
    header.height = quint32(image.height());
    header.bit_depth = 8;
    header.color_type = colorType;
    int status = spng_set_png_stream(context.get(), writeToDevice, device);
    if (status == 0)
        status = spng_set_ihdr(context.get(), &header);
    const int dpmX = image.dotsPerMeterX(), dpmY = image.dotsPerMeterY();
    if (status == 0 && dpmX > 0 && dpmY > 0 &&
        (qRound(dpmX * InchesPerMeter) != 72 || qRound(dpmY * InchesPerMeter) != 72)) {
        spng_phys phys{quint32(dpmX), quint32(dpmY), 1};
        status = spng_set_phys(context.get(), &phys);
    }
    // Screenshots are flat areas and text: the None, Sub and Up filters with a quick deflate level compress
    // them as well as trying every filter does (smaller, even), in about two thirds of the time.
    if (status == 0)
        status = spng_set_option(context.get(), SPNG_IMG_COMPRESSION_LEVEL, 3);
    if (status == 0)
        status = spng_set_option(context.get(), SPNG_FILTER_CHOICE,
                                 SPNG_FILTER_CHOICE_NONE | SPNG_FILTER_CHOICE_SUB | SPNG_FILTER_CHOICE_UP);
    if (status == 0)
        status = spng_encode_image(context.get(), nullptr, 0, SPNG_FMT_PNG,
                                   SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE);
    const size_t rowBytes = size_t(image.width()) * channels;
    const bool packed = image.depth() == 32 && image.format() != QImage::Format_RGBA8888;
    std::vector<uchar> row(packed ? rowBytes : 0);
    for (int y = 0; status == 0 && y < image.height(); ++y) {
        if (packed) {
            packRow(image, y, channels, row.data());
            status = spng_encode_row(context.get(), row.data(), rowBytes);
        } else {
            status = spng_encode_row(context.get(), image.constScanLine(y), rowBytes);
        }
    }
    if (status == SPNG_EOI)
        status = 0;
    if (status != 0 && reason)
        *reason = spngReason(status);
    return status == 0;
}
