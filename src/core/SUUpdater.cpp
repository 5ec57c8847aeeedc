// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUUpdater.h"

#include "core/AppUserDefaults.h"
#include "core/SUAppcast.h"
#include "core/SUDownloader.h"
#include "core/SUErrors.h"
#include "core/SUInstaller.h"
#include "core/SUSignatureVerifier.h"
#include "core/SUUpdateArchive.h"
#include "core/SUUpdaterDelegate.h"
#include "foundation/PreferenceKeys.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QThread>
#include <QUrlQuery>
#include <algorithm>

namespace updater {

QString tr(const char *text)
{
    return QCoreApplication::translate("SUUpdater", text);
}

// A feed larger than this is not a feed.
constexpr qint64 kMaximumFeedLength = 4 * 1024 * 1024;
constexpr qint64 kDefaultCheckInterval = 24 * 60 * 60;
constexpr qint64 kMinimumCheckInterval = 60 * 60;

QVariantMap profileEntry(const QString &key, const QString &displayKey, const QVariant &value,
                         const QString &displayValue)
{
    return {{QStringLiteral("key"), key},
            {QStringLiteral("displayKey"), displayKey},
            {QStringLiteral("value"), value},
            {QStringLiteral("displayValue"), displayValue}};
}

// The folder downloads are kept in while they are checked.
QString downloadsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
           QStringLiteral("/corvex/updates");
}

} // namespace updater

SUUpdater &SUUpdater::sharedUpdater()
{
    static SUUpdater *shared = new SUUpdater(Bundle::mainBundle(), AppUserDefaults::sharedCorvexDefaults());
    return *shared;
}

SUUpdater::SUUpdater(const Bundle &hostBundle, TypedPreferences &preferences, QObject *parent)
    : QObject(parent), mHostBundle(hostBundle), mPreferences(preferences), mDownloader(new SUDownloader(this))
{
    connect(mDownloader, &SUDownloader::progress, this, &SUUpdater::downloadProgress);
    connect(mDownloader, &SUDownloader::finished, this, [this](bool ok) {
        if (mPhase == Phase::Checking)
            feedFinished(ok);
        else if (mPhase == Phase::Downloading)
            archiveFinished(ok);
    });
    mRelaunchHandler = [](const QString &bundlePath) {
        SUInstaller::relaunch(bundlePath, QCoreApplication::applicationPid());
        QCoreApplication::quit();
    };
}

SUUpdater::~SUUpdater() = default;

QUrl SUUpdater::feedURL() const
{
    if (mFeedURL.isValid() && !mFeedURL.isEmpty())
        return mFeedURL;
    QString text = mPreferences.stringForKey(kSUFeedURLKey).trimmed();
    if (text.isEmpty())
        text = mHostBundle.objectForInfoDictionaryKey(kSUFeedURLKey).toString().trimmed();
    const QUrl url(text, QUrl::StrictMode);
    return url.isValid() && !url.scheme().isEmpty() ? url : QUrl();
}

QList<QVariantMap> SUUpdater::systemProfile() const
{
    using updater::profileEntry;
    QList<QVariantMap> entries;
    entries << profileEntry(QStringLiteral("osName"), tr("Operating System"), QSysInfo::productType(),
                            QSysInfo::prettyProductName());
    entries << profileEntry(QStringLiteral("osVersion"), tr("OS Version"), QSysInfo::productVersion(),
                            QSysInfo::productVersion());
    entries << profileEntry(QStringLiteral("kernelVersion"), tr("Kernel Version"), QSysInfo::kernelVersion(),
                            QSysInfo::kernelVersion());
    entries << profileEntry(QStringLiteral("cpuArch"), tr("CPU Architecture"),
                            QSysInfo::currentCpuArchitecture(), QSysInfo::currentCpuArchitecture());
    entries << profileEntry(QStringLiteral("ncpu"), tr("Number of CPUs"), QThread::idealThreadCount(),
                            QString::number(QThread::idealThreadCount()));
    entries << profileEntry(QStringLiteral("lang"), tr("Preferred Language"), QLocale().name(),
                            QLocale().name());
    entries << profileEntry(QStringLiteral("appName"), tr("Application Name"), mHostBundle.bundleName(),
                            mHostBundle.bundleName());
    entries << profileEntry(QStringLiteral("appVersion"), tr("Application Version"),
                            mHostBundle.bundleVersion(), mHostBundle.bundleVersion());
    return entries;
}

QUrl SUUpdater::parameterizedFeedURL()
{
    QUrl url = feedURL();
    if (!url.isValid())
        return url;
    const bool sendingProfile = sendsSystemProfile();
    QList<QVariantMap> entries;
    if (mDelegate)
        entries = mDelegate->feedParametersForUpdater(this, sendingProfile);
    if (sendingProfile)
        entries += systemProfile();
    if (entries.isEmpty())
        return url;
    QUrlQuery query(url);
    QStringList seen;
    for (const QVariantMap &entry : entries) {
        const QString key = entry.value(QStringLiteral("key")).toString();
        if (key.isEmpty() || seen.contains(key))
            continue;
        seen << key;
        query.addQueryItem(key, entry.value(QStringLiteral("value")).toString());
    }
    url.setQuery(query);
    return url;
}

bool SUUpdater::automaticallyChecksForUpdates() const
{
    return mPreferences.boolForKey(kSUEnableAutomaticChecksKey);
}

bool SUUpdater::sendsSystemProfile() const
{
    return mPreferences.boolForKey(kSUSendProfileInfoKey);
}

qint64 SUUpdater::updateCheckInterval() const
{
    const qint64 interval = mPreferences.integerForKey(kSUScheduledCheckIntervalKey);
    if (interval <= 0)
        return updater::kDefaultCheckInterval;
    return std::max(interval, updater::kMinimumCheckInterval);
}

QDateTime SUUpdater::lastUpdateCheckDate() const
{
    return mPreferences.objectForKey(kSULastCheckTimeKey).toDateTime();
}

QString SUUpdater::skippedVersion() const
{
    return mPreferences.stringForKey(kSUSkippedVersionKey);
}

void SUUpdater::checkForUpdates()
{
    startCheck(true);
}

void SUUpdater::checkForUpdatesInBackground()
{
    startCheck(false);
}

void SUUpdater::startCheck(bool userInitiated)
{
    if (mPhase != Phase::Idle)
        return;
    mUserInitiated = userInitiated;
    const QUrl url = parameterizedFeedURL();
    setPhase(Phase::Checking);
    if (!url.isValid()) {
        fail(suError(SUError::NoFeedURL, tr("No update feed is set: Info.plist and the preferences name no "
                                            "valid \"SUFeedURL\".")));
        return;
    }
    mDownloader->startToMemory(url, updater::kMaximumFeedLength);
}

void SUUpdater::feedFinished(bool ok)
{
    if (!ok) {
        recordCheckTime();
        if (suErrorIs(mDownloader->error(), SUError::CancelledError)) {
            setPhase(Phase::Idle);
            Q_EMIT cancelled();
        } else {
            fail(mDownloader->error());
        }
        return;
    }
    recordCheckTime();
    SUAppcast appcast;
    CorvexError error;
    if (!appcast.parse(mDownloader->data(), feedURL(), &error)) {
        fail(error);
        return;
    }
    SUAppcastItem item;
    switch (appcast.chooseItem(mHostBundle.bundleVersion(), skippedVersion(), &item)) {
    case SUAppcast::Choice::NoItems:
        fail(suError(SUError::NoReleasesError, tr("The update feed lists no release with a version.")));
        return;
    case SUAppcast::Choice::UpToDate:
    case SUAppcast::Choice::SkippedVersion:
        setPhase(Phase::Idle);
        Q_EMIT noUpdateFound();
        return;
    case SUAppcast::Choice::UpdateAvailable:
        break;
    }
    if (!item.isInstallable()) {
        fail(suError(SUError::UninstallableItem, item.installabilityProblem()));
        return;
    }
    mItem = item;
    setPhase(Phase::Idle);
    Q_EMIT updateFound(item);
}

void SUUpdater::installUpdate(const SUAppcastItem &item)
{
    if (mPhase != Phase::Idle)
        return;
    mItem = item;
    mUserInitiated = true;
    setPhase(Phase::Downloading);
    if (!item.isInstallable()) {
        fail(suError(SUError::UninstallableItem, item.installabilityProblem()));
        return;
    }
    const QString package = SUInstaller::owningPackage(mHostBundle.bundlePath());
    if (!package.isEmpty()) {
        fail(suError(SUError::PackageManagedError,
                     tr("Corvex was installed with the package \"%1\". Update it with your system's package "
                        "manager (for example \"sudo apt update && sudo apt upgrade\").")
                         .arg(package)));
        return;
    }
    QDir().mkpath(updater::downloadsFolder());
    mDownloadFolder =
        std::make_unique<QTemporaryDir>(updater::downloadsFolder() + QStringLiteral("/download-XXXXXX"));
    if (!mDownloadFolder->isValid()) {
        fail(suError(SUError::DownloadError,
                     tr("No folder for the download can be made in %1: %2")
                         .arg(updater::downloadsFolder(), mDownloadFolder->errorString())));
        return;
    }
    mArchivePath = mDownloadFolder->filePath(item.suggestedFileName());
    mDownloader->startToFile(item.fileURL, mArchivePath, item.contentLength);
}

void SUUpdater::skipVersion(const SUAppcastItem &item)
{
    mPreferences.setObject(item.versionString, kSUSkippedVersionKey);
}

void SUUpdater::remindLater()
{
    // Nothing to remember: the next scheduled check offers the version again.
}

void SUUpdater::cancel()
{
    if (mPhase == Phase::Checking || mPhase == Phase::Downloading)
        mDownloader->cancel();
}

void SUUpdater::archiveFinished(bool ok)
{
    if (!ok) {
        mDownloadFolder.reset();
        if (suErrorIs(mDownloader->error(), SUError::CancelledError)) {
            setPhase(Phase::Idle);
            Q_EMIT cancelled();
        } else {
            fail(mDownloader->error());
        }
        return;
    }
    CorvexError error;
    const bool done = installDownloadedArchive(&error);
    mDownloadFolder.reset();
    if (!done) {
        fail(error);
        return;
    }
    setPhase(Phase::Relaunching);
    if (mDelegate)
        mDelegate->updaterWillRelaunchApplication(this);
    Q_EMIT installed(mHostBundle.bundlePath());
    const QString bundlePath = mHostBundle.bundlePath();
    mHostBundle = Bundle(bundlePath);
    if (mRelaunchHandler)
        mRelaunchHandler(bundlePath);
    setPhase(Phase::Idle);
}

bool SUUpdater::installDownloadedArchive(CorvexError *error)
{
    setPhase(Phase::Verifying);
    const SUSignatureVerifier verifier(
        mHostBundle.objectForInfoDictionaryKey(QStringLiteral("SUPublicEDKey")).toString());
    if (!verifier.isValid()) {
        *error = suError(
            SUError::NoPublicKeyError,
            tr("This copy of Corvex has no valid public key (\"SUPublicEDKey\") to check updates with: "
               "%1")
                .arg(verifier.keyError()));
        return false;
    }
    if (!verifier.verifyFile(mArchivePath, mItem.edSignature, error))
        return false;

    setPhase(Phase::Unpacking);
    const QString installedPath = mHostBundle.bundlePath();
    const bool privileged = !SUInstaller::canReplaceBundle(installedPath);
    // Unpacked beside the bundle, so that putting it in place is a rename on the same file system.
    const QString stagingParent =
        privileged ? mDownloadFolder->path() : QFileInfo(installedPath).absolutePath();
    QTemporaryDir staging(stagingParent + QStringLiteral("/.Corvex-update-XXXXXX"));
    if (!staging.isValid()) {
        *error =
            suError(SUError::UnarchivingError, tr("No folder to unpack the update into can be made in %1: %2")
                                                   .arg(stagingParent, staging.errorString()));
        return false;
    }
    QString newBundlePath;
    if (!SUUpdateArchive::unpack(mArchivePath, staging.path(), &newBundlePath, error))
        return false;
    if (!SUInstaller::validateBundle(Bundle(newBundlePath), mHostBundle, mItem.versionString, error))
        return false;

    setPhase(Phase::Installing);
    if (mDelegate)
        mDelegate->updaterWillInstallUpdate(this, mItem);
    if (privileged)
        return SUInstaller::swapBundlesWithPrivileges(newBundlePath, installedPath, error);
    return SUInstaller::swapBundles(newBundlePath, installedPath, nullptr, error);
}

void SUUpdater::fail(const CorvexError &error)
{
    setPhase(Phase::Idle);
    Q_EMIT failed(error);
}

void SUUpdater::setPhase(Phase phase)
{
    if (mPhase == phase)
        return;
    mPhase = phase;
    Q_EMIT phaseChanged(phase);
}

void SUUpdater::recordCheckTime()
{
    mPreferences.setObject(QDateTime::currentDateTimeUtc(), kSULastCheckTimeKey);
}

// The meta-object code goes with this file, not with the layer's other classes: a program then links only
// the libraries of the classes it uses.
#include "moc_SUUpdater.cpp"
