// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The renaming window's actions that change the file: Rename (move and convert), Move to Trash, the extension
// checks that keep the name and the format in agreement, and what follows an error.

#include "app/CorvexWindowController.h"

#include "app/FileFollowing.h"
#include "app/FileOperations.h"
#include "app/FolderShortcuts.h"
#include "app/PathNames.h"
#include "app/RenameFlow.h"
#include "core/AppUserDefaults.h"
#include "core/CorvexErrors.h"
#include "core/DropboxCheck.h"
#include "core/FileFormat.h"
#include "core/Processor.h"
#include "core/UserDefaults.h"
#include "foundation/CorvexError.h"
#include "foundation/PreferenceKeys.h"
#include "logging/Log.h"
#include "platform/DesktopApplications.h"
#include "widgets/QZAlert.h"

#include <QComboBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace {

// The context of every error this window presents, so that its end is recognised as this window's own.
const char ErrorContextMarker = 0;

} // namespace

bool CorvexWindowController::ensureExtensionMatchesCurrentFormatExcludingOthers(bool excludingOthers)
{
    const QString name = mNameTextField->text();
    if (name.isEmpty())
        return false;
    const QString extension = name.mid(PathNames::baseNameLength(name) + 1).toLower();
    const FileFormat *format = selectedFileFormat();
    if (!format)
        return false;
    const QString required = format->extensions().value(0);
    if (!extension.isEmpty() && format->extensions().contains(extension))
        return true;
    if (!extension.isEmpty() && FileFormat::allKnownExtensions().contains(extension)) {
        if (excludingOthers) {
            RenameFlow::askAboutExtensionMismatch(
                mWindow, extension, required, [self = QPointer<CorvexWindowController>(this)](qint64 code) {
                    if (self)
                        self->extensionMismatchAlertDidEnd(code);
                });
            return false;
        }
        mNameTextField->setText(PathNames::deletingExtension(name) + u'.' + required);
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
        mNameTextField->setText(PathNames::deletingExtension(name) + u'.' + required);
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
        if (!FileOperations::createFolder(folder, &reason))
            DDLogError(QStringLiteral("Can't create destination folder \"%1\": %2").arg(folder, reason));
        folder = sourceFolder;
    }
    if (!folderIsDirectory) {
        DDLogError(QStringLiteral("Destination \"%1\" is not a folder.").arg(folder));
        folder = sourceFolder;
    }

    const QString destination = PathNames::joinedPath(folder, name);
    if (destination == source)
        DDLogError(QStringLiteral(" *** can't rename a file to the same name ***"));
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
        QUrl::fromLocalFile(source), sourceFormat, QUrl::fromLocalFile(destination), destinationFormat,
        &error);
    if (renamed && error.domain().isEmpty()) {
        CorvexError attributeError;
        const bool hide = UserDefaults::standardUserDefaults().boolForKey(kHideExtensionKey);
        const bool attributeSet = FileOperations::setExtensionHidden(destination, hide, &attributeError);
        if (!attributeSet || !attributeError.domain().isEmpty())
            DDLogError(QStringLiteral("Could not set extension hidden file attribute.  %1")
                           .arg(RenameFlow::errorLogText(attributeError)));
        if (!attributeSet)
            return;
        saveLastDirectoryAndExtension(destination);
        closeWindow();
        if (Processor::sharedProcessor().appHandlesOpenWith())
            openRenamedFile(destination);
        return;
    }

    startWatchingFile(source);
    DDLogError(QStringLiteral("Could not rename/reformat item.  %1").arg(RenameFlow::errorLogText(error)));
    if (QFileInfo::exists(destination))
        RenameFlow::showNameTaken(mWindow, name);
    else
        presentError(error);
}

void CorvexWindowController::openRenamedFile(const QString &path)
{
    // The application chosen in the shared settings; when none was ever stored, the desktop's default
    // application for the file's type.
    QString identifier = AppUserDefaults::sharedCorvexDefaults().stringForKey(kOpenWithBundleIdentifierKey);
    if (identifier.isEmpty())
        identifier =
            DesktopApplications::defaultApplicationForMimeType(DesktopApplications::mimeTypeOfFile(path));
    Processor::sharedProcessor().openURL(QUrl::fromLocalFile(path), identifier);
}

void CorvexWindowController::confirmReplace(const QString &name, const QString &destination)
{
    const QString destinationFolder = QFileInfo(destination).path();
    const QPointer<CorvexWindowController> self(this);
    RenameFlow::confirmReplace(mWindow, name, destinationFolder,
                               destinationFolder == FolderShortcuts::desktopFolder(),
                               [self, destination](qint64 code) {
                                   if (!self || code != QZAlert::NSAlertFirstButtonReturn)
                                       return;
                                   if (destination == self->_screenshotInfo.filePath()) {
                                       // The file already has the name: replacing it with itself would only
                                       // delete it.
                                       self->saveLastDirectoryAndExtension(destination);
                                       self->closeWindow();
                                       return;
                                   }
                                   CorvexError error;
                                   if (FileOperations::removeItemAtPath(destination, &error))
                                       self->renameLater();
                                   else
                                       self->presentError(error);
                               });
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
    const QString location = screencapture.stringForKey(kScreencaptureLocationKey);
    if (!location.isNull() && location == directory)
        defaults.removeObjectForKey(kLastSaveDirectoryKey);
    else
        defaults.setObject(directory, kLastSaveDirectoryKey);
    const QString extension = info.suffix();
    const QString type = screencapture.stringForKey(kScreencaptureTypeKey);
    if (!type.isNull() && type == extension)
        defaults.removeObjectForKey(kLastFileFormatExtensionKey);
    else
        defaults.setObject(extension, kLastFileFormatExtensionKey);
}

void CorvexWindowController::moveToTrash()
{
    const QString path = _screenshotInfo.filePath();
    stopWatchingFile(path);
    CorvexError error;
    if (FileOperations::recycleFile(path, &error)) {
        closeWindow();
        return;
    }
    DDLogError(
        QStringLiteral(" *** Move to Trash failed with error %1 ***").arg(error.localizedDescription()));
    startWatchingFile(path);
    if (qz_isCocoaFileNoSuchFileError(error) && DropboxCheck().screenshotFolderTest())
        error = corvexErrorByAddingDropboxIncompatibilityInformation(error);
    presentError(error);
}
