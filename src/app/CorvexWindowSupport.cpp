// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "BookmarkException.h"
#include "BookmarkItem.h"
#include "CorvexWindowController.h"
#include "CorvexWindowController_p.h"
#include "FileAttributes.h"
#include "Log.h"
#include "NotificationCenter.h"
#include "UKKQueue.h"
#include "UserDefaultBookmarks.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeySequence>
#include <QLocale>
#include <QPageSize>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace CorvexWindow {

CorvexWindowControllerLink::CorvexWindowControllerLink(CorvexWindowController *controller, QWidget *window)
    : QObject(window), mController(controller)
{
}

void WhereItemDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const
{
    QStyleOptionViewItem indented = option;
    const int indentation = index.data(IndentationRole).toInt();
    indented.rect.adjust(indentation * 16, 0, 0, 0);
    QStyledItemDelegate::paint(painter, indented, index);
    const QKeySequence keys = index.data(KeyEquivalentRole).value<QKeySequence>();
    if (keys.isEmpty())
        return;
    painter->save();
    const bool selected = option.state & QStyle::State_Selected;
    painter->setPen(option.palette.color(selected ? QPalette::HighlightedText : QPalette::PlaceholderText));
    painter->drawText(option.rect.adjusted(0, 0, -8, 0), Qt::AlignRight | Qt::AlignVCenter,
                      keys.toString(QKeySequence::NativeText));
    painter->restore();
}

QSize WhereItemDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.rwidth() += index.data(IndentationRole).toInt() * 16;
    const QKeySequence keys = index.data(KeyEquivalentRole).value<QKeySequence>();
    if (!keys.isEmpty())
        size.rwidth() += option.fontMetrics.horizontalAdvance(keys.toString(QKeySequence::NativeText)) + 24;
    return size;
}

QPageLayout defaultPrintInfo()
{
    const bool letter = QLocale::system().measurementSystem() == QLocale::ImperialUSSystem;
    return QPageLayout(QPageSize(letter ? QPageSize::Letter : QPageSize::A4), QPageLayout::Portrait,
                       QMarginsF(18, 30, 18, 30), QPageLayout::Point);
}

void observeWatcher(CorvexWindowController *controller, quint64 &deleteObserver, quint64 &renameObserver)
{
    // The watcher posts on its own thread; the controller and its window live on the main thread, so the
    // handlers are queued there (the record's path is only ever read and written on the main thread).
    NotificationCenter &center = NotificationCenter::workspaceCenter();
    deleteObserver =
        center.addObserver(UKKQueueFileDeletedNotification, nullptr, controller,
                           [controller](const NotificationCenter::Notification &notification) {
                               const QString path =
                                   notification.userInfo.value(UKFileWatcherPathKey).toString();
                               QMetaObject::invokeMethod(
                                   controller, [controller, path] { controller->fileWatcherDelete(path); },
                                   Qt::QueuedConnection);
                           });
    renameObserver =
        center.addObserver(UKKQueueFileRenamedNotification, nullptr, controller,
                           [controller](const NotificationCenter::Notification &notification) {
                               const QString path =
                                   notification.userInfo.value(UKFileWatcherPathKey).toString();
                               QMetaObject::invokeMethod(
                                   controller, [controller, path] { controller->fileWatcherRename(path); },
                                   Qt::QueuedConnection);
                           });
}

void unobserveWatcher(quint64 &deleteObserver, quint64 &renameObserver)
{
    NotificationCenter &center = NotificationCenter::workspaceCenter();
    if (deleteObserver)
        center.removeObserver(deleteObserver);
    if (renameObserver)
        center.removeObserver(renameObserver);
    deleteObserver = renameObserver = 0;
}

void addPathToWatcher(const QString &path, quint32 mask)
{
    if (UKKQueue *queue = UKKQueue::sharedFileWatcher())
        queue->addPathToQueueNotifyingAbout(path, mask);
}

void removePathFromWatcher(const QString &path)
{
    if (UKKQueue *queue = UKKQueue::sharedFileWatcher())
        queue->removePathFromQueue(path);
}

QString displayFileName(const QString &path, const std::optional<QVariantMap> &attributes)
{
    const QString name = QFileInfo(path).fileName();
    if (attributes && attributes->value(FileAttributes::ExtensionHiddenKey).toBool())
        return deletingExtension(name);
    return name;
}

QString displayNameAtPath(const QString &path)
{
    if (path.isEmpty())
        return path;
    const QString clean = QDir::cleanPath(path);
    if (clean == u"/")
        return QStringLiteral("/");
    return QFileInfo(clean).fileName();
}

QIcon folderIcon(const QString &path)
{
    static QFileIconProvider provider;
    const QFileInfo info(path);
    return info.exists() ? provider.icon(info) : provider.icon(QFileIconProvider::Folder);
}

QList<QUrl> readFavoriteFolderURLs()
{
    // A fresh list for every window, read once; a favourite whose folder can no longer be found is left out
    // (the window offers the others) rather than failing the whole list.
    QList<QUrl> urls;
    const UserDefaultBookmarks bookmarks(QStringLiteral("favoriteFolderBookmarks"));
    for (qsizetype i = 0; i < bookmarks.count(); ++i) {
        try {
            const std::optional<QUrl> url = bookmarks.bookmarkItemAtIndex(i)->URL();
            if (url && url->isLocalFile())
                urls.append(*url);
        } catch (const BookmarkException &exception) {
            DDLogError(QStringLiteral("Could not read favorite folder %1: %2").arg(i).arg(exception.name()));
        }
    }
    return urls;
}

QString replacingExtension(const QString &name, const QString &extension)
{
    return deletingExtension(name) + u'.' + extension;
}

QString deletingExtension(const QString &name)
{
    return name.left(baseNameLength(name));
}

qsizetype baseNameLength(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    // A leading dot (a hidden name) or a trailing one is no extension.
    if (dot <= 0 || dot == name.size() - 1)
        return name.size();
    return dot;
}

QString joinedPath(const QString &folder, const QString &name)
{
    if (folder.endsWith(u'/'))
        return folder + name;
    return folder + u'/' + name;
}

QScreen *screenForNumber(qint64 screenNumber)
{
    const QList<QScreen *> screens = QGuiApplication::screens();
    if (screenNumber >= 1 && screenNumber <= screens.size())
        return screens.at(screenNumber - 1);
    return QGuiApplication::primaryScreen();
}

QMargins decorationMargins(const QWidget *window)
{
    if (window->isVisible() && window->frameGeometry() != window->geometry()) {
        const QRect outer = window->frameGeometry();
        const QRect inner = window->geometry();
        return QMargins(inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
                        outer.bottom() - inner.bottom());
    }
    // Not on screen yet: the window manager's frame is not known, so leave room for a usual one.
    const int border = window->style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, window);
    const int title = window->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, window);
    return QMargins(border, title + border, border, border);
}

QRect constrainFrameRect(const QRect &frame, QScreen *screen, const QMargins &decoration)
{
    if (!screen)
        return frame;
    const QRect available = screen->availableGeometry().marginsRemoved(decoration);
    QRect result = frame;
    result.setWidth(qMin(frame.width(), available.width()));
    result.setHeight(qMin(frame.height(), available.height()));
    if (result.right() > available.right())
        result.moveRight(available.right());
    if (result.bottom() > available.bottom())
        result.moveBottom(available.bottom());
    if (result.left() < available.left())
        result.moveLeft(available.left());
    if (result.top() < available.top())
        result.moveTop(available.top());
    return result;
}

void centerOnScreen(QWidget *window, QScreen *screen)
{
    if (!screen)
        return;
    const QMargins decoration = decorationMargins(window);
    QRect frame = window->geometry().marginsAdded(decoration);
    frame.moveCenter(screen->availableGeometry().center());
    window->move(frame.topLeft() + QPoint(decoration.left(), decoration.top()));
}

QList<QAction *> makeWindowActions(CorvexWindowController *controller, QWidget *window)
{
    auto *rename = new QAction(CorvexWindowController::tr("Rename"), window);
    rename->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
    QObject::connect(rename, &QAction::triggered, controller, [controller] {
        if (controller->renameButton()->isEnabled())
            controller->rename();
    });
    auto *trash = new QAction(CorvexWindowController::tr("Move to Trash"), window);
    trash->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Backspace));
    QObject::connect(trash, &QAction::triggered, controller, &CorvexWindowController::moveToTrash);
    auto *print = new QAction(CorvexWindowController::tr("Print…"), window);
    print->setShortcut(QKeySequence::Print);
    QObject::connect(print, &QAction::triggered, controller, &CorvexWindowController::printDocument);
    auto *cancel = new QAction(CorvexWindowController::tr("Cancel"), window);
    cancel->setShortcuts({QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_Period)});
    QObject::connect(cancel, &QAction::triggered, controller, &CorvexWindowController::cancel);
    auto *close = new QAction(CorvexWindowController::tr("Close Window"), window);
    close->setShortcut(QKeySequence::Close);
    QObject::connect(close, &QAction::triggered, window, &QWidget::close);
    const QList<QAction *> actions{rename, trash, print, cancel, close};
    for (QAction *action : actions)
        action->setShortcutContext(Qt::WindowShortcut);
    window->addActions(actions);
    return actions;
}

} // namespace CorvexWindow
