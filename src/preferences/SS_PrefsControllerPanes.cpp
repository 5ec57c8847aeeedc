// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Switching panes, and the window's own events.
#include "core/UserDefaults.h"
#include "preferences/SS_PreferencePaneProtocol.h"
#include "preferences/SS_PrefsController.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QMainWindow>
#include <QScreen>
#include <QToolBar>

namespace {

// The size a pane view asks for: the size it was last given, or the size its layout wants; never less than
// its own minimum size or than its layout needs to show every control whole.
QSize paneViewSize(QWidget *view)
{
    const QSize least = view->minimumSizeHint().expandedTo(view->minimumSize()).expandedTo(QSize(1, 1));
    const QSize size = view->testAttribute(Qt::WA_Resized) ? view->size() : view->sizeHint();
    return size.expandedTo(least);
}

// The frame moved up and left as far as needed to stay on the window's screen; its top edge moves only when
// the pane would run off the bottom, and never above the screen's top.
QRect keptOnScreen(QRect frame, const QWidget *window)
{
    const QScreen *screen = window->screen() ? window->screen() : QGuiApplication::primaryScreen();
    if (!screen)
        return frame;
    const QRect available = screen->availableGeometry();
    if (frame.bottom() > available.bottom())
        frame.moveTop(qMax(available.top(), available.bottom() - frame.height() + 1));
    if (frame.right() > available.right())
        frame.moveLeft(qMax(available.left(), available.right() - frame.width() + 1));
    return frame;
}

} // namespace

bool SS_PrefsController::loadPreferencePaneNamed(const QString &name)
{
    return loadPrefsPaneNamed(name, true);
}

bool SS_PrefsController::showPane(const QString &name)
{
    if (!mPreferencePanes.contains(name)) {
        debugLog(QStringLiteral("Could not load preference pane \"%1\", because that pane does not exist.")
                     .arg(name));
        return false;
    }
    createPreferencesWindowAndDisplay(true);
    if (!mPrefsWindow)
        return false;
    return name == mCurrentPaneName || loadPrefsPaneNamed(name, true);
}

bool SS_PrefsController::loadPrefsPaneNamed(const QString &name, bool display)
{
    if (!mPrefsWindow) {
        QApplication::beep();
        debugLog(
            QStringLiteral("Could not load \"%1\" preference pane because the Preferences window seems to no "
                           "longer exist.")
                .arg(name));
        return false;
    }
    SS_PreferencePaneProtocol *pane = paneNamed(name);
    if (!pane) {
        debugLog(QStringLiteral("Could not load preference pane \"%1\", because that pane does not exist.")
                     .arg(name));
        return false;
    }
    QWidget *view = pane->paneView();
    if (!view) {
        debugLog(
            QStringLiteral("Could not load \"%1\" preference pane because its view could not be loaded from "
                           "the bundle.")
                .arg(name));
        return false;
    }

    if (SS_PreferencePaneProtocol *previous = currentPane(); previous && previous->respondsToPaneWillUnload())
        previous->paneWillUnload();

    // The old pane leaves the window before it changes size; it stays with its pane.
    if (QWidget *old = mPrefsWindow->centralWidget(); old && old != view) {
        mPrefsWindow->takeCentralWidget();
        old->hide();
        old->setParent(nullptr);
    }

    // The new frame: the pane's size below the toolbar; the top edge stays where it was.
    const bool toolbarShown = mPrefsToolbar && !mPrefsToolbar->isHidden();
    const int toolbarHeight = toolbarShown ? mPrefsToolbar->sizeHint().height() : 0;
    const QSize viewSize = paneViewSize(view);
    const int width =
        toolbarShown ? qMax(viewSize.width(), mPrefsToolbar->sizeHint().width()) : viewSize.width();
    const QRect oldFrame = mPrefsWindow->geometry();
    const QRect newFrame = keptOnScreen(
        QRect(oldFrame.x(), oldFrame.y(), width, viewSize.height() + toolbarHeight), mPrefsWindow);

    mCurrentPaneName = name;
    // Limits first, so that the new frame is not clamped by the old pane's.
    mPrefsWindow->setMinimumSize(0, 0);
    mPrefsWindow->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    mPrefsWindow->setGeometry(newFrame);
    if (mPrefsWindow->centralWidget() != view)
        mPrefsWindow->setCentralWidget(view);
    if (!mShownViews.contains(view))
        mShownViews.append(view);
    view->show();

    const QSize minimum = newFrame.size();
    mPrefsWindow->setMinimumSize(minimum);
    mPrefsWindow->setMaximumSize(pane->allowsHorizontalResizing() ? QWIDGETSIZE_MAX : minimum.width(),
                                 pane->allowsVerticalResizing() ? QWIDGETSIZE_MAX : minimum.height());
    if (display)
        mPrefsWindow->update();

    const bool titled = mPrefsToolbarItems.size() > 1 || mAlwaysShowsToolbar;
    mPrefsWindow->setWindowTitle(titled ? pane->displayLabel() : tr("Preferences"));

    UserDefaults::standardUserDefaults().setObject(name, lastPaneDefaultsKey());
    if (QAction *item = mPrefsToolbarItems.value(name))
        item->setChecked(true);
    if (pane->respondsToPaneDidLoad())
        pane->paneDidLoad();
    Q_EMIT paneShown(name);
    return true;
}

void SS_PrefsController::destroyPreferencesWindow()
{
    releaseWindow();
}

void SS_PrefsController::releaseWindow()
{
    if (!mPrefsWindow)
        return;
    // The pane views belong to their panes, not to the window.
    if (QWidget *view = mPrefsWindow->takeCentralWidget()) {
        view->hide();
        view->setParent(nullptr);
    }
    if (SS_PreferencePaneProtocol *pane = currentPane(); pane && pane->respondsToPaneWillUnload())
        pane->paneWillUnload();
    delete mPrefsWindow.data();
    mPrefsWindow = nullptr;
    mPrefsToolbar = nullptr;
    mToolbarGroup = nullptr;
    mPrefsToolbarItems.clear();
    mCurrentPaneName.clear();
}

bool SS_PrefsController::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == mPrefsWindow && event->type() == QEvent::Close)
        QMetaObject::invokeMethod(this, &SS_PrefsController::windowClosed, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}
