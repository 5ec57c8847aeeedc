// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <QUrl>
#include <memory>

// An image read from a file, ready to be written in another format: the first image of a GIF, JPEG, BMP,
// PNG or TIFF file, or page 1 of a PDF. The kind of file is recognised from its first bytes, not from its
// name. The image keeps the file's stored resolution (72 dpi when none is stored).
class ImageIOSource
{
public:
    // The largest decoded image accepted, at four bytes a pixel: larger ones are refused before any pixel is
    // decoded (a 16384 by 16384 image still passes).
    static constexpr qint64 MaximumImageBytes = qint64(1) << 30;

    // The kinds of file recognised.
    enum class Kind { Unknown, GIF, JPEG, BMP, PDF, PNG, TIFF };

    // Reads and decodes the file. nullptr when it is missing, unreadable, not an image, truncated or corrupt,
    // or too large; reason then says why.
    static std::unique_ptr<ImageIOSource> createWithURL(const QUrl &url, QString *reason = nullptr);

    // A source holding an image made in memory (a rendered PDF page).
    static std::unique_ptr<ImageIOSource> createWithImage(const QImage &image);

    // The kind of the file's contents, from its first bytes.
    static Kind kindOfFile(const QString &path);

    // The pixel size and stored resolution of the file's first image without decoding more than needed.
    // False when the file cannot be read as an image.
    static bool readProperties(const QString &path, QSize *pixelSize, QSizeF *dotsPerInch,
                               QString *reason = nullptr);

    // The decoded image; its dots per meter hold the stored resolution.
    const QImage &image() const { return mImage; }

    // Size in points: pixels × 72 / resolution.
    QSizeF pointSize() const;

private:
    explicit ImageIOSource(QImage image) : mImage(std::move(image)) {}
    static QImage readWithQt(const QString &path, Kind kind, QString *reason);

    QImage mImage;
};
