// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QUrl>

// One release offered by an update feed: its versions, its release notes and the archive that installs it.
class SUAppcastItem
{
public:
    SUAppcastItem() = default;

    QString title;
    QDateTime date;
    // The release notes as HTML, when the feed carries them inline.
    QString itemDescription;
    // Where the release notes are, when the feed links to them instead.
    QUrl releaseNotesURL;

    // The archive: where it is, how many bytes it has (-1 when the feed does not say), its MIME type and
    // the Ed25519 signature of its bytes, in base64.
    QUrl fileURL;
    qint64 contentLength = -1;
    QString contentType;
    QString edSignature;

    // The bundle version ("CFBundleVersion") the archive installs, compared with the running one, and the
    // version shown to the user.
    QString versionString;
    QString shortVersionString;

    // The version to show: the short version, else the bundle version.
    QString displayVersionString() const;

    // True when the item can be installed: it names an archive, a version and a signature.
    bool isInstallable() const;

    // Why the item cannot be installed (a sentence for the user); empty when it can.
    QString installabilityProblem() const;

    // The file name the archive is saved under: the last component of its URL, else "update.tar.xz".
    QString suggestedFileName() const;
};
