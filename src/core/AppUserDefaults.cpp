// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/AppUserDefaults.h"

#include "platform/DesktopScreenshotSettings.h"
#include "platform/PreferenceStore.h"

AppUserDefaults::AppUserDefaults(const QString &bundleIdentifier)
    : AppUserDefaults(bundleIdentifier, PreferenceStore::shared())
{
}

AppUserDefaults::AppUserDefaults(const QString &bundleIdentifier, PreferenceStore &store)
    : mBundleIdentifier(bundleIdentifier), mStore(store)
{
}

AppUserDefaults::~AppUserDefaults() = default;

AppUserDefaults &AppUserDefaults::sharedCorvexDefaults()
{
    static AppUserDefaults *defaults = new AppUserDefaults(kCorvexDomain);
    return *defaults;
}

AppUserDefaults &AppUserDefaults::sharedScreencaptureDefaults()
{
    static AppUserDefaults *defaults = [] {
        auto *created = new AppUserDefaults(kScreencaptureDomain);
        created->mFallback = [](const QString &key) {
            return DesktopScreenshotSettings::current().valueForKey(key);
        };
        return created;
    }();
    return *defaults;
}

std::unique_ptr<AppUserDefaults>
AppUserDefaults::userDefaultsWithBundleIdentifier(const QString &bundleIdentifier)
{
    return std::make_unique<AppUserDefaults>(bundleIdentifier);
}

QVariant AppUserDefaults::objectForKey(const QString &key) const
{
    const QVariant stored = mStore.value(mBundleIdentifier, key);
    if (stored.isValid())
        return stored;
    {
        QMutexLocker locker(&mMutex);
        if (mRegistrationDictionary) {
            const auto it = mRegistrationDictionary->constFind(key);
            if (it != mRegistrationDictionary->cend())
                return it.value();
        }
    }
    return mFallback ? mFallback(key) : QVariant();
}

void AppUserDefaults::setObject(const QVariant &value, const QString &key)
{
    if (mStore.setValue(mBundleIdentifier, key, value))
        mStore.synchronize(mBundleIdentifier);
}

QByteArray AppUserDefaults::screenshotBookmarkDataForKey(const QString &key) const
{
    const std::optional<QVariantMap> bookmarks = dictionaryForKey(kScreenshotBookmarksKey);
    if (!bookmarks)
        return QByteArray();
    const QVariant data = bookmarks->value(key);
    if (data.metaType().id() != QMetaType::QByteArray)
        return QByteArray();
    QByteArray bytes = data.toByteArray();
    return bytes.isNull() ? QByteArray("", 0) : bytes;
}

void AppUserDefaults::setScreenshotBookmarkData(const QByteArray &data, const QString &key)
{
    // Start from what other processes stored last, so that their bookmarks are kept.
    mStore.synchronize(mBundleIdentifier);
    QVariantMap bookmarks = dictionaryForKey(kScreenshotBookmarksKey).value_or(QVariantMap());
    if (data.isNull())
        bookmarks.remove(key);
    else
        bookmarks.insert(key, data);
    setObject(bookmarks, kScreenshotBookmarksKey);
}

bool AppUserDefaults::synchronize()
{
    return mStore.synchronize(mBundleIdentifier);
}

void AppUserDefaults::registerDefaults(const QVariantMap &dictionary)
{
    QMutexLocker locker(&mMutex);
    mRegistrationDictionary = dictionary;
}
