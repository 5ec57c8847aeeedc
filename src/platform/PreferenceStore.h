// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QMutex>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <map>
#include <memory>

class CorvexError;
struct PreferenceDomainCache;

// Per-domain preferences: one XML property list per domain, "<directory>/<domain>.plist", shared by every
// process of the user. Each process keeps one in-memory view per domain; writes stay in that view until
// synchronize() merges them, key by key, with what other processes have written, so that two processes
// writing different keys never lose each other's values. All members are thread-safe.
class PreferenceStore
{
public:
    // Called after keys of a domain changed value in this process's view: by a write of this process or by
    // another process's write that synchronising revealed. previousValues maps each changed key to its value
    // before the change (an invalid QVariant: it was absent). Called on the thread that made the change, with
    // no lock of the store held. An observer may still run once while it is being removed.
    using Observer = std::function<void(const QString &domain, const QVariantHash &previousValues)>;

    explicit PreferenceStore(QString directory);
    ~PreferenceStore();
    PreferenceStore(const PreferenceStore &) = delete;
    PreferenceStore &operator=(const PreferenceStore &) = delete;

    // The store of this user: "$XDG_CONFIG_HOME/corvex" (by default "~/.config/corvex").
    static PreferenceStore &shared();
    static QString defaultDirectory();

    // A domain names a file: not empty, no '/', no NUL, not starting with '.'.
    static bool isValidDomainName(const QString &domain);

    const QString &directory() const { return mDirectory; }
    QString pathForDomain(const QString &domain) const;

    // The value of a key in this process's view of the domain (read from disk on the domain's first use);
    // an invalid QVariant when the key is absent.
    QVariant value(const QString &domain, const QString &key);

    // The whole view of the domain.
    QVariantMap dictionary(const QString &domain);

    // Sets (or, with an invalid value, removes) a key in this process's view; it reaches the disk with the
    // next synchronize(). Refuses a value that is not of a property-list type (logged, returns false).
    bool setValue(const QString &domain, const QString &key, const QVariant &value,
                  CorvexError *error = nullptr);

    // Under the domain's lock file: reads the file when it changed since this process last saw it, applies
    // this process's pending changes over it, writes it when that changed anything, and adopts every other
    // key from disk. *changedByOthers receives the keys whose value in this process's view changed because of
    // other processes. A damaged file is moved aside (logged) and the domain goes on empty.
    bool synchronize(const QString &domain, QStringList *changedByOthers = nullptr,
                     CorvexError *error = nullptr);

    // True when the domain has a file on disk.
    bool domainExists(const QString &domain) const;

    // Deletes the domain's file and empties this process's view of it.
    bool removeDomain(const QString &domain, CorvexError *error = nullptr);

    // The domains that have a file in the directory, sorted.
    QStringList domainNames() const;

    // Registers an observer of value changes; returns a token for removeObserver().
    int addObserver(Observer observer);
    void removeObserver(int token);

    // A value in the form a property list gives back: integers as qint64, reals as double, arrays as
    // QVariantList, dictionaries as QVariantMap, dates to the whole second. Invalid when not a property-list
    // value.
    static QVariant normalized(const QVariant &value);

private:
    std::shared_ptr<PreferenceDomainCache> cacheFor(const QString &domain, CorvexError *error) const;
    bool synchronizeLocked(PreferenceDomainCache &cache, const QString &domain, QVariantHash *previous,
                           CorvexError *error);
    void notify(const QString &domain, const QVariantHash &previous);

    QString mDirectory;
    mutable QMutex mCachesMutex;
    mutable QHash<QString, std::shared_ptr<PreferenceDomainCache>> mCaches;
    QMutex mObserversMutex;
    std::map<int, std::shared_ptr<const Observer>> mObservers;
    int mNextToken = 1;
};
