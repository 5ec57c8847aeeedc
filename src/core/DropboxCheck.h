// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

// What is known about a running Dropbox client.
struct DropboxClientFacts
{
    bool running = false;
    QString bundleVersion;      // null when unknown
    QString shortVersionString; // null when unknown
};

// Whether the Dropbox client runs in a version that has its own screenshot-sharing feature and has its
// "Screenshots" folder in place; that feature moves new screenshots away from under Corvex. Nothing here is
// kept between calls; every operation is safe on any thread.
//
// On Linux the client runs from "~/.dropbox-dist/dropbox-lnx.<arch>-<version>/dropbox"; its version is in
// that folder's name and in "~/.dropbox-dist/VERSION". A bundle with the client's identifier counts as well.
class DropboxCheck
{
public:
    DropboxCheck() = delete;

    // The client's bundle identifier, the first version with the feature, the prefix removed from versions.
    static inline const QString DropboxBundleIdentifier = QStringLiteral("com.getdropbox.dropbox");
    static inline const QString MinimumVersion = QStringLiteral("2.4.0");
    static inline const QString VersionPrefix = QStringLiteral("Dropbox ");

    // The warning checkDropbox() logs.
    static QString incompatibilityWarning();

    // True when the running client has the feature (both of its versions at least 2.4.0) and a Dropbox
    // folder (from "host.db" or "info.json") holds a "Screenshots" directory.
    static bool screenshotFolderTest();

    // Logs the warning at warning level when screenshotFolderTest() is true; otherwise does nothing. Run once
    // per launch, off the main thread.
    static void checkDropbox();

    // True when a client is running and neither of its versions (with "Dropbox " removed) is older
    // than 2.4.0; a missing version counts as older.
    static bool runningClientTest();

    // The Dropbox folder named in "~/.dropbox/host.db" (second line, base64 of the UTF-8 path), or nothing
    // when the file is missing, too short or its line does not decode.
    static std::optional<QString> dropboxFolder();

    // The folders named in "~/.dropbox/info.json", where current clients record them: the "path" of its
    // "personal" and "business" accounts, in that order. A missing file gives none; a malformed one gives
    // none and a warning in the log.
    static QStringList accountFolders();

    // Decodes base64 the way the client's settings need: the text plus a newline through OpenSSL's base64
    // filter, read in 256-byte chunks. Nothing when the filter fails, yields no bytes or fewer than the text
    // encodes (the filter decodes lines of at most 1024 characters whole, paths of up to 760 bytes).
    static std::optional<QByteArray> decodeBase64(const QByteArray &text);

    // The version in a client folder name such as "dropbox-lnx.x86_64-2.4.0"; a null string when none.
    static QString versionFromDistributionFolderName(const QString &folderName);

    // The facts about the client as this machine shows them: a process running from "~/.dropbox-dist" or
    // named "dropbox", or a running bundle with the client's identifier.
    static DropboxClientFacts systemClientFacts();

    // Test seams. The client facts and the home folder come from these when set; reset returns to the
    // system's.
    using ClientFactsProvider = std::function<DropboxClientFacts()>;
    static void setClientFactsProvider(ClientFactsProvider provider);
    static void resetClientFactsProvider();
    static void setHomeFolder(const QString &homeFolder);
    static void resetHomeFolder();

    // The client facts and home folder in use (the seams' when set).
    static DropboxClientFacts clientFacts();
    static QString homeFolder();
};
