// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/UserDefaultBookmarks.h"

#include "core/BookmarkException.h"
#include "core/UserDefaults.h"

#include <QVariantList>

namespace {

[[noreturn]] void throwRange(qsizetype index, qsizetype count)
{
    throw BookmarkException(BookmarkException::Range,
                            QStringLiteral("index %1 beyond bounds [0 .. %2]").arg(index).arg(count - 1));
}

} // namespace

UserDefaultBookmarks::UserDefaultBookmarks(const QString &preferenceKey) : mPreferenceKey(preferenceKey)
{
    const std::optional<QVariantList> stored =
        UserDefaults::standardUserDefaults().arrayForKey(mPreferenceKey);
    if (!stored)
        return;
    for (const QVariant &element : *stored)
        mBookmarkItems.append(std::make_shared<BookmarkItem>(element.toByteArray()));
}

void UserDefaultBookmarks::save()
{
    QVariantList array;
    array.reserve(mBookmarkItems.size());
    for (const std::shared_ptr<BookmarkItem> &item : std::as_const(mBookmarkItems)) {
        const std::optional<QByteArray> data = item->bookmarkData();
        if (!data)
            throw BookmarkException(
                BookmarkException::InvalidArgument,
                QStringLiteral("attempt to insert nil object from objects[%1]").arg(array.size()));
        array.append(*data);
    }
    UserDefaults::standardUserDefaults().setObject(array, mPreferenceKey);
}

void UserDefaultBookmarks::saveOrRestore(const QList<std::shared_ptr<BookmarkItem>> &previous)
{
    try {
        save();
    } catch (...) {
        mBookmarkItems = previous;
        throw;
    }
}

void UserDefaultBookmarks::checkIndexes(const IndexSet &indexes) const
{
    if (indexes.empty())
        return;
    if (*indexes.begin() < 0)
        throwRange(*indexes.begin(), count());
    if (*indexes.rbegin() >= count())
        throwRange(*indexes.rbegin(), count());
}

std::shared_ptr<BookmarkItem> UserDefaultBookmarks::bookmarkItemAtIndex(qsizetype index) const
{
    checkIndexes({index});
    return mBookmarkItems.at(index);
}

QList<std::shared_ptr<BookmarkItem>>
UserDefaultBookmarks::bookmarkItemsAtIndexes(const IndexSet &indexes) const
{
    checkIndexes(indexes);
    QList<std::shared_ptr<BookmarkItem>> items;
    for (const qsizetype index : indexes)
        items.append(mBookmarkItems.at(index));
    return items;
}

QList<QUrl> UserDefaultBookmarks::URLs() const
{
    QList<QUrl> urls;
    urls.reserve(mBookmarkItems.size());
    for (const std::shared_ptr<BookmarkItem> &item : mBookmarkItems) {
        const std::optional<QUrl> url = item->URL();
        if (!url)
            throw BookmarkException(
                BookmarkException::InvalidArgument,
                QStringLiteral("attempt to insert nil object from objects[%1]").arg(urls.size()));
        urls.append(*url);
    }
    return urls;
}

bool UserDefaultBookmarks::containsURL(const QUrl &url) const
{
    if (!url.isLocalFile())
        return false;
    const QString path = url.path();
    for (const std::shared_ptr<BookmarkItem> &item : mBookmarkItems) {
        const std::optional<QUrl> itemURL = item->URL();
        if (itemURL && itemURL->isLocalFile() && itemURL->path() == path)
            return true;
    }
    return false;
}

void UserDefaultBookmarks::insertURL(const QUrl &url, qsizetype index)
{
    insertURLs({url}, index);
}

void UserDefaultBookmarks::insertURLs(const QList<QUrl> &urls, qsizetype index)
{
    if (!urls.isEmpty() && (index < 0 || index > count()))
        throwRange(index, count() + 1);
    const QList<std::shared_ptr<BookmarkItem>> previous = mBookmarkItems;
    // Each inserted at the same index, last first, so that they end up in their given order.
    for (auto url = urls.crbegin(); url != urls.crend(); ++url)
        mBookmarkItems.insert(index, std::make_shared<BookmarkItem>(*url));
    saveOrRestore(previous);
}

void UserDefaultBookmarks::removeBookmarkItemsAtIndexes(const IndexSet &indexes)
{
    checkIndexes(indexes);
    const QList<std::shared_ptr<BookmarkItem>> previous = mBookmarkItems;
    for (auto index = indexes.crbegin(); index != indexes.crend(); ++index)
        mBookmarkItems.removeAt(*index);
    saveOrRestore(previous);
}

void UserDefaultBookmarks::moveBookmarkItemsAtIndexes(const IndexSet &indexes, qsizetype toIndex)
{
    checkIndexes(indexes);
    if (indexes.empty())
        return;
    if (toIndex < 0 || toIndex > count())
        throwRange(toIndex, count() + 1);
    // From the highest index down: an item from below the destination is taken out in front of it, so the
    // destination moves up by one; an item from at or after it sits `below` places further on by now, the
    // items already moved having been put in front of it.
    qsizetype insertAt = toIndex;
    qsizetype below = 0;
    for (auto index = indexes.crbegin(); index != indexes.crend(); ++index) {
        qsizetype removeAt = *index;
        if (*index >= insertAt) {
            removeAt = *index + below;
            ++below;
        } else {
            --insertAt;
        }
        std::shared_ptr<BookmarkItem> item = mBookmarkItems.takeAt(removeAt);
        mBookmarkItems.insert(insertAt, std::move(item));
    }
}
