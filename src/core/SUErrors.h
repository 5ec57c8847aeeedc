// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/CorvexError.h"

// The errors of checking for, downloading and installing updates: domain "CorvexUpdater", the codes below,
// and a sentence for the user as the localized description.
inline const QString kSUErrorDomain = QStringLiteral("CorvexUpdater");

enum class SUError {
    NoFeedURL = 1,               // neither Info.plist nor the preferences name a feed
    FeedDownloadError = 2,       // the feed could not be fetched (network, HTTP status)
    AppcastParseError = 3,       // the feed is empty, not XML or not an RSS channel
    NoReleasesError = 4,         // the feed lists no release with a version
    UninstallableItem = 5,       // the newest release names no archive, version or signature
    DownloadError = 10,          // the archive could not be fetched or saved
    DownloadLengthError = 11,    // the archive is shorter or longer than the feed says
    SignatureError = 12,         // the signature is missing, malformed or does not match
    NoPublicKeyError = 13,       // the running bundle has no usable public key
    UnarchivingError = 20,       // the archive cannot be unpacked (corrupt, unsafe paths, disk full)
    BadBundleError = 21,         // the archive holds no bundle of this application
    InstallationError = 30,      // the bundles could not be swapped
    AuthorizationCancelled = 31, // the user dismissed the administrator password dialog
    PackageManagedError = 32,    // the bundle belongs to a distribution package
    DowngradeError = 33,         // the archive's bundle is not newer than the running one
    CancelledError = 40,         // the user cancelled
};

// An updater error with the sentence shown to the user.
inline CorvexError suError(SUError code, const QString &description)
{
    return CorvexError(kSUErrorDomain, static_cast<long>(code),
                       {{CorvexError::LocalizedDescriptionKey, description}});
}

// True when the error is the updater's error of that code.
inline bool suErrorIs(const CorvexError &error, SUError code)
{
    return error.domain() == kSUErrorDomain && error.code() == static_cast<long>(code);
}
