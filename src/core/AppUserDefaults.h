// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/TypedPreferences.h"
#include "foundation/PreferenceKeys.h"

#include <QMutex>
#include <QString>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <optional>

class PreferenceStore;

// Reads and writes one named preference domain directly, so that the same code reads the shared domain in
// the application and in the agent, and can read another program's domain. Every write synchronises at once.
// Thread-safe.
class AppUserDefaults : public TypedPreferences
{
public:
    // The domain every read and write goes to; no registration dictionary.
    explicit AppUserDefaults(const QString &bundleIdentifier);
    // The same over another store (a test's own folder).
    AppUserDefaults(const QString &bundleIdentifier, PreferenceStore &store);
    ~AppUserDefaults() override;

    // "com.ostrel.Corvex", shared by the whole process; never given a registration dictionary, so that a
    // key that was never written reads as absent, 0 or false.
    static AppUserDefaults &sharedCorvexDefaults();
    // "com.apple.screencapture", shared by the whole process. When the domain holds no "location", "type" or
    // "name", the desktop screenshot tool's values stand in.
    static AppUserDefaults &sharedScreencaptureDefaults();
    // A new instance for any domain, owned by the caller.
    static std::unique_ptr<AppUserDefaults> userDefaultsWithBundleIdentifier(const QString &bundleIdentifier);

    const QString &bundleIdentifier() const { return mBundleIdentifier; }

    // The stored value; else the registration dictionary's; else (screenshot domain) the desktop's; else
    // an invalid QVariant.
    QVariant objectForKey(const QString &key) const override;

    // Stores the value (an invalid QVariant removes the key) and synchronises, so the write is on disk and
    // visible to other processes when the call returns.
    void setObject(const QVariant &value, const QString &key) override;

    using TypedPreferences::removeObjectForKey;

    // The bookmark data stored under the key of the "screenshotBookmarks" dictionary; a null QByteArray when
    // that dictionary is missing, is no dictionary, or holds no data under the key.
    QByteArray screenshotBookmarkDataForKey(const QString &key) const;

    // Sets (null data: removes) the key of the "screenshotBookmarks" dictionary; a missing or non-dictionary
    // value is replaced by a fresh dictionary. Synchronises.
    void setScreenshotBookmarkData(const QByteArray &data, const QString &key);

    // Synchronises the domain with the disk and other processes; false when that failed.
    bool synchronize();

    // Replaces the registration dictionary with a copy of the argument.
    void registerDefaults(const QVariantMap &dictionary);

private:
    QString mBundleIdentifier;
    std::optional<QVariantMap> mRegistrationDictionary;
    std::function<QVariant(const QString &key)> mFallback;
    PreferenceStore &mStore;
    mutable QMutex mMutex;
};
