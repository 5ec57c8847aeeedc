// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CorvexErrors.h"

#include "core/FileFormat.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

enum CorvexCode {
    ImageSourceCreateError = 1,
    ImageDestinationFinalizeError = 2,
    ImageDestinationCreateError = 3,
};

QString tr(const char *text)
{
    return QCoreApplication::translate("CorvexErrors", text);
}

// The name a file manager shows for the file.
QString displayName(const QUrl &url)
{
    QString name = url.isLocalFile() ? QFileInfo(url.toLocalFile()).fileName() : url.fileName();
    if (name.isEmpty())
        name = url.fileName();
    return name;
}

CorvexError corvexError(long code, const QUrl &url, const QString &reason)
{
    QVariantMap info;
    info.insert(CorvexError::LocalizedFailureReasonErrorKey, reason);
    info.insert(CorvexError::URLErrorKey, url);
    return CorvexError(CorvexError::CorvexErrorDomain, code, info);
}

} // namespace

CorvexError corvexErrorCGImageSourceCreateWithURL(const QUrl &url)
{
    return corvexError(
        ImageSourceCreateError, url,
        tr("The file \u201c%1\u201d couldn\u2019t be loaded as an image.").arg(displayName(url)));
}

CorvexError corvexErrorCGImageDestinationFinalizeWithURL(const QUrl &url, const FileFormat *fileFormat)
{
    const QString description = fileFormat ? fileFormat->description() : QString();
    return corvexError(ImageDestinationFinalizeError, url,
                       tr("An error occurred finalizing the %1 screenshot to \u201c%2\u201d.")
                           .arg(description, displayName(url)));
}

CorvexError corvexErrorCGImageDestinationCreateWithURL(const QUrl &url, const FileFormat *fileFormat)
{
    const QString description = fileFormat ? fileFormat->description() : QString();
    return corvexError(ImageDestinationCreateError, url,
                       tr("An error occurred trying to write the %1 screenshot to \u201c%2\u201d.")
                           .arg(description, displayName(url)));
}

CorvexError corvexErrorNoSuchFile(const QUrl &url)
{
    QVariantMap info;
    info.insert(CorvexError::URLErrorKey, url);
    return CorvexError(CorvexError::CocoaErrorDomain, CorvexError::FileNoSuchFileError, info);
}

bool qz_isCocoaFileNoSuchFileError(const CorvexError &error)
{
    return error.domain() == CorvexError::CocoaErrorDomain &&
           (error.code() == CorvexError::FileNoSuchFileError ||
            error.code() == CorvexError::FileReadNoSuchFileError);
}

CorvexError corvexErrorByAddingDropboxIncompatibilityInformation(const CorvexError &error)
{
    QVariantMap info = error.userInfo();
    info.insert(
        CorvexError::LocalizedRecoverySuggestionErrorKey,
        tr("Do you have \u201cShare screenshots using Dropbox\u201d turned on? That feature is currently "
           "incompatible with Corvex. Try turning it off in the Dropbox app preferences."));
    return CorvexError(error.domain(), error.code(), info);
}
