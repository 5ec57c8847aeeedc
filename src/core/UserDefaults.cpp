// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/UserDefaults.h"

#include "core/AppUserDefaults.h"
#include "core/ArgumentDomain.h"
#include "platform/PreferenceStore.h"
#include "platform/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSet>
#include <QThread>

namespace {

QMutex &standardDomainMutex()
{
    static QMutex mutex;
    return mutex;
}

QString &standardDomainName()
{
    static QString name = kCorvexDomain;
    return name;
}

bool &standardCreated()
{
    static bool created = false;
    return created;
}

bool onMainThread()
{
    const QCoreApplication *app = QCoreApplication::instance();
    return app && QThread::currentThread() == app->thread();
}

} // namespace

// Carries the store's change notices to the object; cleared when the object goes away, so that a notice
// arriving on another thread meanwhile finds nobody instead of a destroyed object.
struct UserDefaults::Relay
{
    QMutex mutex;
    UserDefaults *target = nullptr;
};

UserDefaults &UserDefaults::standardUserDefaults()
{
    static UserDefaults *instance = [] {
        QString domain;
        {
            QMutexLocker locker(&standardDomainMutex());
            standardCreated() = true;
            domain = standardDomainName();
        }
        const QStringList arguments =
            QCoreApplication::instance() ? QCoreApplication::arguments().mid(1) : QStringList();
        auto *created = new UserDefaults(domain, arguments);
        if (QCoreApplication *app = QCoreApplication::instance(); app && created->thread() != app->thread())
            created->moveToThread(app->thread());
        return created;
    }();
    return *instance;
}

bool UserDefaults::setStandardDomain(const QString &domain)
{
    QMutexLocker locker(&standardDomainMutex());
    if (standardCreated())
        return false;
    standardDomainName() = domain;
    return true;
}

QString UserDefaults::standardDomain()
{
    QMutexLocker locker(&standardDomainMutex());
    return standardDomainName();
}

UserDefaults::UserDefaults(const QString &domain, const QStringList &arguments, PreferenceStore *store,
                           QObject *parent)
    : QObject(parent), mDomain(domain), mStore(store ? *store : PreferenceStore::shared()),
      mArgumentDomain(ArgumentDomain::parse(arguments)), mRelay(std::make_shared<Relay>())
{
    mRelay->target = this;
    mObserverToken = mStore.addObserver(
        [relay = mRelay, domain](const QString &changedDomain, const QVariantHash &previousValues) {
            if (changedDomain != domain)
                return;
            QMutexLocker locker(&relay->mutex);
            UserDefaults *target = relay->target;
            if (!target)
                return;
            if (QThread::currentThread() == target->thread()) {
                locker.unlock();
                target->domainValuesChanged(previousValues);
            } else {
                QMetaObject::invokeMethod(
                    target, [target, previousValues] { target->domainValuesChanged(previousValues); },
                    Qt::QueuedConnection);
            }
        });
    if (onMainThread())
        startWatching();
    else if (QCoreApplication::instance())
        QMetaObject::invokeMethod(this, &UserDefaults::startWatching, Qt::QueuedConnection);
}

UserDefaults::~UserDefaults()
{
    {
        QMutexLocker locker(&mRelay->mutex);
        mRelay->target = nullptr;
    }
    mStore.removeObserver(mObserverToken);
}

QVariantMap UserDefaults::argumentDomain() const
{
    return mArgumentDomain;
}

QVariantMap UserDefaults::registeredDefaults() const
{
    QMutexLocker locker(&mMutex);
    return mRegistrationDomain;
}

QVariantMap UserDefaults::dictionaryRepresentation() const
{
    QVariantMap result = registeredDefaults();
    const QVariantMap stored = mStore.dictionary(mDomain);
    for (auto it = stored.cbegin(); it != stored.cend(); ++it)
        result.insert(it.key(), it.value());
    for (auto it = mArgumentDomain.cbegin(); it != mArgumentDomain.cend(); ++it)
        result.insert(it.key(), it.value());
    return result;
}

QVariant UserDefaults::effectiveValue(const QString &key, const QVariant &domainValue,
                                      bool domainValueKnown) const
{
    const auto argument = mArgumentDomain.constFind(key);
    if (argument != mArgumentDomain.cend())
        return argument.value();
    const QVariant stored = domainValueKnown ? domainValue : mStore.value(mDomain, key);
    if (stored.isValid())
        return stored;
    QMutexLocker locker(&mMutex);
    return mRegistrationDomain.value(key);
}

QVariant UserDefaults::objectForKey(const QString &key) const
{
    return effectiveValue(key, QVariant(), false);
}

void UserDefaults::setObject(const QVariant &value, const QString &key)
{
    if (mStore.setValue(mDomain, key, value))
        mStore.synchronize(mDomain);
}

void UserDefaults::registerDefaults(const QVariantMap &dictionary)
{
    QHash<QString, QVariant> before;
    for (auto it = dictionary.cbegin(); it != dictionary.cend(); ++it)
        before.insert(it.key(), objectForKey(it.key()));
    {
        QMutexLocker locker(&mMutex);
        for (auto it = dictionary.cbegin(); it != dictionary.cend(); ++it)
            mRegistrationDomain.insert(it.key(), it.value());
    }
    QStringList changed;
    for (auto it = before.cbegin(); it != before.cend(); ++it) {
        if (!PropertyList::equal(it.value(), objectForKey(it.key())))
            changed.append(it.key());
    }
    changed.sort();
    for (const QString &key : changed) {
        if (QThread::currentThread() == thread())
            Q_EMIT valueChanged(key);
        else
            QMetaObject::invokeMethod(
                this, [this, key] { Q_EMIT valueChanged(key); }, Qt::QueuedConnection);
    }
}

bool UserDefaults::synchronize()
{
    return mStore.synchronize(mDomain);
}

void UserDefaults::domainValuesChanged(const QVariantHash &previousValues)
{
    QStringList keys = previousValues.keys();
    keys.sort();
    for (const QString &key : keys) {
        const QVariant before = effectiveValue(key, previousValues.value(key), true);
        if (!PropertyList::equal(before, objectForKey(key)))
            Q_EMIT valueChanged(key);
    }
}

void UserDefaults::startWatching()
{
    if (mWatcher)
        return;
    // The domain file is replaced by a rename on every write, so its folder is watched; the file itself too,
    // for editors that write it in place.
    QDir().mkpath(mStore.directory());
    mWatcher = new QFileSystemWatcher(this);
    connect(mWatcher, &QFileSystemWatcher::directoryChanged, this, &UserDefaults::watchedPathChanged);
    connect(mWatcher, &QFileSystemWatcher::fileChanged, this, &UserDefaults::watchedPathChanged);
    mWatcher->addPath(mStore.directory());
    if (PreferenceStore::isValidDomainName(mDomain) && QFileInfo::exists(mStore.pathForDomain(mDomain)))
        mWatcher->addPath(mStore.pathForDomain(mDomain));
}

void UserDefaults::watchedPathChanged()
{
    if (!PreferenceStore::isValidDomainName(mDomain))
        return;
    // A replaced file keeps its watch on the old file: watch the current one.
    const QString file = mStore.pathForDomain(mDomain);
    if (mWatcher->files().contains(file))
        mWatcher->removePath(file);
    if (QFileInfo::exists(file))
        mWatcher->addPath(file);
    if (mSyncScheduled)
        return;
    // Several events arrive for one write (temporary file, rename): synchronise once for all of them.
    mSyncScheduled = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            mSyncScheduled = false;
            synchronize();
        },
        Qt::QueuedConnection);
}

// The meta-object code goes with this file, not with the layer's other classes: a program then links only
// the libraries of the classes it uses.
#include "moc_UserDefaults.cpp"
