// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QMetaObject>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

// An in-process notification centre: observers register for a notification name (and optionally a posting
// object) and are called synchronously, on the posting thread, by every post of a matching notification.
// Registration and removal are safe from any thread, also from inside an observer.
//
// Two process-wide centres exist: defaultCenter(), the application's own, and workspaceCenter(), on which the
// file watchers post their notifications (from their own threads).
class NotificationCenter
{
public:
    struct Notification
    {
        QString name;
        const void *object = nullptr; // the poster, compared by identity only
        QVariantMap userInfo;
    };
    using Observer = std::function<void(const Notification &notification)>;
    using ObserverToken = quint64; // 0 is never a token

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter &) = delete;
    NotificationCenter &operator=(const NotificationCenter &) = delete;

    // The process-wide centres; they live until the process ends.
    static NotificationCenter &defaultCenter();
    static NotificationCenter &workspaceCenter();

    // Registers the observer for notifications called `name` (an empty name: every notification) posted with
    // `object` (null: by any object). When a context object is given, the observation ends by itself when
    // that object is destroyed. Returns the token that removeObserver() takes.
    ObserverToken addObserver(const QString &name, const void *object, const QObject *context,
                              Observer observer);

    // Ends one observation. Once this returns, the observer is not called any more: deliveries to it that are
    // running on other threads have finished. The wait is skipped when the calling thread is itself
    // delivering a notification (so two delivering threads never wait for each other, and an observer can
    // remove itself); on the main thread the wait keeps serving UKMainThreadProxy calls, so a delivery that
    // waits for the main thread can still finish. An unknown token is ignored.
    void removeObserver(ObserverToken token);

    // Ends every observation made with the context, or only those for the name and object when they are
    // given (an empty name and a null object match any). Waits as removeObserver(token) does.
    void removeObserver(const QObject *context, const QString &name = QString(),
                        const void *object = nullptr);

    // Calls every matching observer, in the order they were added, on the calling thread, and returns when
    // all have run. Observers added or removed meanwhile by other threads may or may not be called. An
    // exception thrown by an observer ends the post and reaches the poster.
    void post(const QString &name, const void *object = nullptr, const QVariantMap &userInfo = QVariantMap());

    // The number of observations in force.
    int observerCount() const;

private:
    struct Registration;
    void removeRegistrations(const QList<std::shared_ptr<Registration>> &registrations);

    mutable std::mutex mMutex;
    std::condition_variable mDeliveryEnded;
    QList<std::shared_ptr<Registration>> mRegistrations;
    ObserverToken mNextToken = 1;
};
