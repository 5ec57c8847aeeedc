// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/NotificationCenter.h"

#include "watching/UKMainThreadProxy.h"

#include <algorithm>

struct NotificationCenter::Registration
{
    ObserverToken token = 0;
    QString name;
    const void *object = nullptr;
    const QObject *context = nullptr;
    Observer observer;
    QMetaObject::Connection contextConnection;
    // Guarded by the centre's mutex.
    bool removed = false;
    int runningDeliveries = 0;
};

namespace {

// How many deliveries the current thread is inside of (posts can nest).
thread_local int tDeliveryDepth = 0;

} // namespace

NotificationCenter::NotificationCenter() = default;

NotificationCenter::~NotificationCenter()
{
    for (const std::shared_ptr<Registration> &registration : std::as_const(mRegistrations))
        QObject::disconnect(registration->contextConnection);
}

NotificationCenter &NotificationCenter::defaultCenter()
{
    // Never destroyed: threads may still post while the process exits.
    static NotificationCenter *center = new NotificationCenter;
    return *center;
}

NotificationCenter &NotificationCenter::workspaceCenter()
{
    static NotificationCenter *center = new NotificationCenter;
    return *center;
}

NotificationCenter::ObserverToken NotificationCenter::addObserver(const QString &name, const void *object,
                                                                  const QObject *context, Observer observer)
{
    auto registration = std::make_shared<Registration>();
    registration->name = name;
    registration->object = object;
    registration->context = context;
    registration->observer = std::move(observer);
    {
        std::lock_guard lock(mMutex);
        registration->token = mNextToken++;
        mRegistrations.append(registration);
    }
    if (context) {
        const ObserverToken token = registration->token;
        registration->contextConnection =
            QObject::connect(context, &QObject::destroyed, [this, token] { removeObserver(token); });
    }
    return registration->token;
}

void NotificationCenter::removeObserver(ObserverToken token)
{
    QList<std::shared_ptr<Registration>> found;
    {
        std::lock_guard lock(mMutex);
        for (const std::shared_ptr<Registration> &registration : std::as_const(mRegistrations)) {
            if (registration->token == token) {
                found.append(registration);
                break;
            }
        }
    }
    removeRegistrations(found);
}

void NotificationCenter::removeObserver(const QObject *context, const QString &name, const void *object)
{
    QList<std::shared_ptr<Registration>> found;
    {
        std::lock_guard lock(mMutex);
        for (const std::shared_ptr<Registration> &registration : std::as_const(mRegistrations)) {
            if (registration->context == context && (name.isEmpty() || registration->name == name) &&
                (!object || registration->object == object))
                found.append(registration);
        }
    }
    removeRegistrations(found);
}

void NotificationCenter::removeRegistrations(const QList<std::shared_ptr<Registration>> &registrations)
{
    if (registrations.isEmpty())
        return;
    {
        std::lock_guard lock(mMutex);
        for (const std::shared_ptr<Registration> &registration : registrations) {
            registration->removed = true;
            mRegistrations.removeOne(registration);
        }
    }
    for (const std::shared_ptr<Registration> &registration : registrations)
        QObject::disconnect(registration->contextConnection);
    if (tDeliveryDepth > 0)
        return;

    const auto idle = [&] {
        std::lock_guard lock(mMutex);
        return std::all_of(registrations.cbegin(), registrations.cend(),
                           [](const std::shared_ptr<Registration> &r) { return r->runningDeliveries == 0; });
    };
    if (UKMainThreadProxy::isMainThread()) {
        UKMainThreadProxy::waitUntil(idle);
        return;
    }
    std::unique_lock lock(mMutex);
    mDeliveryEnded.wait(lock, [&] {
        return std::all_of(registrations.cbegin(), registrations.cend(),
                           [](const std::shared_ptr<Registration> &r) { return r->runningDeliveries == 0; });
    });
}

void NotificationCenter::post(const QString &name, const void *object, const QVariantMap &userInfo)
{
    QList<std::shared_ptr<Registration>> matching;
    {
        std::lock_guard lock(mMutex);
        for (const std::shared_ptr<Registration> &registration : std::as_const(mRegistrations)) {
            if ((registration->name.isEmpty() || registration->name == name) &&
                (!registration->object || registration->object == object))
                matching.append(registration);
        }
    }
    if (matching.isEmpty())
        return;

    const Notification notification{name, object, userInfo};
    for (const std::shared_ptr<Registration> &registration : std::as_const(matching)) {
        {
            std::lock_guard lock(mMutex);
            if (registration->removed)
                continue;
            ++registration->runningDeliveries;
        }
        // Ends the delivery also when the observer throws.
        struct DeliveryScope
        {
            NotificationCenter *center;
            Registration *registration;
            DeliveryScope(NotificationCenter *c, Registration *r) : center(c), registration(r)
            {
                ++tDeliveryDepth;
            }
            ~DeliveryScope()
            {
                --tDeliveryDepth;
                bool wake = false;
                {
                    std::lock_guard lock(center->mMutex);
                    wake = --registration->runningDeliveries == 0 && registration->removed;
                }
                if (wake) {
                    center->mDeliveryEnded.notify_all();
                    UKMainThreadProxy::conditionChanged();
                }
            }
        } scope(this, registration.get());
        registration->observer(notification);
    }
}

int NotificationCenter::observerCount() const
{
    std::lock_guard lock(mMutex);
    return int(mRegistrations.size());
}
