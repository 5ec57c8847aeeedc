// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/UpdateScheduler.h"

#include "core/SUAppcastItem.h"
#include "core/SUUpdater.h"
#include "core/TypedPreferences.h"
#include "foundation/PreferenceKeys.h"
#include "logging/Log.h"
#include "platform/Bundle.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QFileInfo>
#include <QProcess>
#include <algorithm>
#include <limits>

namespace scheduler {

const QString kNotificationsService = QStringLiteral("org.freedesktop.Notifications");
const QString kNotificationsPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kNotificationsInterface = QStringLiteral("org.freedesktop.Notifications");
const QString kShowAction = QStringLiteral("default");

// The first check after the agent starts waits this long, so that it does not slow the login.
constexpr qint64 kStartDelaySeconds = 60;

} // namespace scheduler

UpdateScheduler::UpdateScheduler(SUUpdater &updater, TypedPreferences &preferences, QObject *parent)
    : QObject(parent), mUpdater(updater), mPreferences(preferences)
{
    mTimer.setSingleShot(true);
    mTimer.setTimerType(Qt::VeryCoarseTimer);
    connect(&mTimer, &QTimer::timeout, this, &UpdateScheduler::timerFired);
    connect(&mUpdater, &SUUpdater::updateFound, this, &UpdateScheduler::updateFound);
    auto ended = [this] {
        if (!mChecking)
            return;
        mChecking = false;
        reschedule();
        Q_EMIT checkFinished();
    };
    connect(&mUpdater, &SUUpdater::noUpdateFound, this, ended);
    connect(&mUpdater, &SUUpdater::updateFound, this, ended);
    connect(&mUpdater, &SUUpdater::cancelled, this, ended);
    connect(&mUpdater, &SUUpdater::failed, this, [this, ended](const CorvexError &error) {
        if (mChecking)
            DDLogWarn(QStringLiteral("Automatic update check failed: %1").arg(error.localizedDescription()));
        ended();
    });
    QDBusConnection::sessionBus().connect(scheduler::kNotificationsService, scheduler::kNotificationsPath,
                                          scheduler::kNotificationsInterface, QStringLiteral("ActionInvoked"),
                                          this, SLOT(notificationActionInvoked(uint, QString)));
    mOpenUpdateWindow = [] {
        const Bundle application = applicationBundle();
        if (!application.isValid() ||
            !QProcess::startDetached(application.executablePath(), {QStringLiteral("qzcv://checkForUpdate")}))
            DDLogError(
                QStringLiteral("Could not open the update window of %1").arg(application.bundlePath()));
    };
}

UpdateScheduler::~UpdateScheduler() = default;

Bundle UpdateScheduler::applicationBundle()
{
    const Bundle agent = Bundle::mainBundle();
    if (!agent.isValid())
        return {};
    return Bundle::bundleContainingPath(QFileInfo(agent.bundlePath()).absolutePath());
}

bool UpdateScheduler::checksEnabled() const
{
    return mPreferences.boolForKey(kCheckForUpdatesKey) &&
           mPreferences.boolForKey(kSUEnableAutomaticChecksKey);
}

void UpdateScheduler::reschedule()
{
    if (!checksEnabled()) {
        mTimer.stop();
        return;
    }
    if (mChecking)
        return;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QDateTime last = mUpdater.lastUpdateCheckDate();
    QDateTime due = last.isValid() ? last.addSecs(mUpdater.updateCheckInterval()) : now;
    // A clock set back far makes the last check lie in the future: count from now.
    if (last.isValid() && last > now)
        due = now.addSecs(mUpdater.updateCheckInterval());
    // Only the first check after the agent started waits.
    const QDateTime earliest = mNextCheck.isValid() ? now : now.addSecs(scheduler::kStartDelaySeconds);
    mNextCheck = std::max(due, earliest);
    const qint64 delay = std::clamp<qint64>(now.msecsTo(mNextCheck), 0, std::numeric_limits<int>::max());
    mTimer.start(int(delay));
}

void UpdateScheduler::timerFired()
{
    if (!checksEnabled())
        return;
    if (mUpdater.phase() != SUUpdater::Phase::Idle) {
        // The updater is busy with a check of the application's; the next one is counted from it.
        mTimer.start(60 * 1000);
        return;
    }
    mChecking = true;
    mUpdater.checkForUpdatesInBackground();
}

void UpdateScheduler::updateFound(const SUAppcastItem &item)
{
    if (!mChecking || mUpdater.isUserInitiated())
        return;
    if (item.versionString == mNotifiedVersion)
        return;
    if (postNotification(item))
        mNotifiedVersion = item.versionString;
}

bool UpdateScheduler::postNotification(const SUAppcastItem &item)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(scheduler::kNotificationsService, scheduler::kNotificationsPath,
                                       scheduler::kNotificationsInterface, QStringLiteral("Notify"));
    const QString current = mUpdater.hostBundle().shortVersionString();
    call << QStringLiteral("Corvex") << mNotificationId << QStringLiteral("com.ostrel.Corvex")
         << tr("A new version of Corvex is available")
         << tr("Corvex %1 is now available—you have %2.").arg(item.displayVersionString(), current)
         << QStringList{scheduler::kShowAction, tr("Show Update")}
         << QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("com.ostrel.Corvex")},
                        {QStringLiteral("category"), QStringLiteral("x-corvex.update")}}
         << int(-1);
    const QDBusReply<uint> reply = QDBusConnection::sessionBus().call(call, QDBus::Block, 5000);
    if (!reply.isValid()) {
        DDLogWarn(QStringLiteral("Corvex %1 is available, but no notification could be shown: %2")
                      .arg(item.displayVersionString(), reply.error().message()));
        return false;
    }
    mNotificationId = reply.value();
    DDLogInfo(
        QStringLiteral("Corvex %1 is available; the user was notified").arg(item.displayVersionString()));
    return true;
}

void UpdateScheduler::notificationActionInvoked(uint id, const QString &action)
{
    if (id != mNotificationId || mNotificationId == 0)
        return;
    if (action == scheduler::kShowAction)
        openUpdateWindow();
}

void UpdateScheduler::openUpdateWindow()
{
    if (mOpenUpdateWindow)
        mOpenUpdateWindow();
}
