// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DistributedNotificationCenter.h"
#include "foundation/Diagnostics.h"

#include "foundation/Notifications.h"
#include "platform/PropertyList.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QMutexLocker>
#include <QThread>
#include <atomic>
#include <cstdio>
#include <vector>

namespace {

const QString kSignature = QStringLiteral("say");

// Failures of a post are logged without waiting for the loggers: the cross-process logger posts from its
// own logger queue, and a synchronous error statement there would wait for that very queue.
void logPostFailure(const QString &name, const QString &message)
{
    if (name == CorvexAppLogNotification) {
        // Logging this failure would post "CorvexAppLog" again; it goes to the plain system log instead.
        std::fprintf(stderr, "Corvex: %s\n", message.toLocal8Bit().constData());
        return;
    }
    Diagnostics::report(Diagnostics::Level::Error, false, __FILE__, Q_FUNC_INFO, __LINE__, message);
}

std::atomic_bool gMissingBusLogged{false};

// Logs the missing session bus, once per process.
void logMissingBus(const QString &name, const QDBusConnection &bus)
{
    if (gMissingBusLogged.exchange(true))
        return;
    const QString reason =
        bus.lastError().isValid() ? bus.lastError().message() : QStringLiteral("not connected");
    logPostFailure(name,
                   QStringLiteral("Could not reach the D-Bus session bus for distributed notifications.  %1")
                       .arg(reason));
}

// One call to the bus daemon: when it returns, the daemon has handled every message sent before it.
void roundTrip(QDBusConnection &bus)
{
    bus.call(QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                            QStringLiteral("/org/freedesktop/DBus"),
                                            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
}

// A session bus opened on the main thread holds back incoming messages until the event loop first runs,
// and Qt then lets newer messages overtake the held ones. Running the pending resumption at once (posted
// events, twice: the resumption queues the delivery of what was held) keeps notifications in the order
// they were posted.
void resumeDeliveryOnTheMainThread()
{
    static std::atomic_bool resumed = false;
    QCoreApplication *app = QCoreApplication::instance();
    if (!app || QThread::currentThread() != app->thread() || resumed.exchange(true))
        return;
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents();
}

} // namespace

DistributedNotificationCenter::DistributedNotificationCenter() = default;

DistributedNotificationCenter &DistributedNotificationCenter::defaultCenter()
{
    // Made once, never destroyed: observers may be removed by objects destroyed late in the process's life.
    static DistributedNotificationCenter *center = [] {
        auto *made = new DistributedNotificationCenter;
        if (QCoreApplication *app = QCoreApplication::instance(); app && made->thread() != app->thread())
            made->moveToThread(app->thread());
        return made;
    }();
    return *center;
}

bool DistributedNotificationCenter::isConnected() const
{
    return QDBusConnection::sessionBus().isConnected();
}

bool DistributedNotificationCenter::postNotificationName(const QString &name, const QVariantMap &userInfo)
{
    if (name.isEmpty()) {
        logPostFailure(name, QStringLiteral("Could not post a distributed notification without a name."));
        return false;
    }
    QByteArray payload;
    if (!userInfo.isEmpty()) {
        QString errorText;
        if (PropertyList::isPropertyListValue(userInfo))
            payload = PropertyList::serialize(userInfo, PropertyList::Format::Binary, &errorText);
        else
            errorText = QStringLiteral("it holds a value that is not a property-list value");
        if (payload.isEmpty()) {
            logPostFailure(
                name,
                QStringLiteral("Could not post the distributed notification %1: %2.").arg(name, errorText));
            return false;
        }
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        logMissingBus(name, bus);
        return false;
    }
    QDBusMessage signal = QDBusMessage::createSignal(ObjectPath, Interface, SignalName);
    signal << name << payload;
    return bus.send(signal);
}

void DistributedNotificationCenter::flush()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected())
        roundTrip(bus);
}

int DistributedNotificationCenter::addObserver(const QString &name, QObject *context, Observer observer)
{
    if (isConnected())
        resumeDeliveryOnTheMainThread();
    QMutexLocker locker(&mMutex);
    const int id = mNextId++;
    Registration &registration = mRegistrations[id];
    registration.name = name;
    registration.observer = std::make_shared<Observer>(std::move(observer));
    if (mMatchCounts[name]++ == 0)
        addMatch(name);
    if (context)
        registration.contextConnection = connect(
            context, &QObject::destroyed, this, [this, id] { removeObserver(id); }, Qt::DirectConnection);
    return id;
}

void DistributedNotificationCenter::removeObserver(int id)
{
    QMutexLocker locker(&mMutex);
    const auto found = mRegistrations.find(id);
    if (found == mRegistrations.end())
        return;
    const QString name = found->second.name;
    disconnect(found->second.contextConnection);
    mRegistrations.erase(found);
    if (--mMatchCounts[name] <= 0) {
        mMatchCounts.remove(name);
        removeMatch(name);
    }
}

bool DistributedNotificationCenter::addMatch(const QString &name)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        logMissingBus(name, bus);
        return false;
    }
    const bool added = name.isEmpty()
                           ? bus.connect(QString(), ObjectPath, Interface, SignalName, kSignature, this,
                                         SLOT(handleAnySignal(QDBusMessage)))
                           : bus.connect(QString(), ObjectPath, Interface, SignalName, QStringList{name},
                                         kSignature, this, SLOT(handleNamedSignal(QDBusMessage)));
    if (!added)
        return false;
    // The rule is sent without waiting for an answer; one round trip makes sure the bus has it, so every
    // notification posted (by any process) after addObserver returns is delivered.
    roundTrip(bus);
    return true;
}

void DistributedNotificationCenter::removeMatch(const QString &name)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    if (name.isEmpty())
        bus.disconnect(QString(), ObjectPath, Interface, SignalName, kSignature, this,
                       SLOT(handleAnySignal(QDBusMessage)));
    else
        bus.disconnect(QString(), ObjectPath, Interface, SignalName, QStringList{name}, kSignature, this,
                       SLOT(handleNamedSignal(QDBusMessage)));
}

void DistributedNotificationCenter::handleNamedSignal(const QDBusMessage &message)
{
    deliver(message, true);
}

void DistributedNotificationCenter::handleAnySignal(const QDBusMessage &message)
{
    deliver(message, false);
}

void DistributedNotificationCenter::deliver(const QDBusMessage &message, bool toNamedObservers)
{
    const QVariantList arguments = message.arguments();
    if (arguments.size() != 2)
        return;
    const QString name = arguments.at(0).toString();
    const QByteArray payload = arguments.at(1).toByteArray();
    QVariantMap userInfo;
    if (!payload.isEmpty()) {
        QString errorText;
        const QVariant parsed = PropertyList::parse(payload, &errorText);
        if (parsed.metaType().id() != QMetaType::QVariantMap) {
            CorvexReportWarning(
                QStringLiteral("Ignored the distributed notification %1 from %2: its user info is not a "
                               "property-list dictionary.")
                    .arg(name, message.service()));
            return;
        }
        userInfo = parsed.toMap();
    }

    std::vector<std::pair<int, std::shared_ptr<Observer>>> observers;
    {
        QMutexLocker locker(&mMutex);
        for (const auto &[id, registration] : mRegistrations) {
            const bool wanted = toNamedObservers ? registration.name == name : registration.name.isEmpty();
            if (wanted)
                observers.emplace_back(id, registration.observer);
        }
    }
    for (const auto &[id, observer] : observers) {
        {
            // An observer removed by an earlier one (or by another thread) meanwhile is not called.
            QMutexLocker locker(&mMutex);
            if (mRegistrations.find(id) == mRegistrations.end())
                continue;
        }
        (*observer)(name, userInfo);
    }
}

// The meta-object code goes with this file, not with the layer's other classes: a program then links only
// the libraries of the classes it uses.
#include "moc_DistributedNotificationCenter.cpp"
