// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The renaming window's actions that change the file: Rename (move and convert), Move to Trash, the extension
// checks that keep the name and the format in agreement, and what follows an error.

#include "AppUserDefaults.h"
#include "CorvexError.h"
#include "CorvexErrors.h"
#include "CorvexWindowController.h"
#include "CorvexWindowController_p.h"
#include "DefaultCancelProxyView.h"
#include "DropboxCheck.h"
#include "FileFormat.h"
#include "Log.h"
#include "Processor.h"
#include "QZAlert.h"
#include "UserDefaults.h"
#include "WhereProxyView.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

using namespace CorvexWindow;

namespace {

// The context of every error this window presents, so that its end is recognised as this window's own.
const char ErrorContextMarker = 0;

QString errorLogText(const CorvexError &error)
{
    return QStringLiteral("domain:%1 code:%2 userInfo:%3 description:%4")
        .arg(error.domain())
        .arg(error.code())
        .arg(userInfoDescription(error.userInfo()))
        .arg(error.localizedDescription());
}

} // namespace

bool CorvexWindowController::ensureExtensionMatchesCurrentFormatExcludingOthers(bool excludingOthers)
{
    const QString name = mNameTextField->text();
    if (name.isEmpty())
        return false;
    const QString nameExtension = name.mid(baseNameLength(name) + 1);
    const QString extension = nameExtension.toLower();
    const FileFormat *format = selectedFileFormat();
    if (!format)
        return false;
    const QString required = format->extensions().value(0);
    if (!extension.isEmpty() && format->extensions().contains(extension))
        return true;
    if (!extension.isEmpty() && FileFormat::allKnownExtensions().contains(extension)) {
        if (excludingOthers) {
            auto *alert = new QZAlert(mWindow);
            alert->setAlertStyle(QZAlert::WarningAlertStyle);
            alert->setMessageText(
                tr("You cannot save this document with extension “.%1” at the end of the name.  "
                   "The required extension is “.%2”.")
                    .arg(extension, required));
            alert->setInformativeText(
                tr("You can choose to use both, so that your file name ends in “.%1.%2”.")
                    .arg(extension, required));
            alert->addButtonWithTitle(tr("Use .%1").arg(required));
            alert->addButtonWithTitle(tr("Cancel"));
            alert->addButtonWithTitle(tr("Use both"));
            alert->qzBeginSheetModalForWindow(mWindow,
                                              [self = QPointer<CorvexWindowController>(this)](qint64 code) {
                                                  if (self)
                                                      self->extensionMismatchAlertDidEnd(code);
                                              });
            return false;
        }
        mNameTextField->setText(deletingExtension(name) + u'.' + required);
        return true;
    }
    mNameTextField->setText(name + u'.' + required);
    return true;
}

void CorvexWindowController::extensionMismatchAlertDidEnd(qint64 returnCode)
{
    const QString name = mNameTextField->text();
    const FileFormat *format = selectedFileFormat();
    const QString required = format ? format->extensions().value(0) : QString();
    if (returnCode == QZAlert::NSAlertFirstButtonReturn) {
        mNameTextField->setText(deletingExtension(name) + u'.' + required);
        renameLater();
    } else if (returnCode == QZAlert::NSAlertThirdButtonReturn) {
        mNameTextField->setText(name + u'.' + required);
        renameLater();
    } else if (returnCode == QZAlert::NSAlertSecondButtonReturn) {
        selectBaseName();
    }
    updateUI();
}

void CorvexWindowController::formatAction()
{
    if (ensureExtensionMatchesCurrentFormatExcludingOthers(false))
        selectBaseName();
    updateUI();
}

void CorvexWindowController::renameLater()
{
    QTimer::singleShot(0, this, &CorvexWindowController::rename);
}

void CorvexWindowController::rename()
{
    if (!mWindow || !ensureExtensionMatchesCurrentFormatExcludingOthers(true))
        return;
    const QString source = _screenshotInfo.filePath();
    const QString sourceFolder = QFileInfo(source).path();
    QString name = mNameTextField->text();
    name.replace(u'/', u':');

    QString folder = mWhereFolderPath;
    const QFileInfo folderInfo(folder);
    const bool folderIsDirectory = folderInfo.isDir();
    if (!folderInfo.exists() && !folderInfo.isSymLink()) {
        QString reason;
        if (!createFolder(folder, &reason))
            DDLogError(QStringLiteral("Can't create destination folder \"%1\": %2").arg(folder, reason));
        folder = sourceFolder;
    }
    if (!folderIsDirectory) {
        DDLogError(QStringLiteral("Destination \"%1\" is not a folder.").arg(folder));
        folder = sourceFolder;
    }

    const QString destination = joinedPath(folder, name);
    if (destination == source)
        DDLogError(QStringLiteral(" *** can't rename a file to the same name ***"));
    const QUrl destinationURL = QUrl::fromLocalFile(destination);
    const FileFormat *sourceFormat =
        qzFileFormatForExtension(FileFormat::allFileFormats(), QFileInfo(source).suffix());
    const FileFormat *destinationFormat =
        qzFileFormatForExtension(FileFormat::allFileFormats(), QFileInfo(destination).suffix());

    if (QFileInfo::exists(destination) || QFileInfo(destination).isSymLink()) {
        confirmReplace(name, destination);
        return;
    }

    stopWatchingFile(source);
    CorvexError error;
    const bool renamed = Processor::sharedProcessor().renameItemAtURL(
        QUrl::fromLocalFile(source), sourceFormat, destinationURL, destinationFormat, &error);
    if (renamed && error.domain().isEmpty()) {
        CorvexError attributeError;
        const bool hide = UserDefaults::standardUserDefaults().boolForKey(QStringLiteral("hideExtension"));
        const bool attributeSet = setExtensionHidden(destination, hide, &attributeError);
        if (!attributeSet || !attributeError.domain().isEmpty())
            DDLogError(QStringLiteral("Could not set extension hidden file attribute.  %1")
                           .arg(errorLogText(attributeError)));
        if (!attributeSet)
            return;
        saveLastDirectoryAndExtension(destination);
        closeWindow();
        Processor &processor = Processor::sharedProcessor();
        if (processor.appHandlesOpenWith()) {
            const QString identifier = AppUserDefaults::sharedCorvexDefaults().stringForKey(
                QStringLiteral("openWithBundleIdentifier"));
            processor.openURL(destinationURL, identifier);
        }
        return;
    }

    startWatchingFile(source);
    DDLogError(QStringLiteral("Could not rename/reformat item.  %1").arg(errorLogText(error)));
    if (QFileInfo::exists(destination))
        showNameTakenAlert(name);
    else
        presentError(error);
}

void CorvexWindowController::confirmReplace(const QString &name, const QString &destination)
{
    const QString destinationFolder = QFileInfo(destination).path();
    auto *alert = new QZAlert(mWindow);
    alert->setAlertStyle(QZAlert::CriticalAlertStyle);
    alert->setMessageText(tr("“%1” already exists. Do you want to replace it?").arg(name));
    if (destinationFolder == desktopFolder())
        alert->setInformativeText(
            tr("A file or folder with the same name already exists on the %1. Replacing it "
               "will overwrite its current contents.")
                .arg(displayNameAtPath(destinationFolder)));
    else
        alert->setInformativeText(tr("A file or folder with the same name already exists in the folder %1. "
                                     "Replacing it will overwrite its current contents.")
                                      .arg(displayNameAtPath(destinationFolder)));
    QPushButton *replace = alert->addButtonWithTitle(tr("Replace"));
    QPushButton *cancel = alert->addButtonWithTitle(tr("Cancel"));
    // Return cancels: replacing destroys the other file, so it takes Ctrl+R or a click.
    alert->setDefaultButton(cancel);
    replace->setAutoDefault(false);
    new DefaultCancelProxyView(cancel, alert);
    new WhereProxyView(
        [replace](QKeyEvent *event) {
            if (WhereProxyView::deviceIndependentModifiers(event) != Qt::ControlModifier ||
                event->key() != Qt::Key_R)
                return false;
            replace->click();
            return true;
        },
        alert);
    const QPointer<CorvexWindowController> self(this);
    alert->qzBeginSheetModalForWindow(mWindow, [self, destination](qint64 code) {
        if (!self || code != QZAlert::NSAlertFirstButtonReturn)
            return;
        if (destination == self->_screenshotInfo.filePath()) {
            // The file already has the name: replacing it with itself would only delete it.
            self->saveLastDirectoryAndExtension(destination);
            self->closeWindow();
            return;
        }
        CorvexError error;
        if (removeItemAtPath(destination, &error))
            self->renameLater();
        else
            self->presentError(error);
    });
}

void CorvexWindowController::showNameTakenAlert(const QString &name)
{
    auto *alert = new QZAlert(mWindow);
    alert->setAlertStyle(QZAlert::WarningAlertStyle);
    alert->setMessageText(tr("The name “%1” is already taken. Please choose a different name.").arg(name));
    alert->addButtonWithTitle(tr("OK"));
    alert->qzBeginSheetModalForWindow(mWindow, {});
}

void CorvexWindowController::presentError(const CorvexError &error)
{
    const QPointer<CorvexWindowController> self(this);
    QZAlert::presentError(error, mWindow, [self](bool didRecover) {
        if (self)
            self->didPresentErrorWithRecovery(didRecover, &ErrorContextMarker);
    });
}

void CorvexWindowController::didPresentErrorWithRecovery(bool didRecover, const void *contextInfo)
{
    if (didRecover || contextInfo != &ErrorContextMarker)
        return;
    DDLogError(QStringLiteral("Closing the renaming window as there is no recovery from this error."));
    closeWindow();
}

void CorvexWindowController::saveLastDirectoryAndExtension(const QString &path)
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    AppUserDefaults &screencapture = AppUserDefaults::sharedScreencaptureDefaults();
    const QFileInfo info(path);
    const QString directory = info.path();
    const QString location = screencapture.stringForKey(QStringLiteral("location"));
    if (!location.isNull() && location == directory)
        defaults.removeObjectForKey(QStringLiteral("lastSaveDirectory"));
    else
        defaults.setObject(directory, QStringLiteral("lastSaveDirectory"));
    const QString extension = info.suffix();
    const QString type = screencapture.stringForKey(QStringLiteral("type"));
    if (!type.isNull() && type == extension)
        defaults.removeObjectForKey(QStringLiteral("lastFileFormatExtension"));
    else
        defaults.setObject(extension, QStringLiteral("lastFileFormatExtension"));
}

void CorvexWindowController::moveToTrash()
{
    const QString path = _screenshotInfo.filePath();
    stopWatchingFile(path);
    CorvexError error;
    if (recycleFile(path, &error)) {
        closeWindow();
        return;
    }
    DDLogError(
        QStringLiteral(" *** Move to Trash failed with error %1 ***").arg(error.localizedDescription()));
    startWatchingFile(path);
    if (qz_isCocoaFileNoSuchFileError(error) && DropboxCheck::screenshotFolderTest())
        error = corvexErrorByAddingDropboxIncompatibilityInformation(error);
    presentError(error);
}
