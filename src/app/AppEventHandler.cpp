// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AppEventHandler.h"

#include "ApplicationAdaptor.h"
#include "app/AppDelegate.h"
#include "logging/Log.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QPointer>

AppEventHandler::AppEventHandler(AppDelegate *delegate, QObject *parent)
    : QObject(parent), mDelegate(delegate)
{
    new ApplicationAdaptor(this);
}

AppEventHandler::~AppEventHandler()
{
    if (mRegistered)
        QDBusConnection::sessionBus().unregisterObject(ObjectPath);
}

bool AppEventHandler::registerObject()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        DDLogError(QStringLiteral("Could not install the event handlers: there is no session bus."));
        return false;
    }
    mRegistered = bus.registerObject(ObjectPath, this, QDBusConnection::ExportAdaptors);
    if (!mRegistered)
        DDLogError(QStringLiteral("Could not install the event handlers: %1 is taken.").arg(ObjectPath));
    return mRegistered;
}

bool AppEventHandler::claimServiceName()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(ServiceName, QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

bool AppEventHandler::isAnotherInstanceRunning()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return false;
    const QDBusReply<QString> owner = bus.interface()->serviceOwner(ServiceName);
    return owner.isValid() && !owner.value().isEmpty() && owner.value() != bus.baseService();
}

bool AppEventHandler::sendURLToRunningInstance(const QString &url)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(ServiceName, ObjectPath, Interface, QStringLiteral("GetURL"));
    call << url;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 10000);
    return reply.type() == QDBusMessage::ReplyMessage;
}

// Every event is answered at once and runs afterwards from the event loop: a command that opens a modal
// window (About, Reset Preferences) must not keep the caller waiting for the window to close.

void AppEventHandler::About()
{
    QMetaObject::invokeMethod(mDelegate, &AppDelegate::handleAboutEvent, Qt::QueuedConnection);
}

void AppEventHandler::Preferences()
{
    QMetaObject::invokeMethod(mDelegate, &AppDelegate::handlePreferencesEvent, Qt::QueuedConnection);
}

void AppEventHandler::CheckForUpdates()
{
    QMetaObject::invokeMethod(mDelegate, &AppDelegate::handleCheckForUpdatesEvent, Qt::QueuedConnection);
}

void AppEventHandler::GetURL(const QString &url)
{
    const QPointer<AppDelegate> delegate(mDelegate);
    QMetaObject::invokeMethod(
        mDelegate,
        [delegate, url] {
            if (delegate)
                delegate->handleGetURLEvent(url);
        },
        Qt::QueuedConnection);
}
