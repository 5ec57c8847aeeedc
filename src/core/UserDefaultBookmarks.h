// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/BookmarkItem.h"

#include <QList>
#include <QString>
#include <QUrl>
#include <memory>
#include <set>

// The user's favourite folders: an ordered list of BookmarkItems stored as an array of bookmark data under
// one key of the standard preferences. The list is read once, when made. Inserting and removing write the
// whole list back at once; moving does not (call save() afterwards). No operation refuses a folder already in
// the list: ask containsURL() first to avoid duplicates. Main thread only.
//
// Index errors and items that yield nothing where a value is needed throw BookmarkException (Range,
// InvalidArgument), as described at each operation; nothing is changed when one is thrown.
class UserDefaultBookmarks
{
public:
    using IndexSet = std::set<qsizetype>;

    // The list stored under the key: one item per array element, in order, none resolved yet. A missing value
    // or one that is not an array gives an empty list.
    explicit UserDefaultBookmarks(const QString &preferenceKey);

    const QString &preferenceKey() const { return mPreferenceKey; }

    // Stores every item's bookmark data, in list order, under the key. Throws InvalidArgument, storing
    // nothing, when an item's bookmark cannot be made.
    void save();

    qsizetype count() const { return mBookmarkItems.size(); }

    // The item at the index, or the items at the indexes in ascending order. Throws Range for an index
    // outside the list.
    std::shared_ptr<BookmarkItem> bookmarkItemAtIndex(qsizetype index) const;
    QList<std::shared_ptr<BookmarkItem>> bookmarkItemsAtIndexes(const IndexSet &indexes) const;

    // Every item's URL, in list order. Throws InvalidArgument when an item's bookmark cannot be resolved.
    QList<QUrl> URLs() const;

    // True when the URL is a file URL and an item's URL is a file URL with exactly the same path (no
    // normalisation of case, trailing slashes or links). Items whose folder cannot be found are skipped.
    bool containsURL(const QUrl &url) const;

    // Inserts the folder at the index (0...count()) and saves. Throws Range for a larger index, and
    // InvalidArgument (leaving the list as it was) when the folder cannot be bookmarked.
    void insertURL(const QUrl &url, qsizetype index);
    // Inserts the folders, in their order, starting at the index, and saves (also when there are none).
    // Throws Range for an index past the end when there is something to insert.
    void insertURLs(const QList<QUrl> &urls, qsizetype index);

    // Removes the items at the indexes and saves. Throws Range for an index outside the list.
    void removeBookmarkItemsAtIndexes(const IndexSet &indexes);

    // Moves the items at the indexes, keeping their order, to just before the item that is at the
    // destination index now (at the end when it is count()), as dragging rows of a table does: A B C D E with
    // {1, 3} moved to 0 gives B D A C E; {0, 1} moved to 4 gives C D A B E. Does not save. Throws Range for
    // an index outside the list or a destination past count().
    void moveBookmarkItemsAtIndexes(const IndexSet &indexes, qsizetype toIndex);

private:
    void checkIndexes(const IndexSet &indexes) const;
    // Saves; when that throws, puts the list back as it was and throws on.
    void saveOrRestore(const QList<std::shared_ptr<BookmarkItem>> &previous);

    QString mPreferenceKey;
    QList<std::shared_ptr<BookmarkItem>> mBookmarkItems;
};
