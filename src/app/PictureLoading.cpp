// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PictureLoading.h"

#include "app/ImageLoader.h"
#include "app/ImageView.h"
#include "core/ImageIOSource.h"
#include "logging/Log.h"

#include <QFileInfo>
#include <QFutureWatcher>
#include <QTimer>
#include <QtConcurrent>

namespace {

// Runs the loader away from the main thread and hands its result to the callback on this object's thread.
void loadInBackground(QObject *context, std::function<ImageLoader::Result()> load,
                      std::function<void(const ImageLoader::Result &)> done)
{
    auto *watcher = new QFutureWatcher<ImageLoader::Result>(context);
    QObject::connect(watcher, &QFutureWatcher<ImageLoader::Result>::finished, context,
                     [watcher, done = std::move(done)] {
                         const ImageLoader::Result result = watcher->result();
                         watcher->deleteLater();
                         done(result);
                     });
    watcher->setFuture(QtConcurrent::run(std::move(load)));
}

} // namespace

PictureLoading::PictureLoading(ImageView *view, std::function<QString()> currentPath, QObject *parent)
    : QObject(parent), mView(view), mCurrentPath(std::move(currentPath)), mSettle(new QTimer(this))
{
    // Sharper copies are made once the view has kept its size for a moment, one at a time.
    mSettle->setSingleShot(true);
    mSettle->setInterval(200);
    connect(mView, &ImageView::sharperImageWanted, this, [this](const QSize &size) {
        if (mFullSize.isEmpty() || mImage.size() == mFullSize)
            return; // nothing sharper to be had
        mWantedSize = size;
        mSettle->start();
    });
    connect(mSettle, &QTimer::timeout, this, &PictureLoading::loadSharperCopy);
}

void PictureLoading::load(const QSize &pixels)
{
    const QString path = mCurrentPath();
    loadInBackground(
        this, [path, pixels] { return ImageLoader::load(path, pixels); },
        [this](const ImageLoader::Result &result) {
            didLoad(int(result.status), result.image, result.display, result.pixelSize);
        });
}

void PictureLoading::didLoad(int status, const QImage &image, const QImage &display, const QSize &pixelSize)
{
    const QString path = mCurrentPath();
    if (ImageLoader::Status(status) == ImageLoader::Status::Loaded) {
        // The display copy is what the window shows; the full picture is kept only when it is that same copy
        // (printing decodes it again otherwise).
        mFullSize = pixelSize;
        mImage = image.isNull() ? display : image;
        mView->setImage(display, display);
    } else {
        if (ImageLoader::Status(status) == ImageLoader::Status::ReadFailed)
            DDLogError(QStringLiteral("Could not load image data from %1").arg(path));
        else
            DDLogError(QStringLiteral("Could not create image with data from %1").arg(path));
        mFullSize = QSize();
        mImage = ImageLoader::fileNotFoundImageForFileType(QFileInfo(path).suffix());
        mView->setImage(mImage);
    }
    mLoaded = true;
    Q_EMIT loaded();
}

void PictureLoading::loadSharperCopy()
{
    if (mLoadingSharper) {
        mSettle->start(); // after the copy on its way
        return;
    }
    mLoadingSharper = true;
    const QString path = mCurrentPath();
    const QSize size = mWantedSize;
    loadInBackground(
        this, [path, size] { return ImageLoader::load(path, size); },
        [this](const ImageLoader::Result &result) {
            mLoadingSharper = false;
            if (result.status == ImageLoader::Status::Loaded && result.display.width() > mImage.width()) {
                mImage = result.image.isNull() ? result.display : result.image;
                mView->setImage(result.display, result.display);
            }
        });
}

void PictureLoading::withFullImage(std::function<void(const QImage &)> callback)
{
    const QString path = mCurrentPath();
    QSize pixels;
    if (!ImageIOSource::readProperties(path, &pixels, nullptr) || pixels == mImage.size()) {
        callback(mImage);
        return;
    }
    if (mLoadingFull)
        return; // already on its way
    mLoadingFull = true;
    loadInBackground(
        this, [path] { return ImageLoader::loadFullImage(path); },
        [this, path, callback = std::move(callback)](const ImageLoader::Result &result) {
            mLoadingFull = false;
            if (result.status == ImageLoader::Status::Loaded) {
                callback(result.image);
                return;
            }
            DDLogWarn(
                QStringLiteral("Could not read %1 again for printing; printing the picture shown").arg(path));
            callback(mImage);
        });
}
