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
// "Screenshots" folder in place; that feature moves new screenshots away from under Corvex. A check reads one
// home folder and learns about the client from one source; nothing is kept between calls, and every
// operation is safe on any thread.
//
// On Linux the client runs from "~/.dropbox-dist/dropbox-lnx.<arch>-<version>/dropbox"; its version is in
// that folder's name and in "~/.dropbox-dist/VERSION". A bundle with the client's identifier counts as well.
class DropboxCheck
{
public:
    using ClientFactsSource = std::function<DropboxClientFacts()>;

    // The check of the user's home folder and of the client this machine runs.
    DropboxCheck();
    // A check of another home folder, learning about the client from the source given.
    DropboxCheck(QString homeFolder, ClientFactsSource clientFacts);

    // The client's bundle identifier, the first version with the feature, the prefix removed from versions.
    static inline const QString DropboxBundleIdentifier = QStringLiteral("com.getdropbox.dropbox");
    static inline const QString MinimumVersion = QStringLiteral("2.4.0");
    static inline const QString VersionPrefix = QStringLiteral("Dropbox ");

    // The warning checkDropbox() logs.
    static QString incompatibilityWarning();

    // True when the running client has the feature (both of its versions at least 2.4.0) and a Dropbox
    // folder (from "host.db" or "info.json") holds a "Screenshots" directory.
    bool screenshotFolderTest() const;

    // Logs the warning at warning level when screenshotFolderTest() is true; otherwise does nothing. Run once
    // per launch, off the main thread.
    void checkDropbox() const;

    // True when a client is running and neither of its versions (with "Dropbox " removed) is older
    // than 2.4.0; a missing version counts as older.
    bool runningClientTest() const;

    // The Dropbox folder named in "~/.dropbox/host.db" (second line, base64 of the UTF-8 path), or nothing
    // when the file is missing, too short or its line does not decode.
    std::optional<QString> dropboxFolder() const;

    // The folders named in "~/.dropbox/info.json", where current clients record them: the "path" of its
    // "personal" and "business" accounts, in that order. A missing file gives none; a malformed one gives
    // none and a warning in the log.
    QStringList accountFolders() const;

    // Decodes base64 the way the client's settings need: the text plus a newline through OpenSSL's base64
    // filter, read in 256-byte chunks. Nothing when the filter fails, yields no bytes or fewer than the text
    // encodes (the filter decodes lines of at most 1024 characters whole, paths of up to 760 bytes).
    static std::optional<QByteArray> decodeBase64(const QByteArray &text);

    // The version in a client folder name such as "dropbox-lnx.x86_64-2.4.0"; a null string when none.
    static QString versionFromDistributionFolderName(const QString &folderName);

    // The facts about the client as this machine shows them: a process running from the home folder's
    // ".dropbox-dist" or named "dropbox", or a running bundle with the client's identifier.
    static DropboxClientFacts systemClientFacts(const QString &homeFolder);

    // The client facts and the home folder this check reads.
    DropboxClientFacts clientFacts() const;
    const QString &homeFolder() const { return mHomeFolder; }

private:
    QString mHomeFolder;
    ClientFactsSource mClientFacts;
};
