// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The renaming window's file side: following the file, its picture, printing, closing.

#include "app/CorvexWindowController.h"

#include "app/FileFollowing.h"
#include "app/ImageLoader.h"
#include "app/PictureLoading.h"
#include "app/RenamingWindowServices.h"
#include "logging/Log.h"

#include <QFileInfo>
#include <QWidget>
#include <memory>

void CorvexWindowController::startWatchingFile(const QString &path)
{
    mFileFollowing->startWatching(path);
}

void CorvexWindowController::stopWatchingFile(const QString &path)
{
    mFileFollowing->stopWatching(path);
}

void CorvexWindowController::fileWatcherDelete(const QString &path)
{
    if (path == _screenshotInfo.filePath())
        resolveBookmarkAndUpdateUI();
}

void CorvexWindowController::fileWatcherRename(const QString &path)
{
    if (path == _screenshotInfo.filePath())
        resolveBookmarkAndUpdateUI();
}

void CorvexWindowController::resolveBookmarkAndUpdateUI()
{
    const QString currentPath = _screenshotInfo.filePath();
    const std::optional<QString> resolved = _screenshotInfo.filePathByResolvingBookmarkData();
    if (!resolved) {
        const qsizetype length = _screenshotInfo.bookmarkData().value_or(QByteArray()).size();
        DDLogError(
            QStringLiteral("Error resolving bookmark data (%1 bytes) of %2").arg(length).arg(currentPath));
    } else if (*resolved != currentPath) {
        stopWatchingFile(currentPath);
        _screenshotInfo.setFilePath(*resolved);
        startWatchingFile(*resolved);
        if (mWindow)
            mWindow->setWindowTitle(QFileInfo(*resolved).fileName());
    }
    updateUI();
}

bool CorvexWindowController::isImageLoaded() const
{
    return mPictureLoading && mPictureLoading->isLoaded();
}

QImage CorvexWindowController::image() const
{
    return mPictureLoading ? mPictureLoading->image() : QImage();
}

QImage CorvexWindowController::fileNotFoundImageForFileType(const QString &fileExtension)
{
    return ImageLoader::fileNotFoundImageForFileType(fileExtension);
}

void CorvexWindowController::printDocument()
{
    if (!mWindow || image().isNull())
        return;
    // The window holds the full picture when it shows it unscaled, and the substitute for a file that cannot
    // be read; a larger picture is decoded in full first, away from the main thread.
    // A picture decoded later is printed only while the window is still open.
    auto later = std::make_shared<bool>(false);
    mPictureLoading->withFullImage([this, later](const QImage &image) {
        if (mWindow && (!*later || mWindow->isVisible()))
            mServices->print(mWindow, image, mPrintInfo);
    });
    *later = true;
}

void CorvexWindowController::cancel()
{
    stopWatchingFile(_screenshotInfo.filePath());
    closeWindow();
}

void CorvexWindowController::closeWindow()
{
    if (mWindow && mWindow->isVisible())
        mWindow->close();
    Q_EMIT windowClosedByController();
}
