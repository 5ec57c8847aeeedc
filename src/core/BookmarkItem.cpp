// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/BookmarkItem.h"

#include "core/BookmarkException.h"
#include "platform/Bookmark.h"

BookmarkItem::BookmarkItem(const QByteArray &bookmarkData) : mBookmarkData(bookmarkData) {}

BookmarkItem::BookmarkItem(const QUrl &url) : mURL(url) {}

std::optional<QByteArray> BookmarkItem::bookmarkData()
{
    if (mBookmarkData)
        return mBookmarkData;
    if (!mURL)
        throw BookmarkException(BookmarkException::InternalInconsistency,
                                QStringLiteral("Can not create bookmark data without a URL"));
    if (mURL->isLocalFile()) {
        const QByteArray data = Bookmark::create(mURL->toLocalFile());
        if (!data.isEmpty())
            mBookmarkData = data;
    }
    return mBookmarkData;
}

std::optional<QUrl> BookmarkItem::URL()
{
    if (mURL)
        return mURL;
    if (!mBookmarkData)
        throw BookmarkException(BookmarkException::InternalInconsistency,
                                QStringLiteral("Can not create a URL without bookmark data"));
    if (const std::optional<QString> path = Bookmark::resolve(*mBookmarkData))
        mURL = QUrl::fromLocalFile(*path);
    return mURL;
}
