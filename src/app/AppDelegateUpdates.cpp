// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The delegate's side of the updater: starting a check the user asked for, the profile entries of a feed
// request, and stopping the agent before the updated application is started.

#include "app/AppDelegate.h"

#include "app/UpdateUserDriver.h"
#include "core/FeedbackReport.h"
#include "core/SUUpdater.h"

void AppDelegate::checkForUpdates()
{
    SUUpdater::sharedUpdater().setDelegate(this);
    UpdateUserDriver::sharedDriver().checkForUpdates();
}

void AppDelegate::checkForUpdatesAction()
{
    checkForUpdates();
}

QList<QVariantMap> AppDelegate::feedParametersForUpdater(SUUpdater *updater, bool sendingSystemProfile)
{
    Q_UNUSED(updater)
    return FeedbackReport::feedParameters(sendingSystemProfile);
}

void AppDelegate::updaterWillInstallUpdate(SUUpdater *updater, const SUAppcastItem &item)
{
    Q_UNUSED(updater)
    Q_UNUSED(item)
}

void AppDelegate::updaterWillRelaunchApplication(SUUpdater *updater)
{
    Q_UNUSED(updater)
    quitCorvexAgent();
    // The new copy starts once this one has gone: quit as soon as the updater has handed over.
    QMetaObject::invokeMethod(this, &AppDelegate::quit, Qt::QueuedConnection);
}
