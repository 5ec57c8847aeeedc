// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QMainWindow>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <Qt>
#include <functional>

class QAction;
class QActionGroup;
class QToolBar;
class SS_PreferencePaneProtocol;

// The preferences window, assembled from the pane bundles ("<Name>.preferencePane") of a folder: one toolbar
// item per pane, one pane shown at a time. Switching panes keeps the window's top edge in place; the last
// pane shown is remembered under "<bundle id>_Preferences_Last_Pane_Defaults_Key" in the standard
// preferences.
//
// The window is made on first display and hidden, not destroyed, when the user closes it (windowClosed() is
// emitted). Escape and Ctrl+W close it; Ctrl+PageUp and Ctrl+PageDown show the previous and next pane.
class SS_PrefsController : public QObject
{
    Q_OBJECT

public:
    static constexpr int classVersion = 2;

    // Loads every bundle with the extension (default "preferencePane") found in the folder (default: the
    // application bundle's resource folder). An empty argument counts as none.
    explicit SS_PrefsController(const QString &panesSearchPath = QString(),
                                const QString &bundleExtension = QString(), QObject *parent = nullptr);
    ~SS_PrefsController() override;

    // The application's controller: the bundle's resource folder, toolbar always shown, panes in the order
    // General, Advanced, Updates. Made on first use; lives until the application object goes.
    static SS_PrefsController &sharedPrefsController();

    // Replaces the toolbar order by the given names that have a loaded pane.
    void setPanesOrder(const QStringList &names);
    const QStringList &panesOrder() const { return mPanesOrder; }

    // Makes the window when needed and brings it to the front.
    void showPreferencesWindow();
    void createPreferencesWindow();
    void createPreferencesWindowAndDisplay(bool display);
    // Releases the window; the next display builds a new one.
    void destroyPreferencesWindow();

    // Shows the named pane (making and showing the window when needed); false when it cannot be shown.
    bool showPane(const QString &name);
    bool loadPreferencePaneNamed(const QString &name);
    bool loadPrefsPaneNamed(const QString &name, bool display);

    // Names of every loaded pane, in no particular order.
    QStringList loadedPanes() const;
    // The pane on display, or nullptr.
    SS_PreferencePaneProtocol *currentPane() const;
    QString currentPaneName() const { return mCurrentPaneName; }

    QMainWindow *preferencesWindow() const { return mPrefsWindow; }
    QToolBar *preferencesToolbar() const { return mPrefsToolbar; }
    QString bundleExtension() const { return mBundleExtension; }
    QString searchPath() const { return mSearchPath; }
    // "<bundle id>_Preferences_Last_Pane_Defaults_Key" and "<bundle id>_Preferences_Toolbar_Identifier".
    QString lastPaneDefaultsKey() const;
    QString toolbarIdentifier() const;

    Qt::ToolButtonStyle toolbarDisplayMode() const { return mToolbarDisplayMode; }
    void setToolbarDisplayMode(Qt::ToolButtonStyle mode) { mToolbarDisplayMode = mode; }
    int toolbarSizeMode() const { return mToolbarSizeMode; }
    void setToolbarSizeMode(int mode) { mToolbarSizeMode = mode; }
    bool usesTexturedWindow() const { return mUsesTexturedWindow; }
    void setUsesTexturedWindow(bool value) { mUsesTexturedWindow = value; }
    bool alwaysShowsToolbar() const { return mAlwaysShowsToolbar; }
    void setAlwaysShowsToolbar(bool value) { mAlwaysShowsToolbar = value; }
    bool showsToolbarButton() const { return mShowsToolbarButton; }
    void setShowsToolbarButton(bool value) { mShowsToolbarButton = value; }
    bool alwaysOpensCentered() const { return mAlwaysOpensCentered; }
    void setAlwaysOpensCentered(bool value) { mAlwaysOpensCentered = value; }
    bool debug() const { return mDebug; }
    void setDebug(bool value) { mDebug = value; }

    // What "Check Now" of the Updates pane does; without a handler the button is disabled. The window offers
    // it as its action named "checkForUpdatesAction".
    void setCheckForUpdatesHandler(std::function<void()> handler);

    // Writes the message to stderr when debug() is set.
    void debugLog(const QString &message) const;

Q_SIGNALS:
    // The user closed the window (it is hidden, not released).
    void windowClosed();
    // A pane is on display after a switch.
    void paneShown(const QString &name);

private:
    void activatePane(const QString &path);
    void createPrefsToolbar();
    void prefsToolbarItemClicked(QAction *item);
    void selectAdjacentPane(int step);
    SS_PreferencePaneProtocol *paneNamed(const QString &name) const;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showAlertNoPanes();
    void releaseWindow();

    QPointer<QMainWindow> mPrefsWindow;
    QToolBar *mPrefsToolbar = nullptr;
    QActionGroup *mToolbarGroup = nullptr;
    QHash<QString, QAction *> mPrefsToolbarItems;
    QHash<QString, QObject *> mPreferencePanes;
    QList<QPointer<QWidget>> mShownViews;
    QStringList mPanesOrder;
    QString mBundleExtension;
    QString mSearchPath;
    QString mCurrentPaneName;
    Qt::ToolButtonStyle mToolbarDisplayMode = Qt::ToolButtonTextUnderIcon;
    int mToolbarSizeMode = 0;
    bool mUsesTexturedWindow = false;
    bool mAlwaysShowsToolbar = false;
    bool mShowsToolbarButton = false;
    bool mAlwaysOpensCentered = true;
    bool mDebug = false;
    std::function<void()> mCheckForUpdates;
    QPointer<QAction> mCheckForUpdatesAction;
};
