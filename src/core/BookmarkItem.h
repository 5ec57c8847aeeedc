// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QUrl>
#include <optional>

// One favourite folder, held as bookmark data, as a URL, or both. Whichever is missing is made from the other
// on first request and then kept for the item's life (a failed attempt is tried again on the next request).
class BookmarkItem
{
public:
    // An item with neither: asking it for either throws (see below).
    BookmarkItem() = default;
    // An item holding the bookmark data (even empty data counts as held); the URL comes later.
    explicit BookmarkItem(const QByteArray &bookmarkData);
    // An item holding the URL; the bookmark data comes later.
    explicit BookmarkItem(const QUrl &url);

    // The bookmark data, made from the URL when not held yet; nothing when the URL is not a file URL or its
    // item cannot be bookmarked. Throws BookmarkException (InternalInconsistency, "Can not create bookmark
    // data without a URL") when the item holds neither.
    std::optional<QByteArray> bookmarkData();

    // The folder's file URL, found through the bookmark when not held yet (without asking the user anything
    // and without mounting anything); nothing when the bookmarked folder cannot be found. A bookmark that
    // found its folder somewhere else is not remade. Throws BookmarkException (InternalInconsistency, "Can
    // not create a URL without bookmark data") when the item holds neither.
    std::optional<QUrl> URL();

private:
    std::optional<QByteArray> mBookmarkData;
    std::optional<QUrl> mURL;
};
