// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The renaming window's file side: following the file, loading its picture, printing, the folder shortcuts'
// folders, closing.

#include "CorvexWindowController.h"
#include "CorvexWindowController_p.h"
#include "ImageIOSource.h"
#include "ImageLoader.h"
#include "ImageView.h"
#include "Log.h"

#include <QDir>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>
#include <QTimer>
#include <QtConcurrent>
#include <memory>

using namespace CorvexWindow;

namespace {

CorvexWindowController::PrintRunner &printRunner()
{
    static CorvexWindowController::PrintRunner runner;
    return runner;
}

QString firstExistingFolder(const QStringList &candidates)
{
    for (const QString &candidate : candidates) {
        if (QFileInfo(candidate).isDir())
            return candidate;
    }
    return QString();
}

} // namespace

void CorvexWindowController::startWatchingFile(const QString &path)
{
    if (path.isEmpty())
        return;
    if (mWatching)
        stopWatchingFile(mWatchedPath);
    addPathToWatcher(path, WatchMask);
    mWatching = true;
    mWatchedPath = path;
}

void CorvexWindowController::stopWatchingFile(const QString &path)
{
    if (!mWatching || path != mWatchedPath)
        return;
    removePathFromWatcher(path);
    mWatching = false;
    mWatchedPath.clear();
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

void CorvexWindowController::loadImage()
{
    const QString path = _screenshotInfo.filePath();
    const QSize bound = mImageView->isVisible()
                            ? mImageView->size()
                            : mWindow->size() - (mWindow->sizeHint() - mImageView->sizeHint());
    const QSize pixels = bound * mWindow->devicePixelRatioF();
    // The full picture's pixel size, once known: a view made larger than the reduced copy gets a sharper one.
    auto fullSize = std::make_shared<QSize>();
    auto *watcher = new QFutureWatcher<ImageLoader::Result>(this);
    connect(watcher, &QFutureWatcher<ImageLoader::Result>::finished, this, [this, watcher, fullSize] {
        const ImageLoader::Result result = watcher->result();
        watcher->deleteLater();
        *fullSize = result.status == ImageLoader::Status::Loaded ? result.pixelSize : QSize();
        imageDidLoad(int(result.status), result.image, result.display);
    });
    watcher->setFuture(QtConcurrent::run([path, pixels] { return ImageLoader::load(path, pixels); }));

    // Sharper copies are made once the view has kept its size for a moment, one at a time.
    auto *settle = new QTimer(this);
    settle->setSingleShot(true);
    settle->setInterval(200);
    auto wanted = std::make_shared<QSize>();
    auto loading = std::make_shared<bool>(false);
    connect(mImageView, &ImageView::sharperImageWanted, settle,
            [this, settle, wanted, fullSize](const QSize &size) {
                if (fullSize->isEmpty() || mImage.size() == *fullSize)
                    return; // nothing sharper to be had
                *wanted = size;
                settle->start();
            });
    connect(settle, &QTimer::timeout, this, [this, settle, wanted, loading] {
        if (*loading) {
            settle->start(); // after the copy on its way
            return;
        }
        *loading = true;
        const QString current = _screenshotInfo.filePath();
        const QSize size = *wanted;
        auto *sharper = new QFutureWatcher<ImageLoader::Result>(this);
        connect(sharper, &QFutureWatcher<ImageLoader::Result>::finished, this, [this, sharper, loading] {
            const ImageLoader::Result result = sharper->result();
            sharper->deleteLater();
            *loading = false;
            if (result.status == ImageLoader::Status::Loaded && result.display.width() > mImage.width()) {
                mImage = result.image.isNull() ? result.display : result.image;
                mImageView->setImage(result.display, result.display);
            }
        });
        sharper->setFuture(QtConcurrent::run([current, size] { return ImageLoader::load(current, size); }));
    });
}

void CorvexWindowController::imageDidLoad(int status, const QImage &image, const QImage &display)
{
    const QString path = _screenshotInfo.filePath();
    if (ImageLoader::Status(status) == ImageLoader::Status::Loaded) {
        // The display copy is what the window shows; the full picture is kept only when it is that same copy
        // (printing decodes it again otherwise).
        mImage = image.isNull() ? display : image;
        mImageView->setImage(display, display);
    } else {
        if (ImageLoader::Status(status) == ImageLoader::Status::ReadFailed)
            DDLogError(QStringLiteral("Could not load image data from %1").arg(path));
        else
            DDLogError(QStringLiteral("Could not create image with data from %1").arg(path));
        mImage = fileNotFoundImageForFileType(QFileInfo(path).suffix());
        mImageView->setImage(mImage);
    }
    mImageLoaded = true;
    Q_EMIT imageLoaded();
}

QImage CorvexWindowController::image() const
{
    return mImage;
}

QImage CorvexWindowController::fileNotFoundImageForFileType(const QString &fileExtension)
{
    return ImageLoader::fileNotFoundImageForFileType(fileExtension);
}

void CorvexWindowController::setPrintRunner(PrintRunner runner)
{
    printRunner() = std::move(runner);
}

void CorvexWindowController::printDocument()
{
    if (!mWindow || mImage.isNull())
        return;
    const auto print = [this](const QImage &image) {
        if (printRunner())
            printRunner()(mWindow, image, mPrintInfo);
        else
            runPrintDialog(mWindow, image, mPrintInfo);
    };
    // The window holds the full picture when it shows it unscaled, and the substitute for a file that cannot
    // be read; a larger picture is decoded in full now, away from the main thread, and printed when ready.
    const QString path = _screenshotInfo.filePath();
    QSize pixels;
    if (!ImageIOSource::readProperties(path, &pixels, nullptr) || pixels == mImage.size()) {
        print(mImage);
        return;
    }
    const QString loaderName = QStringLiteral("printImageLoader");
    if (findChild<QObject *>(loaderName, Qt::FindDirectChildrenOnly))
        return; // already on its way
    auto *watcher = new QFutureWatcher<ImageLoader::Result>(this);
    watcher->setObjectName(loaderName);
    connect(watcher, &QFutureWatcher<ImageLoader::Result>::finished, this, [this, watcher, path, print] {
        const ImageLoader::Result result = watcher->result();
        delete watcher;
        if (!mWindow || !mWindow->isVisible())
            return;
        if (result.status == ImageLoader::Status::Loaded) {
            print(result.image);
        } else {
            DDLogWarn(
                QStringLiteral("Could not read %1 again for printing; printing the picture shown").arg(path));
            print(mImage);
        }
    });
    watcher->setFuture(QtConcurrent::run([path] { return ImageLoader::loadFullImage(path); }));
}

void CorvexWindowController::runPrintDialog(QWidget *window, const QImage &image, const QPageLayout &layout)
{
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setPageLayout(layout);
    printer->setDocName(window->windowTitle());
    auto *dialog = new QPrintDialog(printer.get(), window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::finished, window, [printer, image](int result) {
        if (result != QDialog::Accepted)
            return;
        // One page: the picture scaled down to fit inside the margins, at the top left.
        QPainter painter(printer.get());
        const QRect page = printer->pageLayout().paintRectPixels(printer->resolution());
        const QRect pageArea(QPoint(0, 0), page.size());
        const QSizeF points = QSizeF(image.size()) * (printer->resolution() / 72.0);
        const QSize shown =
            points.scaled(QSizeF(pageArea.size()), Qt::KeepAspectRatio).boundedTo(points).toSize();
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRect(pageArea.topLeft(), shown), image);
    });
    dialog->open();
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

QString CorvexWindowController::rootFolder()
{
    return QStringLiteral("/");
}

QString CorvexWindowController::homeFolder()
{
    return QDir::homePath();
}

QString CorvexWindowController::desktopFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

QString CorvexWindowController::documentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString CorvexWindowController::applicationsFolder()
{
    // The machine-wide folder that application bundles are installed into.
    return firstExistingFolder({QStringLiteral("/opt/Applications")});
}

QString CorvexWindowController::utilitiesFolder()
{
    const QString applications = applicationsFolder();
    if (applications.isEmpty())
        return QString();
    return firstExistingFolder({applications + QStringLiteral("/Utilities")});
}
