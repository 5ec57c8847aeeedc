// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WhereMenu.h"

#include "app/PathNames.h"
#include "app/WhereItemDelegate.h"
#include "core/BookmarkException.h"
#include "core/BookmarkItem.h"
#include "core/UserDefaultBookmarks.h"
#include "foundation/PreferenceKeys.h"
#include "logging/Log.h"

#include <QStandardItemModel>

void WherePopupButton::showPopup()
{
    Q_EMIT popupAboutToShow();
    QComboBox::showPopup();
}

WhereMenu::WhereMenu(WherePopupButton *popup, QObject *parent) : QObject(parent), mPopup(popup)
{
    mPopup->setIconSize(QSize(16, 16));
    mPopup->setItemDelegate(new WhereItemDelegate(mPopup));
    // The chosen folder (rewritten by showFolder), the screenshot's own folder, another folder, then the
    // favourites' own entries; the favourite folders follow.
    mPopup->addItem(QString());
    mPopup->insertSeparator(1);
    mPopup->addItem(tr("Screenshot’s Folder"));
    mPopup->setItemData(2, ScreenshotFolderTag, WhereItemDelegate::TagRole);
    mPopup->addItem(tr("Other…"));
    mPopup->setItemData(3, OtherFolderTag, WhereItemDelegate::TagRole);
    mPopup->insertSeparator(4);
    mPopup->addItem(tr("Add to Favourites"));
    mPopup->setItemData(5, AddToFavoritesTag, WhereItemDelegate::TagRole);
    mPopup->setItemData(5, addToFavoritesShortcut(), WhereItemDelegate::KeyEquivalentRole);
    mPopup->addItem(tr("Edit Favourites…"));
    mPopup->setItemData(6, EditFavoritesTag, WhereItemDelegate::TagRole);
    connect(mPopup, &QComboBox::activated, this, [this](int index) { Q_EMIT tagActivated(tagAt(index)); });
    connect(mPopup, &WherePopupButton::popupAboutToShow, this, &WhereMenu::addFavoriteIcons);
}

void WhereMenu::showFolder(const QString &folderPath)
{
    mPopup->setItemText(0, PathNames::displayNameAtPath(folderPath));
    mPopup->setItemIcon(0, PathNames::folderIcon(folderPath));
    mPopup->setItemData(0, folderPath, Qt::ToolTipRole);
    mPopup->setCurrentIndex(0);
}

void WhereMenu::appendFavorites(const QList<QUrl> &urls, qsizetype firstIndex)
{
    if (!urls.isEmpty() && !mHasFavoritesHeading) {
        mHasFavoritesHeading = true;
        mPopup->insertSeparator(mPopup->count());
        mPopup->addItem(tr("Favorites"));
        auto *model = qobject_cast<QStandardItemModel *>(mPopup->model());
        if (QStandardItem *heading = model ? model->item(mPopup->count() - 1) : nullptr)
            heading->setEnabled(false);
    }
    for (qsizetype i = 0; i < urls.size(); ++i) {
        const qsizetype number = firstIndex + i;
        const QString path = urls.at(i).toLocalFile();
        mPopup->addItem(PathNames::displayNameAtPath(path));
        const int index = mPopup->count() - 1;
        mPopup->setItemData(index, FirstFavoriteTag + int(number), WhereItemDelegate::TagRole);
        mPopup->setItemData(index, 1, WhereItemDelegate::IndentationRole);
        mPopup->setItemData(index, path, Qt::ToolTipRole);
        if (number < 9)
            mPopup->setItemData(index, QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + number)),
                                WhereItemDelegate::KeyEquivalentRole);
    }
}

void WhereMenu::addFavoriteIcons()
{
    // Before the list measures its rows, so that it opens at the size the icons give it. A favourite's tool
    // tip is its folder's path.
    for (int index = 0; index < mPopup->count(); ++index) {
        if (tagAt(index) >= FirstFavoriteTag && mPopup->itemIcon(index).isNull())
            mPopup->setItemIcon(index,
                                PathNames::folderIcon(mPopup->itemData(index, Qt::ToolTipRole).toString()));
    }
}

int WhereMenu::tagAt(int index) const
{
    return mPopup->itemData(index, WhereItemDelegate::TagRole).toInt();
}

int WhereMenu::indexOfTag(int tag) const
{
    return mPopup->findData(tag, WhereItemDelegate::TagRole);
}

QList<QUrl> WhereMenu::readFavoriteFolderURLs()
{
    // A fresh list for every window, read once; a favourite whose folder can no longer be found is left out
    // (the window offers the others) rather than failing the whole list.
    QList<QUrl> urls;
    const UserDefaultBookmarks bookmarks(kFavoriteFolderBookmarksKey);
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

bool WhereMenu::addFavoriteFolder(const QString &folderPath)
{
    const QUrl url = QUrl::fromLocalFile(folderPath);
    UserDefaultBookmarks bookmarks(kFavoriteFolderBookmarksKey);
    if (folderPath.isEmpty() || bookmarks.containsURL(url))
        return false;
    try {
        bookmarks.insertURL(url, bookmarks.count());
    } catch (const BookmarkException &exception) {
        DDLogError(
            QStringLiteral("Could not add %1 to the favorite folders: %2").arg(folderPath, exception.name()));
        return false;
    }
    return true;
}
