// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FolderShortcuts.h"

#include "app/KeyEquivalentView.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QStandardPaths>

namespace {

QString firstExistingFolder(const QStringList &candidates)
{
    for (const QString &candidate : candidates) {
        if (QFileInfo(candidate).isDir())
            return candidate;
    }
    return QString();
}

} // namespace

bool FolderShortcuts::folderForKey(const QKeyEvent *event, QString *folder)
{
    const Qt::KeyboardModifiers modifiers = KeyEquivalentView::deviceIndependentModifiers(event);
    const int key = event->key();
    if (modifiers == Qt::ControlModifier && key == Qt::Key_D) {
        *folder = desktopFolder();
        return true;
    }
    if (modifiers != (Qt::ControlModifier | Qt::ShiftModifier))
        return false;
    switch (key) {
    case Qt::Key_C:
        *folder = rootFolder();
        return true;
    case Qt::Key_H:
        *folder = homeFolder();
        return true;
    case Qt::Key_D:
        *folder = desktopFolder();
        return true;
    case Qt::Key_A:
        *folder = applicationsFolder();
        return true;
    case Qt::Key_O:
        *folder = documentsFolder();
        return true;
    case Qt::Key_U:
        *folder = utilitiesFolder();
        return true;
    default:
        return false;
    }
}

QString FolderShortcuts::rootFolder()
{
    return QStringLiteral("/");
}

QString FolderShortcuts::homeFolder()
{
    return QDir::homePath();
}

QString FolderShortcuts::desktopFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

QString FolderShortcuts::documentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString FolderShortcuts::applicationsFolder()
{
    // The machine-wide folder that application bundles are installed into.
    return firstExistingFolder({QStringLiteral("/opt/Applications")});
}

QString FolderShortcuts::utilitiesFolder()
{
    const QString applications = applicationsFolder();
    if (applications.isEmpty())
        return QString();
    return firstExistingFolder({applications + QStringLiteral("/Utilities")});
}
