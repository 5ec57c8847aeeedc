// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DesktopApplications.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

namespace GioHelpers {

QString takeString(gchar *text)
{
    const QString string = text ? QString::fromUtf8(text) : QString();
    g_free(text);
    return string;
}

QString idOfAppInfo(GAppInfo *info)
{
    if (!info)
        return QString();
    const char *id = g_app_info_get_id(info);
    QString result = id ? QString::fromUtf8(id) : QString();
    if (result.isEmpty() && G_IS_DESKTOP_APP_INFO(info)) {
        const char *fileName = g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(info));
        result = fileName ? QString::fromUtf8(fileName) : QString();
    }
    g_object_unref(info);
    return result;
}

// The application of a desktop-file id or a ".desktop" path; nullptr when there is none.
GDesktopAppInfo *appInfoFor(const QString &desktopFileId)
{
    if (desktopFileId.startsWith(QLatin1Char('/')))
        return g_desktop_app_info_new_from_filename(QFile::encodeName(desktopFileId).constData());
    return g_desktop_app_info_new(desktopFileId.toUtf8().constData());
}

} // namespace GioHelpers

QString DesktopApplications::defaultApplicationForMimeType(const QString &mimeType)
{
    if (mimeType.isEmpty())
        return QString();
    gchar *contentType = g_content_type_from_mime_type(mimeType.toUtf8().constData());
    const QString type = GioHelpers::takeString(contentType);
    if (type.isEmpty())
        return QString();
    return GioHelpers::idOfAppInfo(g_app_info_get_default_for_type(type.toUtf8().constData(), FALSE));
}

QString DesktopApplications::mimeTypeOfFile(const QString &filePath)
{
    return QMimeDatabase().mimeTypeForFile(filePath).name();
}

QString DesktopApplications::desktopFileIdForApplicationIdentifier(const QString &applicationIdentifier,
                                                                   const QString &filePath)
{
    if (applicationIdentifier == PreviewIdentifier) {
        const QString forFile = defaultApplicationForMimeType(mimeTypeOfFile(filePath));
        return forFile.isEmpty() ? defaultApplicationForMimeType(QStringLiteral("image/png")) : forFile;
    }
    if (applicationIdentifier == TextEditIdentifier)
        return defaultApplicationForMimeType(QStringLiteral("text/plain"));
    if (applicationIdentifier.isEmpty())
        return QString();
    if (applicationIdentifier.endsWith(QLatin1String(".desktop")))
        return applicationIdentifier;
    return applicationIdentifier + QStringLiteral(".desktop");
}

QString DesktopApplications::platformIdentifier(const QString &applicationIdentifier)
{
    const auto sameApplication = [&applicationIdentifier](const QString &desktopFileId) {
        if (desktopFileId.isEmpty() || applicationIdentifier.isEmpty())
            return false;
        const auto withSuffix = [](const QString &id) {
            return id.endsWith(QLatin1String(".desktop")) ? id : id + QStringLiteral(".desktop");
        };
        return withSuffix(applicationIdentifier) == withSuffix(desktopFileId);
    };
    if (sameApplication(defaultApplicationForMimeType(QStringLiteral("text/plain"))))
        return TextEditIdentifier;
    if (sameApplication(defaultApplicationForMimeType(QStringLiteral("image/png"))))
        return PreviewIdentifier;
    return applicationIdentifier;
}

bool DesktopApplications::openFile(const QString &filePath, const QString &applicationIdentifier,
                                   QString *errorText)
{
    auto failed = [errorText](const QString &reason) {
        if (errorText)
            *errorText = reason;
        return false;
    };
    if (!QFileInfo::exists(filePath))
        return failed(QStringLiteral("the file %1 does not exist").arg(filePath));

    const QString desktopFileId = desktopFileIdForApplicationIdentifier(applicationIdentifier, filePath);
    if (desktopFileId.isEmpty())
        return failed(QStringLiteral("no application stands for %1").arg(applicationIdentifier));
    GDesktopAppInfo *info = GioHelpers::appInfoFor(desktopFileId);
    if (!info)
        return failed(QStringLiteral("no installed application %1").arg(desktopFileId));

    GFile *file = g_file_new_for_path(QFile::encodeName(QFileInfo(filePath).absoluteFilePath()).constData());
    GList *files = g_list_append(nullptr, file);
    GError *error = nullptr;
    // GIO starts the program and returns; it does not wait for the application to come up.
    const gboolean launched = g_app_info_launch(G_APP_INFO(info), files, nullptr, &error);
    QString reason;
    if (!launched)
        reason = error ? QString::fromUtf8(error->message) : QStringLiteral("launch failed");
    if (error)
        g_error_free(error);
    g_list_free(files);
    g_object_unref(file);
    g_object_unref(info);
    if (!launched)
        return failed(QStringLiteral("%1 could not be launched: %2").arg(desktopFileId, reason));
    return true;
}
