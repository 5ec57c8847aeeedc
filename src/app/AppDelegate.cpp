// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The delegate's lifecycle: start-up, shut-down, observers, the preference change handler, new screenshots
// and closing windows.

#include "app/AppDelegate.h"

#include "app/AppEventHandler.h"
#include "app/CorvexWindowController.h"
#include "app/RenamingWindowPreparation.h"
#include "app/UpdateUserDriver.h"
#include "app/UserConsentPanelController.h"
#include "core/AppUserDefaults.h"
#include "core/DropboxCheck.h"
#include "core/FactoryDefaults.h"
#include "core/LoginItems.h"
#include "core/SUUpdater.h"
#include "core/ScreenshotInfo.h"
#include "core/UserDefaults.h"
#include "foundation/Notifications.h"
#include "foundation/PreferenceKeys.h"
#include "logging/ClientProcessLogger.h"
#include "logging/DDLog.h"
#include "logging/Log.h"
#include "platform/DistributedNotificationCenter.h"
#include "utilities/PFMoveApplication.h"
#include "utilities/PFMoveApplicationEnvironment.h"
#include "widgets/LogWindowController.h"

#include <QApplication>
#include <QCloseEvent>
#include <QThread>
#include <QTimer>
#include <QWidget>

namespace {

AppDelegate *sSharedDelegate = nullptr;

bool isOrdinaryWindow(const QWidget *widget)
{
    const Qt::WindowType type = widget->windowType();
    return widget->isWindow() && type != Qt::Popup && type != Qt::ToolTip && type != Qt::SplashScreen &&
           type != Qt::Desktop;
}

} // namespace

AppDelegate::AppDelegate(QObject *parent) : QObject(parent)
{
    initialize();
    sSharedDelegate = this;
    QApplication::setQuitOnLastWindowClosed(false);
    mMenus = new ApplicationMenus(this);
    createActions();
    qApp->installEventFilter(this);
}

AppDelegate::~AppDelegate()
{
    qApp->removeEventFilter(this);
    if (mObserving)
        removeNotificationObservers();
    if (mDropboxThread) {
        mDropboxThread->wait();
        delete mDropboxThread;
    }
    qDeleteAll(mWindowControllers);
    mWindowControllers.clear();
    delete mLogWindowController;
    mLogWindowController = nullptr;
    if (sSharedDelegate == this)
        sSharedDelegate = nullptr;
}

AppDelegate *AppDelegate::sharedDelegate()
{
    return sSharedDelegate;
}

void AppDelegate::initialize()
{
    static const bool once = [] {
        UserDefaults::standardUserDefaults().registerDefaults(factoryDefaults());
        return true;
    }();
    Q_UNUSED(once)
}

void AppDelegate::applicationWillFinishLaunching()
{
    if (!mEventHandler) {
        mEventHandler = new AppEventHandler(this, this);
        mEventHandler->registerObject();
    }
    DDLog::addLogger(ClientProcessLogger::sharedInstance());
    keepScreenshotsUntilLaunched();
}

void AppDelegate::keepScreenshotsUntilLaunched()
{
    if (!mObserving && !mLaunchScreenshotObserver)
        mLaunchScreenshotObserver = DistributedNotificationCenter::defaultCenter().addObserver(
            CorvexScreenshotMatchedNotification, this, [this](const QString &, const QVariantMap &userInfo) {
                mScreenshotsDuringLaunch.append(userInfo);
            });
}

void AppDelegate::applicationDidFinishLaunching()
{
    DDLogInfo(
        QStringLiteral("Corvex %1 has finished launching on %2").arg(appVersionString(), osVersionString()));
    PFMoveApplicationEnvironment::setDelegateActions([this] { quitCorvexAgent(); },
                                                     [this] { quitOtherCorvexs(); });
    PFMoveToApplicationsFolderIfNecessary();
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (defaults.boolForKey(kFirstRunVers2Key))
        showWelcomeWindow();
    if (defaults.boolForKey(kHasAskedToStartAtLogInKey)) {
        // An agent entry the user switched off in the desktop's settings is their "no".
        if (defaults.boolForKey(kStartAtLogInKey) && LoginItems().agentSwitchedOffByDesktop())
            defaults.setBool(false, kStartAtLogInKey);
        else if (defaults.boolForKey(kStartAtLogInKey))
            ensureAgentIsInLoginItems();
    } else {
        runStartAtLogInQuestionAndApply();
    }
    addNotificationObservers();
    processCommandLineArguments();
    launchCorvexAgent();
    SUUpdater::sharedUpdater().setDelegate(this);
    // On the second launch, once: may Corvex check for updates on its own (the agent runs the checks).
    if (UpdateUserDriver::askForPermissionIfNeeded(AppUserDefaults::sharedCorvexDefaults()))
        observeValueForKeyPath(kCheckForUpdatesKey);
    mDropboxThread = QThread::create([] { DropboxCheck().checkDropbox(); });
    mDropboxThread->start();
}

void AppDelegate::applicationWillTerminate()
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (!defaults.boolForKey(kHasAskedToStartAtLogInKey))
        runStartAtLogInQuestionAndApply();
    if (!defaults.boolForKey(kAllowAgentToRunInBackgroundKey))
        quitCorvexAgent();
    removeNotificationObservers();
    defaults.setBool(false, kFirstRunVers2Key);
    defaults.synchronize();
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows)
{
    Q_UNUSED(hasVisibleWindows)
    return true;
}

bool AppDelegate::applicationShouldTerminateAfterLastWindowClosed()
{
    if (!UserDefaults::standardUserDefaults().boolForKey(kQuitAppAfterLastWindowClosedKey))
        return false;
    if (!mShouldTerminateAfterLastWindowClosed)
        DDLogInfo(QStringLiteral("Not quitting because the last window closed was not a renaming window."));
    return mShouldTerminateAfterLastWindowClosed;
}

void AppDelegate::setStartAtLogInQuestion(std::function<void()> question)
{
    mStartAtLogInQuestion = std::move(question);
}

void AppDelegate::askToStartAtLogIn()
{
    if (mStartAtLogInQuestion) {
        mStartAtLogInQuestion();
        return;
    }
    UserConsentPanelController panel;
    panel.runModal();
}

void AppDelegate::runStartAtLogInQuestionAndApply()
{
    askToStartAtLogIn();
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (defaults.boolForKey(kStartAtLogInKey))
        addAgentToLoginItems();
    else
        removeAgentFromLoginItems();
    defaults.setBool(true, kHasAskedToStartAtLogInKey);
}

void AppDelegate::addNotificationObservers()
{
    if (mObserving)
        return;
    mObserving = true;
    mScreenshotObserver = DistributedNotificationCenter::defaultCenter().addObserver(
        CorvexScreenshotMatchedNotification, this,
        [this](const QString &, const QVariantMap &userInfo) { screenshotTaken(userInfo); });
    if (mLaunchScreenshotObserver) {
        DistributedNotificationCenter::defaultCenter().removeObserver(mLaunchScreenshotObserver);
        mLaunchScreenshotObserver = 0;
        const QList<QVariantMap> waiting = std::exchange(mScreenshotsDuringLaunch, {});
        for (const QVariantMap &userInfo : waiting)
            screenshotTaken(userInfo);
    }
    // The standard preferences announce every changed key; the handler looks only at the observed ones.
    mObserverConnections.append(connect(&UserDefaults::standardUserDefaults(), &UserDefaults::valueChanged,
                                        this, [this](const QString &key) {
                                            if (kObservedPreferenceKeys.contains(key))
                                                observeValueForKeyPath(key);
                                        }));
}

void AppDelegate::removeNotificationObservers()
{
    if (!mObserving)
        return;
    mObserving = false;
    DistributedNotificationCenter::defaultCenter().removeObserver(mScreenshotObserver);
    mScreenshotObserver = 0;
    for (const QMetaObject::Connection &connection : std::as_const(mObserverConnections))
        disconnect(connection);
    mObserverConnections.clear();
}

void AppDelegate::observeValueForKeyPath(const QString &keyPath)
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    if (keyPath == kStartAtLogInKey) {
        if (defaults.boolForKey(keyPath))
            addAgentToLoginItems();
        else
            removeAgentFromLoginItems();
        return;
    }
    if (keyPath == kShowMenuIconKey) {
        center.postNotificationName(defaults.boolForKey(keyPath) ? CorvexShowStatusMenuNotification
                                                                 : CorvexHideStatusMenuNotification);
    } else if (!kObservedPreferenceKeys.contains(keyPath)) {
        return;
    }
    // The new values must be on disk before the agent is told to look at them.
    defaults.synchronize();
    center.postNotificationName(CorvexDefaultsChangedNotification);
}

void AppDelegate::screenshotTaken(const QVariantMap &userInfo)
{
    // A screenshot that comes while the application starts waits for the set-up of its windows.
    if (RenamingWindowPreparation::callWhenDone(this, [this, userInfo] { screenshotTaken(userInfo); }))
        return;
    const ScreenshotInfo info = ScreenshotInfo::initWithNotificationDictionary(userInfo);
    auto *controller = new CorvexWindowController(info, mMenus);
    connect(controller, &CorvexWindowController::favoritesEditingRequested, this,
            [this] { showPreferencesPane(QStringLiteral("General")); });
    mWindowControllers.insert(controller);
    QWidget *window = controller->window();
    CorvexWindowController *main = mainWindowController();
    if (main && main->window()->isVisible()) {
        // Someone busy renaming is not interrupted: the new window waits behind.
        window->setAttribute(Qt::WA_ShowWithoutActivating, true);
        window->show();
        window->setAttribute(Qt::WA_ShowWithoutActivating, false);
        main->window()->raise();
        main->window()->activateWindow();
    } else {
        window->show();
        window->raise();
        window->activateWindow();
    }
    Q_EMIT windowControllerAdded(controller);
}

void AppDelegate::windowWillClose(QWidget *window)
{
    CorvexWindowController *controller = CorvexWindowController::controllerForWindow(window);
    if (controller && mWindowControllers.remove(controller))
        controller->deleteLater();
    mShouldTerminateAfterLastWindowClosed =
        controller != nullptr || (mBareLaunchWindow && window == mBareLaunchWindow.data());
    if (mLogWindowController && mLogWindowController->windowIfLoaded() == window) {
        mLogWindowController->deleteLater();
        mLogWindowController = nullptr;
    }
}

QList<CorvexWindowController *> AppDelegate::windowControllers() const
{
    return mWindowControllers.values();
}

CorvexWindowController *AppDelegate::mainWindowController() const
{
    CorvexWindowController *controller =
        CorvexWindowController::controllerForWindow(QApplication::activeWindow());
    return mWindowControllers.contains(controller) ? controller : nullptr;
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Close && mObserving) {
        auto *widget = qobject_cast<QWidget *>(watched);
        if (widget && isOrdinaryWindow(widget)) {
            // The window closes once the close event has been accepted; look after it has been delivered.
            const QPointer<QWidget> window(widget);
            QTimer::singleShot(0, this, [this, window] { handleClosedWindow(window); });
        }
    }
    return QObject::eventFilter(watched, event);
}

void AppDelegate::handleClosedWindow(const QPointer<QWidget> &window)
{
    if (window && window->isVisible())
        return; // the close was refused
    if (window)
        windowWillClose(window);
    checkLastWindowClosed();
}

void AppDelegate::checkLastWindowClosed()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget *widget : windows) {
        if (widget->isVisible() && isOrdinaryWindow(widget))
            return;
    }
    if (applicationShouldTerminateAfterLastWindowClosed())
        quit();
}
