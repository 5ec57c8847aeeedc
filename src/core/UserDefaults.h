// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/TypedPreferences.h"

#include <QMutex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <memory>

class PreferenceStore;
class QFileSystemWatcher;

// The standard preferences of the process: a value is looked up in the argument domain ("-key value" on the
// command line), then in the application's own domain, then in the registration domain. Writes go to the
// application's domain and reach the disk at once. valueChanged() announces, on the object's (main) thread,
// every key whose effective value changed: by a write in this process (through this object or any other user
// of the domain), by registerDefaults(), or by another process (the domain file is watched).
class UserDefaults : public QObject, public TypedPreferences
{
    Q_OBJECT

public:
    // The process's standard preferences, for the standard domain and QCoreApplication::arguments(). Created
    // on first use and never destroyed; it lives on the main thread.
    static UserDefaults &standardUserDefaults();

    // The domain of standardUserDefaults() ("com.ostrel.Corvex" unless set). Takes effect only before the
    // first use of standardUserDefaults(); returns false afterwards.
    static bool setStandardDomain(const QString &domain);
    static QString standardDomain();

    // Preferences of a domain with the given command-line arguments (without the program name), over a store
    // (the shared one when null).
    explicit UserDefaults(const QString &domain, const QStringList &arguments = {},
                          PreferenceStore *store = nullptr, QObject *parent = nullptr);
    ~UserDefaults() override;

    const QString &domain() const { return mDomain; }
    QVariantMap argumentDomain() const;
    QVariantMap registeredDefaults() const;

    // Every effective key and value: the registration domain overlaid by the domain, overlaid by the
    // arguments.
    QVariantMap dictionaryRepresentation() const;

    QVariant objectForKey(const QString &key) const override;

    // Stores the value in the application's domain (an invalid QVariant removes the key) and synchronises.
    void setObject(const QVariant &value, const QString &key) override;

    // Adds the entries to the registration domain (a key already there takes the new value).
    void registerDefaults(const QVariantMap &dictionary);

    // Writes this process's changes and picks up other processes' changes; false when that failed.
    bool synchronize();

Q_SIGNALS:
    // The effective value of the key changed.
    void valueChanged(const QString &key);

private:
    struct Relay;

    QVariant effectiveValue(const QString &key, const QVariant &domainValue, bool domainValueKnown) const;
    void domainValuesChanged(const QVariantHash &previousValues);
    void startWatching();
    void watchedPathChanged();

    QString mDomain;
    PreferenceStore &mStore;
    QVariantMap mArgumentDomain;
    mutable QMutex mMutex; // guards mRegistrationDomain
    QVariantMap mRegistrationDomain;
    std::shared_ptr<Relay> mRelay;
    int mObserverToken = 0;
    QFileSystemWatcher *mWatcher = nullptr;
    bool mSyncScheduled = false;
};
