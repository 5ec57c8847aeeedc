// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/CorvexAgent.h"
#include "foundation/PreferenceKeys.h"

#include "agent/AgentLogFileManager.h"
#include "agent/AgentStatusMenu.h"
#include "agent/AppLogRelay.h"
#include "agent/ApplicationHandOff.h"
#include "agent/ScreenshotFolderWatcher.h"
#include "agent/ScreenshotLocation.h"
#include "agent/ScreenshotQueue.h"
#include "agent/UpdateScheduler.h"
#include "core/AppUserDefaults.h"
#include "core/FactoryDefaults.h"
#include "core/SUUpdater.h"
#include "foundation/Notifications.h"
#include "foundation/Version.h"
#include "logging/DDFileLogger.h"
#include "logging/DDLog.h"
#include "logging/Log.h"
#include "platform/DistributedNotificationCenter.h"
#include "widgets/LogWindowController.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QWidget>

namespace {

// A preference of the shared domain as stored, its factory value when it was never stored.
bool storedOrFactoryBool(const QString &key)
{
    const QVariant stored = AppUserDefaults::sharedCorvexDefaults().objectForKey(key);
    if (stored.isValid())
        return AppUserDefaults::sharedCorvexDefaults().boolForKey(key);
    return factoryDefaults().value(key).toBool();
}

} // namespace

CorvexAgent::CorvexAgent(QObject *parent) : QObject(parent) {}

CorvexAgent::~CorvexAgent()
{
    for (const int observer : std::as_const(mObservers))
        DistributedNotificationCenter::defaultCenter().removeObserver(observer);
    delete mLogWindowController.data();
    // Before the updater it refers to.
    delete mUpdateScheduler;
    if (mQueue)
        mQueue->finish();
    if (mFileLogger) {
        DDLog::flushLog();
        DDLog::removeLogger(mFileLogger);
        DDLog::flushLog();
    }
}

bool CorvexAgent::claimBusName(bool *busAvailable)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (busAvailable)
        *busAvailable = bus.isConnected() && bus.interface();
    if (!bus.isConnected() || !bus.interface())
        return true;
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(kCorvexAgentDomain, QDBusConnectionInterface::DontQueueService,
                                         QDBusConnectionInterface::DontAllowReplacement);
    return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

void CorvexAgent::start()
{
    mFileLogger = std::make_shared<DDFileLogger>(std::make_shared<AgentLogFileManager>());
    DDLog::addLogger(mFileLogger);
    DDLogInfo(QStringLiteral("CorvexAgent %1 has started").arg(QStringLiteral(CORVEX_MARKETING_VERSION)));

    mAppLogRelay = new AppLogRelay(this);
    mAppLogRelay->start();

    mHandOff = std::make_unique<ApplicationHandOff>();
    mQueue = std::make_unique<ScreenshotQueue>(mHandOff.get());

    mWatcher = new ScreenshotFolderWatcher(this);
    connect(mWatcher, &ScreenshotFolderWatcher::fileCompleted, this, &CorvexAgent::fileCompleted);
    mLocation = new ScreenshotLocation(this);
    connect(mLocation, &ScreenshotLocation::changed, this, &CorvexAgent::screenshotFolderChanged);
    mLocation->start();
    screenshotFolderChanged(mLocation->matcher());

    DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    mObservers << center.addObserver(CorvexDefaultsChangedNotification, this,
                                     [this](const QString &, const QVariantMap &) { defaultsChanged(); });
    mObservers << center.addObserver(
        CorvexShowStatusMenuNotification, this,
        [this](const QString &, const QVariantMap &) { applyMenuIconPreferences(true); });
    mObservers << center.addObserver(
        CorvexHideStatusMenuNotification, this,
        [this](const QString &, const QVariantMap &) { applyMenuIconPreferences(false); });

    mStatusMenu = new AgentStatusMenu(this);
    connect(mStatusMenu, &AgentStatusMenu::preferencesRequested, this, &CorvexAgent::openPreferences);
    connect(mStatusMenu, &AgentStatusMenu::logWindowRequested, this, &CorvexAgent::showLogWindow);
    connect(mStatusMenu, &AgentStatusMenu::pauseToggled, this, [this](bool paused) {
        mQueue->setPaused(paused);
        DDLogInfo(paused ? QStringLiteral("Automatic steps paused")
                         : QStringLiteral("Automatic steps resumed"));
    });
    connect(mStatusMenu, &AgentStatusMenu::quitRequested, this, &CorvexAgent::terminate);
    AppUserDefaults::sharedCorvexDefaults().synchronize();
    applyMenuIconPreferences(storedOrFactoryBool(kShowMenuIconKey));

    mUpdater =
        new SUUpdater(UpdateScheduler::applicationBundle(), AppUserDefaults::sharedCorvexDefaults(), this);
    mUpdateScheduler = new UpdateScheduler(*mUpdater, AppUserDefaults::sharedCorvexDefaults(), this);
    mUpdateScheduler->reschedule();
}

void CorvexAgent::screenshotFolderChanged(const ScreenshotMatcher &matcher)
{
    if (!matcher.folder().isEmpty())
        mWatcher->setFolder(matcher.folder());
}

void CorvexAgent::fileCompleted(const QString &path)
{
    if (mTerminating || !mLocation->matcher().matches(path))
        return;
    mQueue->enqueue(path);
}

void CorvexAgent::defaultsChanged()
{
    AppUserDefaults::sharedCorvexDefaults().synchronize();
    mLocation->reload();
    applyMenuIconPreferences(storedOrFactoryBool(kShowMenuIconKey));
    if (mUpdateScheduler)
        mUpdateScheduler->reschedule();
}

void CorvexAgent::applyMenuIconPreferences(bool show)
{
    if (!mStatusMenu)
        return;
    mStatusMenu->setGrayscale(storedOrFactoryBool(kGrayscaleMenuIconKey));
    mStatusMenu->setVisible(show);
}

void CorvexAgent::openPreferences()
{
    mHandOff->launchApplication({QStringLiteral("qzcv://prefs")});
}

void CorvexAgent::showLogWindow()
{
    if (!mLogWindowController) {
        mLogWindowController = new LogWindowController(this);
        connect(mLogWindowController, &LogWindowController::windowWillClose, mLogWindowController,
                &QObject::deleteLater);
    }
    mLogWindowController->showWindow();
}

void CorvexAgent::terminate()
{
    if (mTerminating)
        return;
    mTerminating = true;
    if (mWatcher)
        mWatcher->stop();
    if (mQueue)
        mQueue->finish();
    // Last, so that the screenshot in hand when the end came is logged before it.
    DDLogInfo(QStringLiteral("CorvexAgent is quitting"));
    DDLog::flushLog();
    QCoreApplication::quit();
}
