// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIOJPEG.h"

#include <QIODevice>
#include <csetjmp>
#include <cstdio>
#include <jpeglib.h>
#include <vector>

// libjpeg reports errors by calling error_exit, which must not return: it jumps back to the setjmp() of the
// call that failed. Nothing with a destructor lives between a setjmp() and the libjpeg calls it guards.
struct ImageIOJPEG::State
{
    jpeg_compress_struct compress{};
    jpeg_error_mgr errors{};
    jpeg_destination_mgr destination{};
    std::jmp_buf jump{};
    char message[JMSG_LENGTH_MAX] = {};
    QIODevice *device = nullptr;
    std::vector<JOCTET> buffer;
    std::vector<uchar> flattened; // one row laid over white, for images with alpha
    bool created = false;
    bool started = false;
    bool alpha = false;
    int width = 0;
    int height = 0;
    int rowsWritten = 0;
};

namespace {

constexpr size_t BufferBytes = 256 * 1024;

ImageIOJPEG::State *stateOf(j_common_ptr info)
{
    return static_cast<ImageIOJPEG::State *>(info->client_data);
}

[[noreturn]] void errorExit(j_common_ptr info)
{
    ImageIOJPEG::State *state = stateOf(info);
    info->err->format_message(info, state->message);
    std::longjmp(state->jump, 1);
}

void outputMessage(j_common_ptr)
{
    // Warnings are not worth a line on stderr: a real problem ends in errorExit.
}

void initDestination(j_compress_ptr info)
{
    ImageIOJPEG::State *state = stateOf(reinterpret_cast<j_common_ptr>(info));
    state->destination.next_output_byte = state->buffer.data();
    state->destination.free_in_buffer = state->buffer.size();
}

[[noreturn]] void writeFailed(ImageIOJPEG::State *state)
{
    const QByteArray text = state->device->errorString().toLocal8Bit();
    std::snprintf(state->message, sizeof state->message, "%s",
                  text.isEmpty() ? "write error" : text.constData());
    std::longjmp(state->jump, 1);
}

boolean emptyOutputBuffer(j_compress_ptr info)
{
    ImageIOJPEG::State *state = stateOf(reinterpret_cast<j_common_ptr>(info));
    const auto length = qint64(state->buffer.size());
    if (state->device->write(reinterpret_cast<const char *>(state->buffer.data()), length) != length)
        writeFailed(state);
    initDestination(info);
    return TRUE;
}

void termDestination(j_compress_ptr info)
{
    ImageIOJPEG::State *state = stateOf(reinterpret_cast<j_common_ptr>(info));
    const auto length = qint64(state->buffer.size() - state->destination.free_in_buffer);
    if (length > 0 &&
        state->device->write(reinterpret_cast<const char *>(state->buffer.data()), length) != length)
        writeFailed(state);
}

// Straight-alpha RGBA laid over white, as a viewer shows it.
void flattenOntoWhite(const uchar *in, uchar *out, int width)
{
    for (int x = 0; x < width; ++x, in += 4, out += 3) {
        const unsigned alpha = in[3], white = 255 * (255 - alpha);
        out[0] = uchar((in[0] * alpha + white + 127) / 255);
        out[1] = uchar((in[1] * alpha + white + 127) / 255);
        out[2] = uchar((in[2] * alpha + white + 127) / 255);
    }
}

bool failed(ImageIOJPEG::State *state, QString *reason)
{
    if (reason)
        *reason = QString::fromLocal8Bit(state->message);
    jpeg_abort_compress(&state->compress);
    state->started = false;
    return false;
}

} // namespace

ImageIOJPEG::ImageIOJPEG(QIODevice *device) : d(std::make_unique<State>())
{
    d->device = device;
}

ImageIOJPEG::~ImageIOJPEG()
{
    if (d->created)
        jpeg_destroy_compress(&d->compress);
}

bool ImageIOJPEG::begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch, QString *reason)
{
    State *state = d.get();
    if (state->created || size.isEmpty() || size.width() > JPEG_MAX_DIMENSION ||
        size.height() > JPEG_MAX_DIMENSION ||
        (format != QImage::Format_RGB888 && format != QImage::Format_RGBA8888)) {
        if (reason)
            *reason =
                QStringLiteral("a JPEG image cannot be %1 by %2 pixels").arg(size.width()).arg(size.height());
        return false;
    }
    state->alpha = format == QImage::Format_RGBA8888;
    state->width = size.width();
    state->height = size.height();
    state->buffer.resize(BufferBytes);
    if (state->alpha)
        state->flattened.resize(size_t(size.width()) * 3);
    state->compress.client_data = state;
    state->compress.err = jpeg_std_error(&state->errors);
    state->errors.error_exit = errorExit;
    state->errors.output_message = outputMessage;
    if (setjmp(state->jump)) {
        if (reason)
            *reason = QString::fromLocal8Bit(state->message);
        return false;
    }
    jpeg_create_compress(&state->compress);
    state->created = true;
    state->destination.init_destination = initDestination;
    state->destination.empty_output_buffer = emptyOutputBuffer;
    state->destination.term_destination = termDestination;
    state->compress.dest = &state->destination;
    state->compress.image_width = JDIMENSION(size.width());
    state->compress.image_height = JDIMENSION(size.height());
    state->compress.input_components = 3;
    state->compress.in_color_space = JCS_RGB;
    if (setjmp(state->jump))
        return failed(state, reason);
    jpeg_set_defaults(&state->compress);
    jpeg_set_quality(&state->compress, Quality, TRUE);
    // Full-resolution chroma: halving it makes coloured text on flat backgrounds bleed.
    for (int component = 0; component < state->compress.num_components; ++component) {
        state->compress.comp_info[component].h_samp_factor = 1;
        state->compress.comp_info[component].v_samp_factor = 1;
    }
    // Huffman tables are not optimised: that needs a second pass over the whole image's coefficients.
    state->compress.optimize_coding = FALSE;
    state->compress.dct_method = JDCT_ISLOW;
    state->compress.write_JFIF_header = TRUE;
    state->compress.density_unit = 1; // dots per inch
    state->compress.X_density = UINT16(qBound(1, qRound(dotsPerInch.width()), 65535));
    state->compress.Y_density = UINT16(qBound(1, qRound(dotsPerInch.height()), 65535));
    jpeg_start_compress(&state->compress, TRUE);
    state->started = true;
    return true;
}

bool ImageIOJPEG::writeRows(const uchar *pixels, int count, QString *reason)
{
    State *state = d.get();
    if (!state->started || count < 0 || state->rowsWritten + count > state->height) {
        if (reason)
            *reason = QStringLiteral("more rows than the image has");
        return false;
    }
    const size_t rowBytes = size_t(state->width) * (state->alpha ? 4 : 3);
    if (setjmp(state->jump))
        return failed(state, reason);
    for (int row = 0; row < count; ++row) {
        const uchar *in = pixels + size_t(row) * rowBytes;
        if (state->alpha) {
            flattenOntoWhite(in, state->flattened.data(), state->width);
            in = state->flattened.data();
        }
        JSAMPROW rows[1] = {const_cast<JSAMPROW>(in)};
        jpeg_write_scanlines(&state->compress, rows, 1);
    }
    state->rowsWritten += count;
    return true;
}

bool ImageIOJPEG::finish(QString *reason)
{
    State *state = d.get();
    if (!state->started || state->rowsWritten != state->height) {
        if (reason)
            *reason = QStringLiteral("the image ended after %1 of its %2 rows")
                          .arg(state->rowsWritten)
                          .arg(state->height);
        return false;
    }
    if (setjmp(state->jump))
        return failed(state, reason);
    jpeg_finish_compress(&state->compress);
    state->started = false;
    return true;
}

bool ImageIOJPEG::write(const QImage &image, QIODevice *device, QString *reason)
{
    ImageIOJPEG encoder(device);
    return ImageRowWriter::writeImage(image, encoder, reason);
}
