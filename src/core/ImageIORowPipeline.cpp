// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/ImageIORowPipeline.h"

#include "core/ImageIOPNG.h"
#include "core/ImageRowWriter.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace {

// Bands of about this many bytes travel from the decoder to the encoder; a few are in flight at once.
constexpr size_t BandBytes = 128 * 1024;
constexpr size_t BandsInFlight = 6;

struct Band
{
    std::vector<uchar> pixels;
    int rows = 0;
};

// The decoder's side: fills bands and hands them over; waits while all bands are in the encoder's hands.
class BandQueue final : public PNGRowReader
{
public:
    bool begin(const QSize &size, QImage::Format format, const QSizeF &dotsPerInch) override
    {
        std::unique_lock lock(mMutex);
        mSize = size;
        mFormat = format;
        mDotsPerInch = dotsPerInch;
        mRowBytes = size_t(size.width()) * (format == QImage::Format_RGB888 ? 3 : 4);
        mRowsPerBand = int(std::clamp<size_t>(BandBytes / mRowBytes, 1, size_t(size.height())));
        for (size_t i = 0; i < BandsInFlight; ++i)
            mFree.push_back(Band{std::vector<uchar>(mRowBytes * size_t(mRowsPerBand)), 0});
        mStarted = true;
        mChanged.notify_all();
        return !mCancelled;
    }

    bool row(int y, const uchar *pixels) override
    {
        if (!mFilling.rows) {
            std::unique_lock lock(mMutex);
            mChanged.wait(lock, [this] { return !mFree.empty() || mCancelled; });
            if (mCancelled)
                return false;
            mFilling = std::move(mFree.front());
            mFree.pop_front();
        }
        std::memcpy(mFilling.pixels.data() + size_t(mFilling.rows) * mRowBytes, pixels, mRowBytes);
        ++mFilling.rows;
        if (mFilling.rows == mRowsPerBand || y == mSize.height() - 1) {
            std::unique_lock lock(mMutex);
            mReady.push_back(std::move(mFilling));
            mFilling = Band{};
            mChanged.notify_all();
            return !mCancelled;
        }
        return true;
    }

    // The decoder has stopped, successfully or not.
    void finish(bool ok, const QString &reason)
    {
        std::unique_lock lock(mMutex);
        mFinished = true;
        mDecoded = ok;
        mReason = reason;
        mChanged.notify_all();
    }

    // The encoder gives up: the decoder stops at its next row.
    void cancel()
    {
        std::unique_lock lock(mMutex);
        mCancelled = true;
        mChanged.notify_all();
    }

    // Waits for the image's properties; false when the decoder ended first.
    bool waitForStart()
    {
        std::unique_lock lock(mMutex);
        mChanged.wait(lock, [this] { return mStarted || mFinished; });
        return mStarted;
    }

    // Waits for the next band; false when there is none (decoding ended, or failed).
    bool take(Band *band)
    {
        std::unique_lock lock(mMutex);
        mChanged.wait(lock, [this] { return !mReady.empty() || mFinished; });
        if (mReady.empty())
            return false;
        *band = std::move(mReady.front());
        mReady.pop_front();
        return true;
    }

    void giveBack(Band band)
    {
        std::unique_lock lock(mMutex);
        band.rows = 0;
        mFree.push_back(std::move(band));
        mChanged.notify_all();
    }

    bool decoded()
    {
        std::unique_lock lock(mMutex);
        return mFinished && mDecoded;
    }

    QString reason()
    {
        std::unique_lock lock(mMutex);
        return mReason;
    }

    QSize mSize;
    QImage::Format mFormat = QImage::Format_Invalid;
    QSizeF mDotsPerInch;

private:
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::deque<Band> mFree;
    std::deque<Band> mReady;
    Band mFilling; // the decoder's own
    size_t mRowBytes = 0;
    int mRowsPerBand = 1;
    bool mStarted = false;
    bool mFinished = false;
    bool mDecoded = false;
    bool mCancelled = false;
    QString mReason;
};

void setFailure(ImageIORowPipeline::Failure *failure, ImageIORowPipeline::Failure value)
{
    if (failure)
        *failure = value;
}

} // namespace

bool ImageIORowPipeline::convertPNG(const QString &path, qint64 maximumBytes, ImageRowWriter &writer,
                                    Failure *failure, QString *reason)
{
    setFailure(failure, Failure::None);
    BandQueue queue;
    std::thread decoder([&queue, &path, maximumBytes] {
        QString why;
        const bool ok = ImageIOPNG::readRows(path, maximumBytes, queue, &why);
        queue.finish(ok, why);
    });
    QString why;
    bool written = queue.waitForStart() && writer.begin(queue.mSize, queue.mFormat, queue.mDotsPerInch, &why);
    int rows = 0;
    Band band;
    while (written && queue.take(&band)) {
        written = writer.writeRows(band.pixels.data(), band.rows, &why);
        rows += band.rows;
        queue.giveBack(std::move(band));
    }
    if (!written)
        queue.cancel();
    decoder.join();
    if (!queue.decoded()) {
        // A decoder stopped without a reason was stopped by the writer's failure; otherwise the source failed
        // first, and a writer cut short by it has nothing of its own to say.
        const QString decodeReason = queue.reason();
        const bool writerFailed = decodeReason.isEmpty() && !written;
        setFailure(failure, writerFailed ? Failure::Destination : Failure::Source);
        if (reason)
            *reason = writerFailed             ? why
                      : decodeReason.isEmpty() ? QStringLiteral("the image could not be decoded")
                                               : decodeReason;
        return false;
    }
    if (written && rows == queue.mSize.height())
        written = writer.finish(&why);
    if (!written) {
        setFailure(failure, Failure::Destination);
        if (reason)
            *reason = why;
    }
    return written;
}
