// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "preferences/SS_PrefsController.h"

#include "core/UserDefaults.h"
#include "platform/Bundle.h"
#include "preferences/PreferencePaneBundle.h"
#include "preferences/SS_PreferencePaneProtocol.h"
#include "widgets/QZAlert.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QKeySequence>
#include <QMainWindow>
#include <QScreen>
#include <QToolBar>
#include <cstdio>

namespace {

const QString kDefaultBundleExtension = QStringLiteral("preferencePane");

QString mainBundleIdentifier()
{
    const QString identifier = Bundle::mainBundle().bundleIdentifier();
    return identifier.isEmpty() ? UserDefaults::standardDomain() : identifier;
}

QString mainBundleResourcePath()
{
    const Bundle bundle = Bundle::mainBundle();
    if (bundle.isValid())
        return bundle.resourcePath();
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Resources"));
}

void centerWindow(QWidget *window)
{
    const QScreen *screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return;
    const QRect available = screen->availableGeometry();
    QRect frame = window->geometry();
    frame.moveCenter(available.center());
    // A window taller or wider than the screen shows its top and left edges.
    window->move(qMax(frame.left(), available.left()), qMax(frame.top(), available.top()));
}

} // namespace

SS_PrefsController::SS_PrefsController(const QString &panesSearchPath, const QString &bundleExtension,
                                       QObject *parent)
    : QObject(parent),
      mBundleExtension(bundleExtension.isEmpty() ? kDefaultBundleExtension : bundleExtension),
      mSearchPath(panesSearchPath.isEmpty() ? mainBundleResourcePath() : panesSearchPath)
{
    const QStringList bundles = QDir(mSearchPath)
                                    .entryList({QStringLiteral("*.") + mBundleExtension},
                                               QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &bundle : bundles)
        activatePane(QDir(mSearchPath).filePath(bundle));
}

SS_PrefsController::~SS_PrefsController()
{
    releaseWindow();
    // The views this window showed go now, while the application is still there: left to their panes, they
    // would be destroyed when the bundles unload, after the application is gone. A pane makes a new view
    // when it is shown again.
    for (const QPointer<QWidget> &view : std::as_const(mShownViews))
        delete view.data();
}

SS_PrefsController &SS_PrefsController::sharedPrefsController()
{
    static QPointer<SS_PrefsController> shared;
    if (!shared) {
        shared = new SS_PrefsController(QString(), QString(), QCoreApplication::instance());
        // Released when the event loop ends, while widgets can still be destroyed.
        QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, shared.data(),
                         [] { delete shared.data(); });
        shared->setAlwaysShowsToolbar(true);
        shared->setPanesOrder(
            {QStringLiteral("General"), QStringLiteral("Advanced"), QStringLiteral("Updates")});
    }
    return *shared;
}

void SS_PrefsController::activatePane(const QString &path)
{
    QList<QObject *> panes;
    if (!PreferencePaneBundle::activatePane(path, &panes, [this](const QString &m) { debugLog(m); }))
        return;
    for (QObject *object : panes) {
        const QString name = qobject_cast<SS_PreferencePaneProtocol *>(object)->paneName();
        mPanesOrder.append(name);
        mPreferencePanes.insert(name, object);
    }
}

void SS_PrefsController::setPanesOrder(const QStringList &names)
{
    mPanesOrder.clear();
    for (const QString &name : names) {
        if (mPreferencePanes.contains(name))
            mPanesOrder.append(name);
        else
            debugLog(
                QStringLiteral("Did not add preference pane \"%1\" to the toolbar ordering array, because "
                               "that pane does not exist.")
                    .arg(name));
    }
}

QStringList SS_PrefsController::loadedPanes() const
{
    return mPreferencePanes.keys();
}

SS_PreferencePaneProtocol *SS_PrefsController::paneNamed(const QString &name) const
{
    return qobject_cast<SS_PreferencePaneProtocol *>(mPreferencePanes.value(name));
}

SS_PreferencePaneProtocol *SS_PrefsController::currentPane() const
{
    return mCurrentPaneName.isEmpty() ? nullptr : paneNamed(mCurrentPaneName);
}

QString SS_PrefsController::lastPaneDefaultsKey() const
{
    return mainBundleIdentifier() + QStringLiteral("_Preferences_Last_Pane_Defaults_Key");
}

QString SS_PrefsController::toolbarIdentifier() const
{
    return mainBundleIdentifier() + QStringLiteral("_Preferences_Toolbar_Identifier");
}

void SS_PrefsController::setCheckForUpdatesHandler(std::function<void()> handler)
{
    mCheckForUpdates = std::move(handler);
    if (mCheckForUpdatesAction)
        mCheckForUpdatesAction->setEnabled(bool(mCheckForUpdates));
}

void SS_PrefsController::debugLog(const QString &message) const
{
    if (!mDebug)
        return;
    std::fprintf(stderr, "[--- PREFERENCES DEBUG MESSAGE ---]\r%s\r\r", qUtf8Printable(message));
    std::fflush(stderr);
}

void SS_PrefsController::showPreferencesWindow()
{
    createPreferencesWindowAndDisplay(true);
}

void SS_PrefsController::createPreferencesWindow()
{
    createPreferencesWindowAndDisplay(true);
}

void SS_PrefsController::createPreferencesWindowAndDisplay(bool display)
{
    if (mPrefsWindow) {
        if (mAlwaysOpensCentered && !mPrefsWindow->isVisible())
            centerWindow(mPrefsWindow);
        mPrefsWindow->show();
        mPrefsWindow->raise();
        mPrefsWindow->activateWindow();
        return;
    }

    auto *window = new QMainWindow;
    window->setObjectName(QStringLiteral("PreferencesWindow"));
    window->setWindowTitle(tr("Preferences"));
    // The toolbar is fixed: no context menu that would hide it.
    window->setContextMenuPolicy(Qt::PreventContextMenu);
    window->resize(350, 200);
    window->installEventFilter(this);
    mPrefsWindow = window;

    auto *close = new QAction(tr("Close"), window);
    close->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)});
    connect(close, &QAction::triggered, window, &QWidget::close);
    auto *previous = new QAction(tr("Previous Pane"), window);
    previous->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageUp));
    connect(previous, &QAction::triggered, this, [this] { selectAdjacentPane(-1); });
    auto *next = new QAction(tr("Next Pane"), window);
    next->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageDown));
    connect(next, &QAction::triggered, this, [this] { selectAdjacentPane(1); });
    window->addActions({close, previous, next});
    mCheckForUpdatesAction = new QAction(tr("Check for Updates…"), window);
    mCheckForUpdatesAction->setObjectName(QStringLiteral("checkForUpdatesAction"));
    mCheckForUpdatesAction->setEnabled(bool(mCheckForUpdates));
    connect(mCheckForUpdatesAction, &QAction::triggered, this, [this] {
        if (mCheckForUpdates)
            mCheckForUpdates();
    });

    createPrefsToolbar();

    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    if (!mPanesOrder.isEmpty())
        defaults.registerDefaults({{lastPaneDefaultsKey(), mPanesOrder.first()}});

    // The window gets its size from the first pane, and is centred at that size.
    const auto showNewWindow = [this, display] {
        centerWindow(mPrefsWindow);
        if (display)
            mPrefsWindow->show();
    };
    const QString lastPane = defaults.stringForKey(lastPaneDefaultsKey());
    if (mPanesOrder.contains(lastPane) && loadPrefsPaneNamed(lastPane, false)) {
        showNewWindow();
        return;
    }
    debugLog(QStringLiteral(
                 "Could not load last-used preference pane \"%1\". Trying to load another pane instead.")
                 .arg(lastPane));
    for (const QString &name : std::as_const(mPanesOrder)) {
        if (name == lastPane)
            continue;
        if (loadPrefsPaneNamed(name, false)) {
            showNewWindow();
            return;
        }
    }

    debugLog(
        QStringLiteral("Could not load any valid preference panes. The preference pane bundle extension was "
                       "\"%1\" and the search path was: %2")
            .arg(mBundleExtension, mSearchPath));
    showAlertNoPanes();
    releaseWindow();
}

void SS_PrefsController::showAlertNoPanes()
{
    QString appName = Bundle::mainBundle().bundleName();
    if (appName.isEmpty())
        appName = QStringLiteral("Corvex");
    QZAlert alert;
    alert.setWindowTitle(tr("Preferences"));
    alert.setMessageText(tr("Preferences"));
    alert.setInformativeText(tr("Preferences are not available for %1.").arg(appName));
    alert.addButtonWithTitle(tr("OK"));
    alert.exec();
}

void SS_PrefsController::createPrefsToolbar()
{
    mPrefsToolbarItems.clear();
    mPrefsToolbar = new QToolBar(mPrefsWindow);
    mPrefsToolbar->setObjectName(toolbarIdentifier());
    mPrefsToolbar->setWindowTitle(tr("Preferences"));
    mPrefsToolbar->setMovable(false);
    mPrefsToolbar->setFloatable(false);
    mPrefsToolbar->setToolButtonStyle(mToolbarDisplayMode);
    mPrefsToolbar->setIconSize(mToolbarSizeMode == 2 ? QSize(24, 24) : QSize(32, 32));
    mToolbarGroup = new QActionGroup(mPrefsToolbar);
    mToolbarGroup->setExclusive(true);

    for (const QString &name : std::as_const(mPanesOrder)) {
        SS_PreferencePaneProtocol *pane = paneNamed(name);
        if (!pane) {
            debugLog(
                QStringLiteral("Could not create toolbar item for preference pane \"%1\", because that pane "
                               "does not exist.")
                    .arg(name));
            continue;
        }
        auto *item = new QAction(pane->paneIcon(), pane->displayLabel(), mToolbarGroup);
        item->setObjectName(name);
        item->setData(name);
        item->setCheckable(true);
        // Without a tooltip of its own the item shows its label, as every toolbar button does.
        item->setToolTip(pane->paneToolTip());
        connect(item, &QAction::triggered, this, [this, item] { prefsToolbarItemClicked(item); });
        mPrefsToolbar->addAction(item);
        mPrefsToolbarItems.insert(name, item);
    }

    if (mPrefsToolbarItems.size() > 1 || mAlwaysShowsToolbar) {
        mPrefsWindow->addToolBar(Qt::TopToolBarArea, mPrefsToolbar);
    } else {
        if (mPrefsToolbarItems.size() == 1)
            debugLog(QStringLiteral("Not showing toolbar in Preferences window because there is only one "
                                    "preference pane loaded. You can override this behaviour using "
                                    "-[setAlwaysShowsToolbar:YES]."));
        mPrefsToolbar->hide();
    }
}

void SS_PrefsController::prefsToolbarItemClicked(QAction *item)
{
    const QString name = item->data().toString();
    if (name != mCurrentPaneName)
        loadPrefsPaneNamed(name, true);
}

void SS_PrefsController::selectAdjacentPane(int step)
{
    const QStringList names = mPanesOrder;
    if (names.isEmpty())
        return;
    const qsizetype at = names.indexOf(mCurrentPaneName);
    const qsizetype count = names.size();
    const qsizetype next = ((at < 0 ? 0 : at) + step + count) % count;
    if (names.at(next) != mCurrentPaneName)
        loadPrefsPaneNamed(names.at(next), true);
}
