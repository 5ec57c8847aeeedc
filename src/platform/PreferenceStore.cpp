// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PreferenceStore.h"
#include "foundation/Diagnostics.h"

#include "foundation/CorvexError.h"
#include "platform/PreferenceStore_p.h"
#include "platform/PropertyList.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <vector>

namespace {

// The property-list error code for a value that cannot be written as a property list.
constexpr long kPropertyListWriteInvalidError = 3852;

bool holdsNullMarker(const QVariant &value)
{
    if (PropertyList::isNullMarker(value))
        return true;
    switch (value.metaType().id()) {
    case QMetaType::QVariantList:
        for (const QVariant &element : value.toList()) {
            if (holdsNullMarker(element))
                return true;
        }
        return false;
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        for (const QVariant &element : value.toMap()) {
            if (holdsNullMarker(element))
                return true;
        }
        return false;
    default:
        return false;
    }
}

CorvexError invalidDomainError(const QString &domain)
{
    return CorvexError(CorvexError::CocoaErrorDomain, CorvexError::FileWriteInvalidFileNameError,
                       {{CorvexError::LocalizedFailureReasonErrorKey,
                         QStringLiteral("\"%1\" is not a valid preference domain name.").arg(domain)}});
}

} // namespace

PreferenceStore::PreferenceStore(QString directory) : mDirectory(QDir::cleanPath(std::move(directory))) {}

PreferenceStore::~PreferenceStore() = default;

PreferenceStore &PreferenceStore::shared()
{
    static PreferenceStore *store = new PreferenceStore(defaultDirectory());
    return *store;
}

QString PreferenceStore::defaultDirectory()
{
    QString config = qEnvironmentVariable("XDG_CONFIG_HOME");
    if (config.isEmpty() || QDir::isRelativePath(config))
        config = QDir::homePath() + QStringLiteral("/.config");
    return config + QStringLiteral("/corvex");
}

bool PreferenceStore::isValidDomainName(const QString &domain)
{
    return !domain.isEmpty() && !domain.startsWith(QLatin1Char('.')) && !domain.contains(QLatin1Char('/')) &&
           !domain.contains(QChar(0)) && domain.size() <= 200;
}

QString PreferenceStore::pathForDomain(const QString &domain) const
{
    return mDirectory + QLatin1Char('/') + domain + QStringLiteral(".plist");
}

QVariant PreferenceStore::normalized(const QVariant &value)
{
    if (!value.isValid() || holdsNullMarker(value) || !PropertyList::isPropertyListValue(value))
        return {};
    // A one-element array keeps a top-level date or string a valid document in every form.
    const QVariant back =
        PropertyList::parse(PropertyList::serialize(QVariantList{value}, PropertyList::Format::Xml));
    const QVariantList list = back.toList();
    return list.size() == 1 ? list.first() : QVariant();
}

std::shared_ptr<PreferenceDomainCache> PreferenceStore::cacheFor(const QString &domain,
                                                                 CorvexError *error) const
{
    if (!isValidDomainName(domain)) {
        CorvexReportError(QStringLiteral("Preferences: \"%1\" is not a valid domain name.").arg(domain));
        if (error)
            *error = invalidDomainError(domain);
        return {};
    }
    QMutexLocker locker(&mCachesMutex);
    std::shared_ptr<PreferenceDomainCache> &cache = mCaches[domain];
    if (!cache)
        cache = std::make_shared<PreferenceDomainCache>(pathForDomain(domain));
    return cache;
}

bool PreferenceStore::synchronizeLocked(PreferenceDomainCache &cache, const QString &domain,
                                        QVariantHash *previous, CorvexError *error)
{
    if (cache.loaded && cache.pending.isEmpty() && cache.file.isUnchanged())
        return true;

    PreferenceFileLock lock(cache.file.lockPath());
    if (!lock.isLocked() && !cache.pending.isEmpty()) {
        CorvexReportError(
            QStringLiteral("Preferences: cannot save the domain %1: %2").arg(domain, lock.errorText()));
        if (error)
            *error = CorvexError(CorvexError::CocoaErrorDomain, CorvexError::FileLockingError,
                                 {{CorvexError::FilePathErrorKey, cache.file.lockPath()},
                                  {CorvexError::LocalizedFailureReasonErrorKey, lock.errorText()}});
        return false;
    }

    const bool wasLoaded = cache.loaded;
    const QVariantMap oldView = wasLoaded ? cache.view() : QVariantMap();
    QVariantMap disk = cache.disk;
    bool ok = true;
    if (!cache.loaded || !cache.file.isUnchanged()) {
        QString errorText;
        QString movedTo;
        switch (cache.file.read(&disk, lock.isLocked(), &errorText, &movedTo)) {
        case PreferenceFile::ReadResult::Read:
        case PreferenceFile::ReadResult::Missing:
            break;
        case PreferenceFile::ReadResult::Quarantined:
            CorvexReportError(QStringLiteral("Preferences: %1").arg(errorText));
            break;
        case PreferenceFile::ReadResult::Failed:
            // Keep what this process knew and every pending change; nothing is written over the file.
            CorvexReportError(QStringLiteral("Preferences: %1").arg(errorText));
            if (error)
                *error = CorvexError(CorvexError::CocoaErrorDomain, CorvexError::FileReadCorruptFileError,
                                     {{CorvexError::FilePathErrorKey, cache.file.path()},
                                      {CorvexError::LocalizedFailureReasonErrorKey, errorText}});
            cache.loaded = true;
            return false;
        }
    }

    QVariantMap merged = disk;
    for (auto it = cache.pending.cbegin(); it != cache.pending.cend(); ++it) {
        if (it.value().isValid())
            merged.insert(it.key(), it.value());
        else
            merged.remove(it.key());
    }
    if (!cache.pending.isEmpty() && !PropertyList::equal(merged, disk)) {
        CorvexError writeError;
        if (cache.file.write(merged, &writeError)) {
            disk = merged;
            cache.pending.clear();
        } else {
            CorvexReportError(QStringLiteral("Preferences: cannot save the domain %1 to %2: %3")
                                  .arg(domain, cache.file.path(), writeError.localizedDescription()));
            if (error)
                *error = writeError;
            ok = false;
        }
    } else {
        cache.pending.clear();
    }
    cache.disk = disk;
    cache.loaded = true;

    if (wasLoaded && previous) {
        const QVariantMap newView = cache.view();
        QSet<QString> keys;
        for (auto it = oldView.cbegin(); it != oldView.cend(); ++it)
            keys.insert(it.key());
        for (auto it = newView.cbegin(); it != newView.cend(); ++it)
            keys.insert(it.key());
        for (const QString &key : keys) {
            const QVariant before = oldView.value(key);
            if (!PropertyList::equal(before, newView.value(key)))
                previous->insert(key, before);
        }
    }
    return ok;
}

QVariant PreferenceStore::value(const QString &domain, const QString &key)
{
    const auto cache = cacheFor(domain, nullptr);
    if (!cache)
        return {};
    QMutexLocker locker(&cache->mutex);
    if (!cache->loaded)
        synchronizeLocked(*cache, domain, nullptr, nullptr);
    return cache->value(key);
}

QVariantMap PreferenceStore::dictionary(const QString &domain)
{
    const auto cache = cacheFor(domain, nullptr);
    if (!cache)
        return {};
    QMutexLocker locker(&cache->mutex);
    if (!cache->loaded)
        synchronizeLocked(*cache, domain, nullptr, nullptr);
    return cache->view();
}

bool PreferenceStore::setValue(const QString &domain, const QString &key, const QVariant &value,
                               CorvexError *error)
{
    const QVariant stored = normalized(value);
    if (value.isValid() && !stored.isValid()) {
        CorvexReportError(
            QStringLiteral("Preferences: refusing to store a value of type %1 under \"%2\" in %3: it is "
                           "not a property-list type.")
                .arg(QString::fromLatin1(value.metaType().name()), key, domain));
        if (error)
            *error = CorvexError(
                CorvexError::CocoaErrorDomain, kPropertyListWriteInvalidError,
                {{CorvexError::LocalizedFailureReasonErrorKey,
                  QStringLiteral("The value for \"%1\" is not a property-list value.").arg(key)}});
        return false;
    }
    const auto cache = cacheFor(domain, error);
    if (!cache)
        return false;
    QVariant before;
    bool changed = false;
    {
        QMutexLocker locker(&cache->mutex);
        if (!cache->loaded)
            synchronizeLocked(*cache, domain, nullptr, nullptr);
        before = cache->value(key);
        cache->pending.insert(key, stored);
        changed = !PropertyList::equal(before, stored);
    }
    if (changed)
        notify(domain, QVariantHash{{key, before}});
    return true;
}

bool PreferenceStore::synchronize(const QString &domain, QStringList *changedByOthers, CorvexError *error)
{
    if (changedByOthers)
        changedByOthers->clear();
    const auto cache = cacheFor(domain, error);
    if (!cache)
        return false;
    QVariantHash previous;
    bool ok = false;
    {
        QMutexLocker locker(&cache->mutex);
        ok = synchronizeLocked(*cache, domain, &previous, error);
    }
    if (!previous.isEmpty()) {
        if (changedByOthers) {
            *changedByOthers = previous.keys();
            changedByOthers->sort();
        }
        notify(domain, previous);
    }
    return ok;
}

bool PreferenceStore::domainExists(const QString &domain) const
{
    return isValidDomainName(domain) && QFileInfo::exists(pathForDomain(domain));
}

bool PreferenceStore::removeDomain(const QString &domain, CorvexError *error)
{
    const auto cache = cacheFor(domain, error);
    if (!cache)
        return false;
    QVariantHash previous;
    bool ok = false;
    {
        QMutexLocker locker(&cache->mutex);
        PreferenceFileLock lock(cache->file.lockPath());
        const QVariantMap before = cache->loaded ? cache->view() : QVariantMap();
        ok = cache->file.remove(error);
        if (ok) {
            cache->disk.clear();
            cache->pending.clear();
            cache->loaded = true;
            for (auto it = before.cbegin(); it != before.cend(); ++it)
                previous.insert(it.key(), it.value());
        }
    }
    if (!previous.isEmpty())
        notify(domain, previous);
    return ok;
}

QStringList PreferenceStore::domainNames() const
{
    QStringList names;
    const QFileInfoList entries =
        QDir(mDirectory).entryInfoList({QStringLiteral("*.plist")}, QDir::Files | QDir::Hidden, QDir::Name);
    for (const QFileInfo &entry : entries) {
        const QString name = entry.fileName().chopped(6);
        if (isValidDomainName(name))
            names.append(name);
    }
    return names;
}

int PreferenceStore::addObserver(Observer observer)
{
    QMutexLocker locker(&mObserversMutex);
    const int token = mNextToken++;
    mObservers.emplace(token, std::make_shared<const Observer>(std::move(observer)));
    return token;
}

void PreferenceStore::removeObserver(int token)
{
    QMutexLocker locker(&mObserversMutex);
    mObservers.erase(token);
}

void PreferenceStore::notify(const QString &domain, const QVariantHash &previous)
{
    std::vector<std::shared_ptr<const Observer>> observers;
    {
        QMutexLocker locker(&mObserversMutex);
        for (const auto &[token, observer] : mObservers)
            observers.push_back(observer);
    }
    for (const auto &observer : observers)
        (*observer)(domain, previous);
}
