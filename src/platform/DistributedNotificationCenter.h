// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMutex>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <functional>
#include <map>
#include <memory>

class QDBusMessage;

// The machine-local broadcast between Corvex processes: a notification is a name plus a dictionary of
// property-list values (the user info). Every process of the user's session that observes the name receives
// it, the posting process included.
//
// On the wire it is the D-Bus session-bus signal Notification(s name, ay userInfo) of the interface
// "com.ostrel.Corvex.Notifications" at the object path "/com/ostrel/Corvex/Notifications"; the user info
// travels as a binary property list (empty bytes for an empty dictionary), so dates (to the millisecond),
// data, nesting and the null marker arrive exactly as posted.
//
// A process is only woken for names it observes: for each observed name the center adds a bus match rule on
// the signal's first argument (arg0='NAME'), so the bus daemon does not even send the others; the rule is
// removed with the last observer of the name. Observing every name (an empty name) adds one rule without an
// argument match.
class DistributedNotificationCenter : public QObject
{
    Q_OBJECT

public:
    static inline const QString Interface = QStringLiteral("com.ostrel.Corvex.Notifications");
    static inline const QString ObjectPath = QStringLiteral("/com/ostrel/Corvex/Notifications");
    static inline const QString SignalName = QStringLiteral("Notification");

    using Observer = std::function<void(const QString &name, const QVariantMap &userInfo)>;

    // The one center of the process, made on first use from any thread (it lives on the main thread).
    static DistributedNotificationCenter &defaultCenter();

    // True when the session bus can be reached.
    bool isConnected() const;

    // Posts a notification for immediate delivery, from any thread. The user info must hold property-list
    // values only. Returns false, and logs why, when there is no session bus or the user info cannot be
    // serialised; nothing is posted then. (A missing bus is logged once per process.)
    bool postNotificationName(const QString &name, const QVariantMap &userInfo = {});

    // Returns once every notification this process has posted so far has been handed to the bus (worth
    // calling before a process that has just posted exits).
    void flush();

    // Registers an observer for one name (an empty name: every name), from any thread. The observer always
    // runs on the main thread, once for each notification posted after this call returns. When a context
    // is given, its destruction ends the registration. Returns an id for removeObserver. Without a session
    // bus the registration is kept but nothing arrives (the missing bus is logged once per process).
    int addObserver(const QString &name, QObject *context, Observer observer);

    // Ends a registration; the observer is not called again once this returns (on the main thread) or once
    // any delivery already running has finished (elsewhere). Unknown ids are ignored.
    void removeObserver(int id);

private:
    DistributedNotificationCenter();

    struct Registration
    {
        QString name;
        QMetaObject::Connection contextConnection;
        std::shared_ptr<Observer> observer;
    };

    void deliver(const QDBusMessage &message, bool toNamedObservers);
    bool addMatch(const QString &name);
    void removeMatch(const QString &name);

private Q_SLOTS:
    void handleNamedSignal(const QDBusMessage &message);
    void handleAnySignal(const QDBusMessage &message);

private:
    mutable QMutex mMutex;
    std::map<int, Registration> mRegistrations;
    QMap<QString, int> mMatchCounts; // observed name -> number of registrations for it
    int mNextId = 1;
};
