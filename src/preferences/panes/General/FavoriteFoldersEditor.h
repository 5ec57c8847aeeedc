// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QUrl>
#include <QWidget>

class QFileSystemWatcher;
class QLabel;
class QListWidget;
class QPushButton;

// The editor of the favourite folders ("favoriteFolderBookmarks"): each folder with its icon, name and path,
// a folder that cannot be found greyed; add (folder dialog), remove, and reorder by dragging or with the
// buttons. Every change is written at once. The list is read again when the stored list changes and when a
// shown folder is deleted or renamed.
class FavoriteFoldersEditor : public QWidget
{
    Q_OBJECT

public:
    explicit FavoriteFoldersEditor(QWidget *parent = nullptr);

    // Adds the folders after the selected row (at the end without a selection); folders already in the list
    // are left out. False, with a message shown below the list, when a folder cannot be bookmarked.
    Q_INVOKABLE bool addFolders(const QList<QUrl> &folders);
    // Removes the selected rows.
    void removeSelected();
    // Moves the selected rows one place up (-1) or down (+1).
    void moveSelected(int step);
    // Reads the stored list again.
    void reload();

    QListWidget *listWidget() const { return mList; }

private:
    void chooseFolders();
    void rowsDragged(int start, int end, int destination);
    void updateButtons();
    void showProblem(const QString &text);
    void selectRows(int first, int count);

    QListWidget *mList = nullptr;
    QPushButton *mAddButton = nullptr;
    QPushButton *mRemoveButton = nullptr;
    QPushButton *mUpButton = nullptr;
    QPushButton *mDownButton = nullptr;
    QLabel *mProblemLabel = nullptr;
    QFileSystemWatcher *mWatcher = nullptr;
    bool mReloading = false;
};
