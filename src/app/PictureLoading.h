// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <functional>
#include <memory>

class ImageView;
class QTimer;

// Brings the renaming window's picture in away from the main thread: a copy reduced to the view's size, the
// substitute picture for a file that cannot be shown, a sharper copy once a view made larger has kept its
// size for a moment, and the full picture for printing.
class PictureLoading : public QObject
{
    Q_OBJECT

public:
    // The view shows what is loaded; currentPath gives the file's path at the time of each load (the file
    // may move while the window is open).
    PictureLoading(ImageView *view, std::function<QString()> currentPath, QObject *parent = nullptr);

    // Loads the picture reduced to the device pixels given; sends loaded() when it is in the view.
    void load(const QSize &pixels);
    bool isLoaded() const { return mLoaded; }
    // The picture kept: the full picture when the view shows it unscaled, the reduced copy otherwise, or
    // the substitute.
    QImage image() const { return mImage; }
    // Hands the full picture to the callback (on the main thread, while this object lives): at once when it
    // is the one kept, otherwise decoded again in the background; the picture kept when that fails. Only
    // one such request runs at a time: a second while one is on its way is dropped.
    void withFullImage(std::function<void(const QImage &)> callback);

Q_SIGNALS:
    void loaded();

private:
    void didLoad(int status, const QImage &image, const QImage &display, const QSize &pixelSize);
    void loadSharperCopy();

    ImageView *mView;
    std::function<QString()> mCurrentPath;
    QImage mImage;
    QSize mFullSize;
    QSize mWantedSize;
    bool mLoaded = false;
    bool mLoadingSharper = false;
    bool mLoadingFull = false;
    QTimer *mSettle;
};
