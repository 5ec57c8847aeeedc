// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UpdateUserDriver.h"

#include "app/UpdateStatusWindow.h"
#include "app/UpdateWindowController.h"
#include "app/WindowPlacement.h"
#include "core/SUUpdater.h"
#include "core/TypedPreferences.h"
#include "foundation/PreferenceKeys.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPushButton>

UpdateUserDriver::UpdateUserDriver(SUUpdater &updater, QObject *parent) : QObject(parent), mUpdater(updater)
{
    connect(&mUpdater, &SUUpdater::phaseChanged, this, &UpdateUserDriver::phaseChanged);
    connect(&mUpdater, &SUUpdater::updateFound, this, &UpdateUserDriver::updateFound);
    connect(&mUpdater, &SUUpdater::noUpdateFound, this, &UpdateUserDriver::noUpdateFound);
    connect(&mUpdater, &SUUpdater::failed, this, &UpdateUserDriver::failed);
    connect(&mUpdater, &SUUpdater::cancelled, this, &UpdateUserDriver::cancelled);
    connect(&mUpdater, &SUUpdater::downloadProgress, this, [this](qint64 received, qint64 total) {
        if (mUpdateWindow)
            mUpdateWindow->showDownloadProgress(received, total);
    });
}

UpdateUserDriver::~UpdateUserDriver()
{
    delete mStatusWindow;
    delete mUpdateWindow;
}

UpdateUserDriver &UpdateUserDriver::sharedDriver()
{
    static UpdateUserDriver *shared = new UpdateUserDriver(SUUpdater::sharedUpdater());
    return *shared;
}

void UpdateUserDriver::checkForUpdates()
{
    if (mUpdater.phase() != SUUpdater::Phase::Idle) {
        for (QWidget *window :
             {static_cast<QWidget *>(mUpdateWindow), static_cast<QWidget *>(mStatusWindow)}) {
            if (window && window->isVisible()) {
                window->raise();
                window->activateWindow();
                return;
            }
        }
        return;
    }
    if (mUpdateWindow) {
        mUpdateWindow->raise();
        mUpdateWindow->activateWindow();
        return;
    }
    mUpdater.checkForUpdates();
}

UpdateStatusWindow *UpdateUserDriver::ensureStatusWindow()
{
    if (!mStatusWindow) {
        mStatusWindow = new UpdateStatusWindow;
        mStatusWindow->setAttribute(Qt::WA_DeleteOnClose);
        connect(mStatusWindow, &UpdateStatusWindow::cancelRequested, &mUpdater, &SUUpdater::cancel);
    }
    return mStatusWindow;
}

void UpdateUserDriver::phaseChanged()
{
    switch (mUpdater.phase()) {
    case SUUpdater::Phase::Checking:
        if (mUpdater.isUserInitiated())
            ensureStatusWindow()->showChecking();
        break;
    case SUUpdater::Phase::Verifying:
        if (mUpdateWindow)
            mUpdateWindow->showStep(tr("Verifying update…"));
        break;
    case SUUpdater::Phase::Unpacking:
        if (mUpdateWindow)
            mUpdateWindow->showStep(tr("Extracting update…"));
        break;
    case SUUpdater::Phase::Installing:
        if (mUpdateWindow)
            mUpdateWindow->showStep(tr("Installing update…"));
        break;
    case SUUpdater::Phase::Relaunching:
        if (mUpdateWindow)
            mUpdateWindow->showStep(tr("Restarting Corvex…"), true);
        break;
    case SUUpdater::Phase::Downloading:
        if (mUpdateWindow)
            mUpdateWindow->showDownloadProgress(0, mUpdateWindow->item().contentLength);
        break;
    case SUUpdater::Phase::Idle:
        break;
    }
}

void UpdateUserDriver::updateFound(const SUAppcastItem &item)
{
    if (mStatusWindow)
        mStatusWindow->hide();
    if (mStatusWindow)
        mStatusWindow->deleteLater();
    delete mUpdateWindow;
    mUpdateWindow = new UpdateWindowController(item, mUpdater.hostBundle().shortVersionString());
    connect(mUpdateWindow, &UpdateWindowController::installRequested, this,
            [this] { mUpdater.installUpdate(mUpdateWindow->item()); });
    connect(mUpdateWindow, &UpdateWindowController::skipRequested, this,
            [this] { mUpdater.skipVersion(mUpdateWindow->item()); });
    connect(mUpdateWindow, &UpdateWindowController::remindLaterRequested, &mUpdater, &SUUpdater::remindLater);
    connect(mUpdateWindow, &UpdateWindowController::cancelRequested, &mUpdater, &SUUpdater::cancel);
    WindowPlacement::centerOnScreen(mUpdateWindow, QGuiApplication::primaryScreen());
    mUpdateWindow->show();
    mUpdateWindow->raise();
    mUpdateWindow->activateWindow();
}

void UpdateUserDriver::noUpdateFound()
{
    if (mUpdater.isUserInitiated())
        ensureStatusWindow()->showUpToDate(mUpdater.hostBundle().shortVersionString());
}

void UpdateUserDriver::failed(const CorvexError &error)
{
    if (!mUpdater.isUserInitiated())
        return;
    // Not close(): while it shows the progress, the window keeps itself open until the update ends, which
    // it just did.
    if (mUpdateWindow) {
        mUpdateWindow->done(QDialog::Rejected);
        mUpdateWindow->deleteLater();
    }
    ensureStatusWindow()->showError(error.localizedDescription());
}

void UpdateUserDriver::cancelled()
{
    if (mStatusWindow)
        mStatusWindow->close();
    if (mUpdateWindow)
        mUpdateWindow->showOffer();
}

bool UpdateUserDriver::askForPermissionIfNeeded(TypedPreferences &preferences)
{
    if (!preferences.boolForKey(kSUHasLaunchedBeforeKey)) {
        preferences.setBool(true, kSUHasLaunchedBeforeKey);
        return false;
    }
    if (preferences.objectForKey(kSUEnableAutomaticChecksKey).isValid())
        return false;
    QMessageBox box;
    box.setWindowTitle(tr("Software Update"));
    box.setIcon(QMessageBox::Question);
    box.setText(tr("Check for updates automatically?"));
    box.setInformativeText(
        tr("Should Corvex automatically check for updates once a day? You can always check "
           "for updates manually from the Help menu or in the preferences."));
    auto *profile = new QCheckBox(tr("Include anonymous system profile"), &box);
    profile->setToolTip(tr("Sends the versions of Corvex and of the system, the processor type, the language "
                           "and the graphics card with each check. No personal information is sent."));
    box.setCheckBox(profile);
    QPushButton *yes = box.addButton(tr("Check Automatically"), QMessageBox::AcceptRole);
    box.addButton(tr("Don't Check"), QMessageBox::RejectRole);
    box.setDefaultButton(yes);
    box.exec();
    const bool automatic = box.clickedButton() == yes;
    preferences.setBool(automatic, kSUEnableAutomaticChecksKey);
    preferences.setBool(automatic, kCheckForUpdatesKey);
    preferences.setBool(profile->isChecked(), kSUSendProfileInfoKey);
    return true;
}
