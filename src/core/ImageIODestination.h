// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QImage>
#include <QString>
#include <QUrl>
#include <memory>

class ImageIOSource;

// A file being written in one of the six formats, named by its type identifier. Writing goes straight to the
// destination path, or, when it may replace a file, to a hidden file beside it that takes the destination's
// name only once it is complete. A failed finalize() removes what it had written, so no half file is left
// behind and a file to be replaced is kept.
class ImageIODestination
{
public:
    // What happens to a file already at the destination path.
    enum class Existing { Refuse, Replace };

    // Whether finalizeFromPNG() can write files of the type identifier.
    static bool canStreamFromPNG(const QString &uti);

    // Whether files of the type identifier can be written.
    static bool canWrite(const QString &uti);

    // Creates the destination file. Fails (and creates nothing) when the type cannot be written, its folder
    // does not allow it, or something is at the path already and `existing` refuses it (a folder is always
    // refused).
    static std::unique_ptr<ImageIODestination> createWithURL(const QUrl &url, const QString &uti,
                                                             QString *reason = nullptr,
                                                             Existing existing = Existing::Refuse);

    // Removes the still empty file (or the unfinished hidden one) when finalize() was never called.
    ~ImageIODestination();

    // The image to write: the source's image (only one image per file).
    void addImageFromSource(const ImageIOSource &source);
    void addImage(const QImage &image);

    // Encodes the image into the file and closes it. False when nothing was added or encoding or writing
    // failed.
    bool finalize(QString *reason = nullptr);

    // Instead of addImage() and finalize(): encodes the PNG file's rows while they are decoded, without ever
    // holding the whole image, and closes the file. Refuses images whose decoded size would pass
    // maximumBytes. On failure sourceFailed says whether the PNG could not be read (rather than written).
    bool finalizeFromPNG(const QString &path, qint64 maximumBytes, bool *sourceFailed,
                         QString *reason = nullptr);

private:
    ImageIODestination(const QString &uti, std::unique_ptr<QFile> file, const QString &replacedPath);
    bool encode(QString *reason);
    bool close(bool ok, QString *reason);

    QString mUTI;
    std::unique_ptr<QFile> mFile;
    QString mReplacedPath; // the destination path when mFile is a hidden file beside it
    QImage mImage;
    bool mFinalized = false;
};
