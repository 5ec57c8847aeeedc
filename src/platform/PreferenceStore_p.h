// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/PreferenceFile_p.h"

#include <QHash>
#include <QMutex>
#include <QVariantMap>

// This process's view of one domain: what the file held when last read or written, and the changes made
// here since (an invalid value: the key was removed).
struct PreferenceDomainCache
{
    explicit PreferenceDomainCache(const QString &path) : file(path) {}

    QVariant value(const QString &key) const
    {
        const auto it = pending.constFind(key);
        if (it != pending.cend())
            return it.value();
        return disk.value(key);
    }

    QVariantMap view() const
    {
        QVariantMap result = disk;
        for (auto it = pending.cbegin(); it != pending.cend(); ++it) {
            if (it.value().isValid())
                result.insert(it.key(), it.value());
            else
                result.remove(it.key());
        }
        return result;
    }

    QMutex mutex;
    PreferenceFile file;
    bool loaded = false;
    QVariantMap disk;
    QVariantHash pending;
};
