// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/RenameFlow.h"

#include "app/DefaultCancelProxyView.h"
#include "app/FileOperations.h"
#include "app/PathNames.h"
#include "app/WhereProxyView.h"
#include "foundation/CorvexError.h"
#include "widgets/QZAlert.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPushButton>

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("CorvexWindowController", text);
}

} // namespace

void RenameFlow::askAboutExtensionMismatch(QWidget *window, const QString &extension, const QString &required,
                                           Answer answer)
{
    auto *alert = new QZAlert(window);
    alert->setAlertStyle(QZAlert::WarningAlertStyle);
    alert->setMessageText(tr("You cannot save this document with extension “.%1” at the end of the name.  "
                             "The required extension is “.%2”.")
                              .arg(extension, required));
    alert->setInformativeText(
        tr("You can choose to use both, so that your file name ends in “.%1.%2”.").arg(extension, required));
    alert->addButtonWithTitle(tr("Use .%1").arg(required));
    alert->addButtonWithTitle(tr("Cancel"));
    alert->addButtonWithTitle(tr("Use both"));
    alert->qzBeginSheetModalForWindow(window, std::move(answer));
}

void RenameFlow::confirmReplace(QWidget *window, const QString &name, const QString &destinationFolder,
                                bool onDesktop, Answer answer)
{
    auto *alert = new QZAlert(window);
    alert->setAlertStyle(QZAlert::WarningAlertStyle);
    alert->setMessageText(tr("“%1” already exists. Do you want to replace it?").arg(name));
    const QString folderName = PathNames::displayNameAtPath(destinationFolder);
    if (onDesktop)
        alert->setInformativeText(
            tr("A file or folder with the same name already exists on the %1. Replacing "
               "it will overwrite its current contents.")
                .arg(folderName));
    else
        alert->setInformativeText(tr("A file or folder with the same name already exists in the folder %1. "
                                     "Replacing it will overwrite its current contents.")
                                      .arg(folderName));
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
    alert->qzBeginSheetModalForWindow(window, std::move(answer));
}

void RenameFlow::showNameTaken(QWidget *window, const QString &name)
{
    auto *alert = new QZAlert(window);
    alert->setAlertStyle(QZAlert::WarningAlertStyle);
    alert->setMessageText(tr("The name “%1” is already taken. Please choose a different name.").arg(name));
    alert->addButtonWithTitle(tr("OK"));
    alert->qzBeginSheetModalForWindow(window, {});
}

QString RenameFlow::errorLogText(const CorvexError &error)
{
    return QStringLiteral("domain:%1 code:%2 userInfo:%3 description:%4")
        .arg(error.domain())
        .arg(error.code())
        .arg(FileOperations::userInfoDescription(error.userInfo()))
        .arg(error.localizedDescription());
}
