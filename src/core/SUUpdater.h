// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SUAppcastItem.h"
#include "foundation/CorvexError.h"
#include "platform/Bundle.h"

#include <QDateTime>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <functional>
#include <memory>

class QTemporaryDir;
class SUDownloader;
class SUUpdaterDelegate;
class TypedPreferences;

// Finds, fetches and installs newer versions of a bundle. A check reads the update feed (Info.plist's
// "SUFeedURL", overridden by the preference of the same name), picks the newest release and compares it with
// the bundle's "CFBundleVersion" and the skipped version. Installing downloads the release's archive, checks
// its length and Ed25519 signature against Info.plist's "SUPublicEDKey", unpacks it beside the bundle,
// replaces the bundle (the old one goes to the Trash) and starts the new one. The installed bundle is never
// touched unless the new one is complete and verified.
//
// The updater shows nothing itself: windows follow its signals and answer with installUpdate(),
// skipVersion() or remindLater().
class SUUpdater : public QObject
{
    Q_OBJECT

public:
    enum class Phase { Idle, Checking, Downloading, Verifying, Unpacking, Installing, Relaunching };
    Q_ENUM(Phase)

    // The updater of the running bundle over the shared preferences, created on first use (main thread).
    static SUUpdater &sharedUpdater();

    // An updater of the given bundle over the given preferences (not owned).
    SUUpdater(const Bundle &hostBundle, TypedPreferences &preferences, QObject *parent = nullptr);
    ~SUUpdater() override;

    // The delegate, not owned; may be null.
    void setDelegate(SUUpdaterDelegate *delegate) { mDelegate = delegate; }
    SUUpdaterDelegate *delegate() const { return mDelegate; }

    const Bundle &hostBundle() const { return mHostBundle; }

    // The feed: the one set here, else the preference "SUFeedURL", else Info.plist's; invalid when none.
    QUrl feedURL() const;
    void setFeedURL(const QUrl &url) { mFeedURL = url; }

    // The feed URL with the profile entries as query parameters.
    QUrl parameterizedFeedURL();

    // The updater's own preferences.
    bool automaticallyChecksForUpdates() const; // "SUEnableAutomaticChecks"
    bool sendsSystemProfile() const;            // "SUSendProfileInfo"
    qint64 updateCheckInterval() const;         // "SUScheduledCheckInterval" in seconds, one day by default
    QDateTime lastUpdateCheckDate() const;      // "SULastCheckTime"; invalid when never
    QString skippedVersion() const;             // "SUSkippedVersion"

    // Starts a check the user asked for (windows follow the signals). Ignored while one runs.
    void checkForUpdates();
    // Starts a check nobody waits for (the agent's schedule). Ignored while one runs.
    void checkForUpdatesInBackground();

    // Answers to updateFound(): download and install the item; never offer this version again; nothing now.
    void installUpdate(const SUAppcastItem &item);
    void skipVersion(const SUAppcastItem &item);
    void remindLater();

    // Stops the running check or download; cancelled() follows. Installing itself cannot be stopped.
    void cancel();

    Phase phase() const { return mPhase; }
    bool isUserInitiated() const { return mUserInitiated; }

    // What happens once the new bundle is in place: by default it is started after this process has quit,
    // and the application quits. Tests record the call instead.
    using RelaunchHandler = std::function<void(const QString &bundlePath)>;
    void setRelaunchHandler(RelaunchHandler handler) { mRelaunchHandler = std::move(handler); }

    // The updater's own system profile entries (operating system, architecture, language, application).
    QList<QVariantMap> systemProfile() const;

Q_SIGNALS:
    void phaseChanged(SUUpdater::Phase phase);
    // A newer version is offered.
    void updateFound(const SUAppcastItem &item);
    // No newer version: the newest in the feed is the running one, older, or skipped.
    void noUpdateFound();
    // The check, the download or the installation failed.
    void failed(const CorvexError &error);
    void cancelled();
    void downloadProgress(qint64 received, qint64 total);
    // The new bundle is in place at the path.
    void installed(const QString &bundlePath);

private:
    void startCheck(bool userInitiated);
    void feedFinished(bool ok);
    void archiveFinished(bool ok);
    bool installDownloadedArchive(CorvexError *error);
    void fail(const CorvexError &error);
    void setPhase(Phase phase);
    void recordCheckTime();

    Bundle mHostBundle;
    TypedPreferences &mPreferences;
    SUUpdaterDelegate *mDelegate = nullptr;
    QUrl mFeedURL;
    Phase mPhase = Phase::Idle;
    bool mUserInitiated = false;
    SUDownloader *mDownloader;
    SUAppcastItem mItem;
    std::unique_ptr<QTemporaryDir> mDownloadFolder;
    QString mArchivePath;
    RelaunchHandler mRelaunchHandler;
};
