// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QComboBox>
#include <QKeySequence>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

// The where popup's button: says so before its list opens.
class WherePopupButton : public QComboBox
{
    Q_OBJECT

public:
    using QComboBox::QComboBox;
    void showPopup() override;

Q_SIGNALS:
    void popupAboutToShow();
};

// The renaming window's where popup: the destination folder as its first item, the screenshot's own folder,
// another folder, adding the folder shown to the favourites, editing the favourites, and the favourite
// folders. Items are told apart by their tag; choosing one reports its tag. The favourite folders' icons,
// seen only in the open list, are looked up when it first opens rather than with the window.
class WhereMenu : public QObject
{
    Q_OBJECT

public:
    static constexpr int OtherFolderTag = 401;
    static constexpr int ScreenshotFolderTag = 402;
    static constexpr int AddToFavoritesTag = 403;
    static constexpr int EditFavoritesTag = 404;
    static constexpr int FirstFavoriteTag = 500;

    // Fills the popup with its fixed items; the popup stays the caller's.
    explicit WhereMenu(WherePopupButton *popup, QObject *parent = nullptr);

    // Ctrl+Shift+F: adds the folder shown to the favourites (no text field uses it).
    static QKeySequence addToFavoritesShortcut() { return QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_F); }

    // Shows the folder as the first item and selects it.
    void showFolder(const QString &folderPath);
    // Appends the favourite folders (tags 500 + i from the given first index; Ctrl+1 to Ctrl+9 for the
    // first nine), under a heading.
    void appendFavorites(const QList<QUrl> &urls, qsizetype firstIndex = 0);
    // The tag of the item at the index (0 for the first item and the separators).
    int tagAt(int index) const;
    // The index of the item with the tag, -1 when there is none.
    int indexOfTag(int tag) const;

    // The favourite folders stored in the preferences that can be found, in list order.
    static QList<QUrl> readFavoriteFolderURLs();
    // Adds the folder to the end of the stored favourites; false when it was there already or cannot be
    // kept (logged).
    static bool addFavoriteFolder(const QString &folderPath);

Q_SIGNALS:
    // An item was chosen.
    void tagActivated(int tag);

private:
    void addFavoriteIcons();

    WherePopupButton *mPopup;
    bool mHasFavoritesHeading = false;
};
