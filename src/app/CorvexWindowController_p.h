// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Helpers of the renaming window controller.

#include <QIcon>
#include <QList>
#include <QObject>
#include <QPageLayout>
#include <QPointer>
#include <QStyledItemDelegate>
#include <QUrl>
#include <QVariantMap>
#include <optional>

#include "CorvexWindowController.h"

class CorvexError;
class QAction;
class QScreen;
class QWidget;

namespace CorvexWindow {

// The picture's place in the window as designed: the window never gets smaller than this.
inline constexpr int DesignedImageWidth = 480;
inline constexpr int DesignedImageHeight = 300;
// The border around the picture (half of the 16 points the frame rule adds).
inline constexpr int ImageMargin = 8;

// Item data of the where popup.
inline constexpr int TagRole = Qt::UserRole + 1;
inline constexpr int IndentationRole = Qt::UserRole + 2;
inline constexpr int KeyEquivalentRole = Qt::UserRole + 3;

// Ties a window to its controller (a child object of the window).
class CorvexWindowControllerLink : public QObject
{
    Q_OBJECT
public:
    CorvexWindowControllerLink(CorvexWindowController *controller, QWidget *window);
    CorvexWindowController *controller() const { return mController; }

private:
    QPointer<CorvexWindowController> mController;
};

// Draws the where popup's items with their indentation and, on the right, their key equivalent.
class WhereItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

// Page set-up for printing: margins 18 left and right, 30 top and bottom (points), portrait.
QPageLayout defaultPrintInfo();

// Observes the watcher's delete and rename notifications for the controller; the handlers run on the main
// thread.
void observeWatcher(CorvexWindowController *controller, quint64 &deleteObserver, quint64 &renameObserver);
void unobserveWatcher(quint64 &deleteObserver, quint64 &renameObserver);
void addPathToWatcher(const QString &path, quint32 mask);
void removePathFromWatcher(const QString &path);

// The name shown for a file: its last component, without the extension when the file's attributes say the
// extension is hidden.
QString displayFileName(const QString &path, const std::optional<QVariantMap> &attributes);
// The file manager's name of a folder.
QString displayNameAtPath(const QString &path);
// The folder's icon, 16 by 16.
QIcon folderIcon(const QString &path);
// The favourite folders that can be found, in list order.
QList<QUrl> readFavoriteFolderURLs();

// The name with its extension replaced (or the extension appended when it has none).
QString replacingExtension(const QString &name, const QString &extension);
// The name without its extension.
QString deletingExtension(const QString &name);
// The length of the name without its extension.
qsizetype baseNameLength(const QString &name);
// Folder + "/" + name, without doubling a slash at the end of the folder.
QString joinedPath(const QString &folder, const QString &name);

// The screen a screenshot was taken on (counted from 1), else the primary screen.
QScreen *screenForNumber(qint64 screenNumber);
// The window manager's frame around the window (estimated before the window is shown).
QMargins decorationMargins(const QWidget *window);
// The window's rectangle moved and shrunk so that it fits on the screen with its frame.
QRect constrainFrameRect(const QRect &frame, QScreen *screen, const QMargins &decoration);
void centerOnScreen(QWidget *window, QScreen *screen);

// The error's user information as one line of text, for the log.
QString userInfoDescription(const QVariantMap &userInfo);
// Creates the folder with its missing parents; *reason says why it could not.
bool createFolder(const QString &path, QString *reason);
// Marks the file's extension as hidden (the extended attribute "user.corvex.hideExtension" = "1") or clears
// the mark. False with *error when it failed; true with *error when the file system holds no such marks.
bool setExtensionHidden(const QString &path, bool hidden, CorvexError *error);
// Deletes the file (or folder, with its contents).
bool removeItemAtPath(const QString &path, CorvexError *error);
// Moves the file to the Trash.
bool recycleFile(const QString &path, CorvexError *error);

// The window's menu commands (Rename, Move to Trash, Print, Close), added to the window.
QList<QAction *> makeWindowActions(CorvexWindowController *controller, QWidget *window);

} // namespace CorvexWindow
