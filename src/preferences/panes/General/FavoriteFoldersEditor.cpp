// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "FavoriteFoldersEditor.h"

#include "core/BookmarkException.h"
#include "core/UserDefaultBookmarks.h"
#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"

#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {

QString displayPath(const QString &path)
{
    const QString home = QDir::homePath();
    if (path == home)
        return QStringLiteral("~");
    if (path.startsWith(home + QLatin1Char('/')))
        return QStringLiteral("~") + path.mid(home.size());
    return path;
}

} // namespace

FavoriteFoldersEditor::FavoriteFoldersEditor(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("favoriteFoldersEditor"));
    mList = new QListWidget(this);
    mList->setObjectName(QStringLiteral("favoriteFoldersList"));
    mList->setAccessibleName(tr("Favourite folders"));
    mList->setSelectionMode(QAbstractItemView::ExtendedSelection);
    mList->setDragDropMode(QAbstractItemView::InternalMove);
    mList->setDefaultDropAction(Qt::MoveAction);
    mList->setIconSize(QSize(24, 24));
    mList->setUniformItemSizes(true);
    mList->setMinimumHeight(120);

    mAddButton = new QPushButton(tr("&Add…"), this);
    mAddButton->setAccessibleName(tr("Add a favourite folder"));
    mRemoveButton = new QPushButton(tr("Re&move"), this);
    mRemoveButton->setAccessibleName(tr("Remove the selected favourite folders"));
    mUpButton = new QPushButton(tr("Move &Up"), this);
    mUpButton->setAccessibleName(tr("Move the selected favourite folders up"));
    mDownButton = new QPushButton(tr("Move Do&wn"), this);
    mDownButton->setAccessibleName(tr("Move the selected favourite folders down"));

    mProblemLabel = new QLabel(this);
    mProblemLabel->setObjectName(QStringLiteral("favoriteFoldersProblem"));
    mProblemLabel->setWordWrap(true);
    mProblemLabel->hide();

    auto *buttons = new QVBoxLayout;
    for (QPushButton *button : {mAddButton, mRemoveButton, mUpButton, mDownButton})
        buttons->addWidget(button);
    buttons->addStretch();
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(mList, 1);
    row->addLayout(buttons);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(row);
    layout->addWidget(mProblemLabel);

    mWatcher = new QFileSystemWatcher(this);
    connect(mWatcher, &QFileSystemWatcher::directoryChanged, this,
            [this] { QTimer::singleShot(0, this, &FavoriteFoldersEditor::reload); });
    connect(mAddButton, &QPushButton::clicked, this, &FavoriteFoldersEditor::chooseFolders);
    connect(mRemoveButton, &QPushButton::clicked, this, &FavoriteFoldersEditor::removeSelected);
    connect(mUpButton, &QPushButton::clicked, this, [this] { moveSelected(-1); });
    connect(mDownButton, &QPushButton::clicked, this, [this] { moveSelected(1); });
    connect(mList, &QListWidget::itemSelectionChanged, this, &FavoriteFoldersEditor::updateButtons);
    connect(mList->model(), &QAbstractItemModel::rowsMoved, this,
            [this](const QModelIndex &, int start, int end, const QModelIndex &, int destinationRow) {
                rowsDragged(start, end, destinationRow);
            });
    connect(&UserDefaults::standardUserDefaults(), &UserDefaults::valueChanged, this,
            [this](const QString &key) {
                if (key == kFavoriteFolderBookmarksKey)
                    QTimer::singleShot(0, this, &FavoriteFoldersEditor::reload);
            });
    reload();
}

void FavoriteFoldersEditor::reload()
{
    QList<int> selected;
    for (const QModelIndex &index : mList->selectionModel()->selectedRows())
        selected.append(index.row());

    mReloading = true;
    mList->clear();
    if (!mWatcher->directories().isEmpty())
        mWatcher->removePaths(mWatcher->directories());
    UserDefaultBookmarks bookmarks(kFavoriteFolderBookmarksKey);
    QFileIconProvider icons;
    for (qsizetype i = 0; i < bookmarks.count(); ++i) {
        const std::optional<QUrl> url = bookmarks.bookmarkItemAtIndex(i)->URL();
        const QString path = url && url->isLocalFile() ? url->toLocalFile() : QString();
        const QFileInfo info(path);
        auto *item = new QListWidgetItem(mList);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDragEnabled);
        if (!path.isEmpty() && info.isDir()) {
            const QString name = info.fileName().isEmpty() ? path : info.fileName();
            item->setText(name + QLatin1Char('\n') + displayPath(path));
            item->setIcon(icons.icon(info));
            item->setToolTip(path);
            item->setData(Qt::AccessibleTextRole, name);
            mWatcher->addPath(path);
        } else {
            const QString name = path.isEmpty() ? tr("Unknown folder") : info.fileName();
            item->setText(name + QLatin1Char('\n') +
                          (path.isEmpty() ? tr("cannot be found") : displayPath(path)));
            item->setIcon(QIcon(icons.icon(QFileIconProvider::Folder).pixmap(24, QIcon::Disabled)));
            item->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
            item->setToolTip(path.isEmpty() ? tr("This folder can no longer be found.")
                                            : tr("This folder can no longer be found: %1").arg(path));
            item->setData(Qt::AccessibleTextRole, tr("%1, missing").arg(name));
        }
    }
    for (int row : std::as_const(selected))
        if (QListWidgetItem *item = mList->item(row))
            item->setSelected(true);
    mReloading = false;
    updateButtons();
}

void FavoriteFoldersEditor::chooseFolders()
{
    const QString folder =
        QFileDialog::getExistingDirectory(window(), tr("Add a Favourite Folder"), QDir::homePath());
    if (!folder.isEmpty())
        addFolders({QUrl::fromLocalFile(folder)});
}

bool FavoriteFoldersEditor::addFolders(const QList<QUrl> &folders)
{
    UserDefaultBookmarks bookmarks(kFavoriteFolderBookmarksKey);
    QList<QUrl> fresh;
    for (const QUrl &folder : folders) {
        const QUrl clean = QUrl::fromLocalFile(QDir::cleanPath(folder.toLocalFile()));
        if (!bookmarks.containsURL(clean) && !fresh.contains(clean))
            fresh.append(clean);
    }
    const QList<QModelIndex> selected = mList->selectionModel()->selectedRows();
    qsizetype at = bookmarks.count();
    for (const QModelIndex &index : selected)
        at = qMin<qsizetype>(at, index.row() + 1);
    try {
        bookmarks.insertURLs(fresh, at);
    } catch (const BookmarkException &) {
        showProblem(tr("The folder could not be added: it cannot be found."));
        return false;
    }
    mProblemLabel->hide();
    reload();
    mList->clearSelection();
    selectRows(int(at), int(fresh.size()));
    return true;
}

void FavoriteFoldersEditor::removeSelected()
{
    UserDefaultBookmarks::IndexSet rows;
    for (const QModelIndex &index : mList->selectionModel()->selectedRows())
        rows.insert(index.row());
    if (rows.empty())
        return;
    UserDefaultBookmarks bookmarks(kFavoriteFolderBookmarksKey);
    try {
        bookmarks.removeBookmarkItemsAtIndexes(rows);
    } catch (const BookmarkException &) {
        showProblem(tr("The list of favourite folders could not be saved."));
    }
    mList->clearSelection();
    reload();
}

void FavoriteFoldersEditor::moveSelected(int step)
{
    UserDefaultBookmarks::IndexSet rows;
    for (const QModelIndex &index : mList->selectionModel()->selectedRows())
        rows.insert(index.row());
    if (rows.empty())
        return;
    const qsizetype destination = step < 0 ? *rows.begin() - 1 : *rows.rbegin() + 2;
    UserDefaultBookmarks bookmarks(kFavoriteFolderBookmarksKey);
    if (destination < 0 || destination > bookmarks.count())
        return;
    try {
        bookmarks.moveBookmarkItemsAtIndexes(rows, destination);
        bookmarks.save();
    } catch (const BookmarkException &) {
        showProblem(tr("The list of favourite folders could not be saved."));
        reload();
        return;
    }
    const int first = int(step < 0 ? destination : destination - qsizetype(rows.size()));
    mList->clearSelection();
    reload();
    selectRows(first, int(rows.size()));
}

void FavoriteFoldersEditor::rowsDragged(int start, int end, int destination)
{
    if (mReloading)
        return;
    UserDefaultBookmarks::IndexSet rows;
    for (int row = start; row <= end; ++row)
        rows.insert(row);
    UserDefaultBookmarks bookmarks(kFavoriteFolderBookmarksKey);
    try {
        bookmarks.moveBookmarkItemsAtIndexes(rows, destination);
        bookmarks.save();
    } catch (const BookmarkException &) {
        showProblem(tr("The list of favourite folders could not be saved."));
    }
    // The list widget has moved its rows already; the stored list is read back once the drop is done.
    QTimer::singleShot(0, this, &FavoriteFoldersEditor::reload);
}

void FavoriteFoldersEditor::selectRows(int first, int count)
{
    for (int row = first; row < first + count; ++row)
        if (QListWidgetItem *item = mList->item(row))
            item->setSelected(true);
    if (QListWidgetItem *item = mList->item(first))
        mList->setCurrentItem(item, QItemSelectionModel::NoUpdate);
}

void FavoriteFoldersEditor::updateButtons()
{
    const QList<QModelIndex> selected = mList->selectionModel()->selectedRows();
    int lowest = mList->count();
    int highest = -1;
    for (const QModelIndex &index : selected) {
        lowest = qMin(lowest, index.row());
        highest = qMax(highest, index.row());
    }
    mRemoveButton->setEnabled(!selected.isEmpty());
    mUpButton->setEnabled(!selected.isEmpty() && lowest > 0);
    mDownButton->setEnabled(!selected.isEmpty() && highest < mList->count() - 1);
}

void FavoriteFoldersEditor::showProblem(const QString &text)
{
    mProblemLabel->setText(text);
    mProblemLabel->show();
}
