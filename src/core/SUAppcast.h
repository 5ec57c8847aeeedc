// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SUAppcastItem.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

class CorvexError;

// An update feed: an RSS 2.0 channel whose items are releases. The elements and attributes of Corvex's own
// namespace "urn:corvex:appcast:1" carry what RSS has no word for:
//
//   <enclosure url="…/Corvex-2.1-x86_64.tar.xz" length="…" type="application/x-xz"
//              corvex:version="2.1.0" corvex:shortVersionString="2.1" corvex:edSignature="BASE64"/>
//   <corvex:releaseNotesLink>https://…</corvex:releaseNotesLink>
class SUAppcast
{
public:
    static inline const QString kNamespace = QStringLiteral("urn:corvex:appcast:1");

    SUAppcast() = default;

    // Reads a feed; relative links resolve against the base URL. False, with an error that says what is
    // wrong and where, for text that is not XML or not an RSS channel; a channel without items is a feed
    // with no items.
    bool parse(const QByteArray &xml, const QUrl &baseURL, CorvexError *error = nullptr);

    // The items in feed order.
    const QList<SUAppcastItem> &items() const { return mItems; }

    enum class Choice {
        UpdateAvailable, // *item is newer than the running version and was not skipped
        UpToDate,        // the newest item is not newer than the running version (a downgrade never counts)
        SkippedVersion,  // the newest item is the version the user chose to skip
        NoItems,         // the feed lists no release with a version
    };

    // The newest item (by the standard version comparator) and how it relates to the running version.
    Choice chooseItem(const QString &hostVersion, const QString &skippedVersion, SUAppcastItem *item) const;

private:
    QList<SUAppcastItem> mItems;
};
