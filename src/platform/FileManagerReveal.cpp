// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileManagerReveal.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QStringList>
#include <QUrl>
#include <cstdio>

namespace {

const QString fileManagerInterface = QStringLiteral("org.freedesktop.FileManager1");

void logPlain(const QString &text)
{
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
}

} // namespace

bool FileManagerReveal::isServiceAvailable()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface())
        return false;
    QDBusConnectionInterface *busInterface = bus.interface();
    if (busInterface->isServiceRegistered(ServiceName))
        return true;
    const QDBusReply<QStringList> activatable = busInterface->activatableServiceNames();
    return activatable.isValid() && activatable.value().contains(ServiceName);
}

bool FileManagerReveal::selectFile(const QString &path, const QString &rootFullPath)
{
    const QFileInfo info(path);
    const QString absolutePath = info.absoluteFilePath();
    if (isServiceAvailable()) {
        QDBusMessage call = QDBusMessage::createMethodCall(ServiceName, ObjectPath, fileManagerInterface,
                                                           QStringLiteral("ShowItems"));
        call << QStringList{QUrl::fromLocalFile(absolutePath).toString(QUrl::FullyEncoded)} << QString();
        // Fire and forget: a file manager that is slow to start must not block the caller.
        call.setAutoStartService(true);
        if (QDBusConnection::sessionBus().send(call))
            return true;
        logPlain(
            QStringLiteral("FileManagerReveal: could not ask the file manager to show %1").arg(absolutePath));
    }
    const QString folder = !rootFullPath.isEmpty() ? rootFullPath : info.absolutePath();
    if (QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        return true;
    logPlain(QStringLiteral("FileManagerReveal: could not open the folder %1").arg(folder));
    return false;
}
