// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QVariantMap>

class SUAppcastItem;
class SUUpdater;

// What the application tells the updater, and hears from it. Every call comes on the main thread. The updater
// does not own its delegate.
class SUUpdaterDelegate
{
public:
    virtual ~SUUpdaterDelegate() = default;

    // The profile entries sent with a feed request, each a dictionary of "key", "displayKey", "value" and
    // "displayValue"; the request carries them as key=value query parameters. sendingSystemProfile says
    // whether the updater adds its own system profile.
    virtual QList<QVariantMap> feedParametersForUpdater(SUUpdater *updater, bool sendingSystemProfile)
    {
        Q_UNUSED(updater);
        Q_UNUSED(sendingSystemProfile);
        return {};
    }

    // The verified, unpacked update is about to replace the installed bundle.
    virtual void updaterWillInstallUpdate(SUUpdater *updater, const SUAppcastItem &item)
    {
        Q_UNUSED(updater);
        Q_UNUSED(item);
    }

    // The new bundle is in place; the application is about to be started again from it and this process to
    // end.
    virtual void updaterWillRelaunchApplication(SUUpdater *updater) { Q_UNUSED(updater); }

protected:
    SUUpdaterDelegate() = default;
    SUUpdaterDelegate(const SUUpdaterDelegate &) = default;
    SUUpdaterDelegate &operator=(const SUUpdaterDelegate &) = default;
};
