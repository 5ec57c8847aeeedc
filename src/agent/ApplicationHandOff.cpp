// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/ApplicationHandOff.h"

#include "core/AppUserDefaults.h"
#include "core/ScreenshotInfo.h"
#include "foundation/Notifications.h"
#include "logging/Log.h"
#include "platform/Bundle.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/RunningApplications.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QThread>
#include <QUuid>
#include <csignal>
#include <sys/types.h>

namespace {

bool processIsAlive(qint64 pid)
{
    return pid > 0 && ::kill(pid_t(pid), 0) == 0;
}

} // namespace

ApplicationHandOff::ApplicationHandOff() = default;

QString ApplicationHandOff::applicationBundlePath()
{
    // The agent is Corvex.app/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent.
    const Bundle agent = Bundle::bundleContainingPath(QCoreApplication::applicationFilePath());
    if (!agent.isValid())
        return QString();
    const QString helpers = QFileInfo(agent.bundlePath()).absolutePath();
    const QString outer = Bundle::bundlePathContainingPath(helpers);
    return outer;
}

QString ApplicationHandOff::applicationExecutable()
{
    const QString bundlePath = applicationBundlePath();
    if (bundlePath.isEmpty())
        return QString();
    const Bundle bundle(bundlePath);
    return bundle.isValid() ? bundle.executablePath() : bundlePath + QStringLiteral("/Contents/MacOS/Corvex");
}

bool ApplicationHandOff::applicationOwnsBusName()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface())
        return false;
    return bus.interface()->isServiceRegistered(kCorvexDomain).value();
}

bool ApplicationHandOff::isApplicationRunning() const
{
    if (applicationOwnsBusName())
        return true;
    return !RunningApplications::runningApplicationsWithBundleIdentifier(kCorvexDomain).isEmpty();
}

bool ApplicationHandOff::launchApplication(const QStringList &arguments, qint64 *pid)
{
    const QString program = applicationExecutable();
    if (program.isEmpty() || !QFileInfo(program).isExecutable()) {
        DDLogError(QStringLiteral("Could not start Corvex: no application at %1")
                       .arg(program.isEmpty() ? QStringLiteral("(no bundle)") : program));
        return false;
    }
    qint64 started = 0;
    if (!QProcess::startDetached(program, arguments, QDir::homePath(), &started)) {
        DDLogError(QStringLiteral("Could not start Corvex at %1").arg(program));
        return false;
    }
    if (pid)
        *pid = started;
    return true;
}

bool ApplicationHandOff::waitForLaunchedApplication()
{
    // Only an application started here a moment ago is worth waiting for.
    if (!processIsAlive(mLaunchedPid) || std::chrono::steady_clock::now() - mLaunchedAt > mLaunchWait)
        return false;
    const auto deadline = mLaunchedAt + mLaunchWait;
    while (std::chrono::steady_clock::now() < deadline && processIsAlive(mLaunchedPid)) {
        if (applicationOwnsBusName())
            return true;
        QThread::msleep(25);
    }
    return applicationOwnsBusName();
}

bool ApplicationHandOff::postScreenshot(const ScreenshotInfo &info)
{
    if (!DistributedNotificationCenter::defaultCenter().postNotificationName(
            CorvexScreenshotMatchedNotification, info.notificationDictionary()))
        return false;
    DDLogInfo(QStringLiteral("Handed %1 to Corvex").arg(info.filePath()));
    return true;
}

bool ApplicationHandOff::handOffScreenshot(const ScreenshotInfo &info)
{
    std::lock_guard locker(mMutex);
    if (applicationOwnsBusName() || waitForLaunchedApplication())
        return postScreenshot(info);
    if (isApplicationRunning())
        return postScreenshot(info);

    QStringList arguments{QStringLiteral("-filePath"), info.filePath(), QStringLiteral("-screenNum"),
                          QString::number(info.screenNumber())};
    QString bookmarkKey;
    if (info.bookmarkData() && !info.bookmarkData()->isEmpty()) {
        bookmarkKey = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
        AppUserDefaults::sharedCorvexDefaults().setScreenshotBookmarkData(*info.bookmarkData(), bookmarkKey);
        arguments << QStringLiteral("-bookmarkData") << bookmarkKey;
    }
    qint64 pid = 0;
    if (!launchApplication(arguments, &pid)) {
        if (!bookmarkKey.isEmpty())
            AppUserDefaults::sharedCorvexDefaults().setScreenshotBookmarkData(QByteArray(), bookmarkKey);
        return false;
    }
    mLaunchedPid = pid;
    mLaunchedAt = std::chrono::steady_clock::now();
    DDLogInfo(QStringLiteral("Started Corvex for %1").arg(info.filePath()));
    return true;
}
