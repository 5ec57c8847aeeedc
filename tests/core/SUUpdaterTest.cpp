// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUUpdater.h"
#include "SUTestSupport.h"
#include "core/AppUserDefaults.h"
#include "core/SUErrors.h"
#include "core/SUUpdaterDelegate.h"
#include "foundation/PreferenceKeys.h"

#include <QSignalSpy>
#include <QUrlQuery>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::home;
using corvex::test::waitUntil;

// Records the delegate calls in order, and answers the profile entries.
class RecordingDelegate : public SUUpdaterDelegate
{
public:
    QList<QVariantMap> feedParametersForUpdater(SUUpdater *, bool sendingSystemProfile) override
    {
        calls << (sendingSystemProfile ? "parameters+profile" : "parameters");
        return {{{"key", "appVersion"},
                 {"displayKey", "Application Version"},
                 {"value", "2.0.5"},
                 {"displayValue", "2.0.5"}}};
    }
    void updaterWillInstallUpdate(SUUpdater *, const SUAppcastItem &item) override
    {
        calls << "willInstall " + item.versionString;
        bundleVersionAtInstall = Bundle(bundlePath).bundleVersion();
    }
    void updaterWillRelaunchApplication(SUUpdater *) override { calls << "willRelaunch"; }

    QStringList calls;
    QString bundlePath;
    QString bundleVersionAtInstall;
};

// One installed bundle of version 2.0.5 in its own Applications folder, an updater over it, a server and a
// signing key.
class SUUpdaterTest : public testing::Test
{
protected:
    void SetUp() override
    {
        static int count = 0;
        appsFolder = home() + u"/Applications%1"_s.arg(++count);
        bundlePath = sutest::makeInstalledBundle(appsFolder + "/Corvex.app", "2.0.5", key.publicKeyBase64());
        preferences = AppUserDefaults::userDefaultsWithBundleIdentifier(u"test.updater%1"_s.arg(count));
        updater = std::make_unique<SUUpdater>(Bundle(bundlePath), *preferences);
        updater->setFeedURL(server.url("/appcast.xml"));
        delegate.bundlePath = bundlePath;
        updater->setDelegate(&delegate);
        updater->setRelaunchHandler([this](const QString &path) {
            delegate.calls << "relaunch";
            relaunchedPath = path;
        });
        QObject::connect(updater.get(), &SUUpdater::updateFound,
                         [this](const SUAppcastItem &item) { found = item; });
        QObject::connect(updater.get(), &SUUpdater::failed, [this](const CorvexError &e) { error = e; });
    }

    // Serves a signed archive of Corvex.app of the version, and a feed offering it.
    QByteArray serveRelease(const QString &version)
    {
        const QByteArray archive = sutest::makeArchive(sutest::bundleEntries(version));
        server.set("/Corvex.tar.xz", {200, archive});
        server.set("/appcast.xml", {200, sutest::makeFeed({{version, server.url("/Corvex.tar.xz").toString(),
                                                            archive.size(), key.sign(archive)}})});
        return archive;
    }

    // Runs a user-initiated check to its end; the outcome signal's name.
    QString check()
    {
        QString outcome;
        QObject context;
        QObject::connect(updater.get(), &SUUpdater::updateFound, &context,
                         [&](const SUAppcastItem &item) { outcome = "found " + item.versionString; });
        QObject::connect(updater.get(), &SUUpdater::noUpdateFound, &context, [&] { outcome = "up to date"; });
        QObject::connect(updater.get(), &SUUpdater::failed, &context, [&] { outcome = "failed"; });
        updater->checkForUpdates();
        EXPECT_TRUE(waitUntil([&] { return !outcome.isEmpty(); }, std::chrono::seconds(20)));
        EXPECT_EQ(updater->phase(), SUUpdater::Phase::Idle);
        return outcome;
    }

    // Installs the item to its end; true when it was installed.
    bool install(const SUAppcastItem &item)
    {
        QSignalSpy installed(updater.get(), &SUUpdater::installed);
        updater->installUpdate(item);
        EXPECT_TRUE(
            waitUntil([&] { return updater->phase() == SUUpdater::Phase::Idle; }, std::chrono::seconds(20)));
        return !installed.isEmpty();
    }

    bool installedBundleIsUntouched() const { return Bundle(bundlePath).bundleVersion() == "2.0.5"; }

    sutest::Server server;
    sutest::Key key;
    QString appsFolder, bundlePath, relaunchedPath;
    std::unique_ptr<AppUserDefaults> preferences;
    std::unique_ptr<SUUpdater> updater;
    RecordingDelegate delegate;
    SUAppcastItem found;
    CorvexError error;
};

TEST_F(SUUpdaterTest, UpToDateNewerAndSkippedAndWhatTheRequestCarries)
{
    serveRelease("2.0.5");
    EXPECT_EQ(check(), "up to date");
    EXPECT_TRUE(updater->lastUpdateCheckDate().isValid());
    // The feed request carries the delegate's entries, and the system profile once the user allows it.
    preferences->setBool(true, kSUSendProfileInfoKey);
    EXPECT_EQ(check(), "up to date");
    ASSERT_EQ(server.requests.size(), 2);
    const QUrlQuery plain(QUrl(server.requests.at(0))), profiled(QUrl(server.requests.at(1)));
    EXPECT_EQ(plain.queryItemValue("appVersion"), "2.0.5");
    EXPECT_FALSE(plain.hasQueryItem("cpuArch"));
    EXPECT_EQ(profiled.queryItemValue("appVersion"), "2.0.5");
    EXPECT_EQ(profiled.queryItemValue("cpuArch"), QSysInfo::currentCpuArchitecture());
    EXPECT_TRUE(profiled.hasQueryItem("osVersion"));
    EXPECT_EQ(delegate.calls, (QStringList{"parameters", "parameters+profile"}));

    serveRelease("2.1.0");
    EXPECT_EQ(check(), "found 2.1.0");
    EXPECT_EQ(found.itemDescription, "<h2>New</h2><p>Faster renaming.</p>");

    updater->skipVersion(found);
    EXPECT_EQ(preferences->stringForKey(kSUSkippedVersionKey), "2.1.0");
    EXPECT_EQ(check(), "up to date");
}

TEST_F(SUUpdaterTest, FeedFaultsEachSayWhatWentWrong)
{
    const struct
    {
        const char *name;
        sutest::Response response;
        SUError code;
        const char *expected;
    } cases[] = {
        {"http error", {500, "oops"}, SUError::FeedDownloadError, "answered 500"},
        {"malformed", {200, "<rss><channel><item>"}, SUError::AppcastParseError, "cannot be read"},
        {"no releases", {200, sutest::makeFeed({})}, SUError::NoReleasesError, "no release"},
        {"unsigned",
         {200, sutest::makeFeed({{"2.1", "https://example.org/a.tar.xz", 10, ""}})},
         SUError::UninstallableItem,
         "not signed"},
        {"cut short", {200, "<rss><channel>", 1000}, SUError::FeedDownloadError, ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        server.set("/appcast.xml", c.response);
        EXPECT_EQ(check(), "failed");
        EXPECT_EQ(error.domain(), kSUErrorDomain);
        if (*c.expected) { // a feed cut short fails as a download fault or as a length fault
            EXPECT_TRUE(suErrorIs(error, c.code)) << error.localizedDescription().toStdString();
        }
        EXPECT_THAT(error.localizedDescription().toStdString(), testing::HasSubstr(c.expected));
    }

    // Nobody listens on the port any more.
    const QUrl unreachable = server.url("/appcast.xml");
    server.close();
    updater->setFeedURL(unreachable);
    EXPECT_EQ(check(), "failed");
    EXPECT_TRUE(suErrorIs(error, SUError::FeedDownloadError));
    EXPECT_THAT(error.localizedDescription().toStdString(), testing::HasSubstr("cannot be reached"));

    updater->setFeedURL(QUrl());
    preferences->setObject(u"not a url"_s, kSUFeedURLKey);
    EXPECT_EQ(check(), "failed");
    EXPECT_TRUE(suErrorIs(error, SUError::NoFeedURL));
}

TEST_F(SUUpdaterTest, AFullInstallReplacesTheBundleAndRelaunches)
{
    serveRelease("2.1.0");
    ASSERT_EQ(check(), "found 2.1.0");
    QSignalSpy progress(updater.get(), &SUUpdater::downloadProgress);
    ASSERT_TRUE(install(found)) << error.localizedDescription().toStdString();

    EXPECT_EQ(Bundle(bundlePath).bundleVersion(), "2.1.0");
    EXPECT_TRUE(QFileInfo(bundlePath + "/Contents/MacOS/Corvex").isExecutable());
    // The old bundle is in the Trash, nothing else is left beside the new one.
    const QString trashed = home() + "/.local/share/Trash/files/Corvex.app";
    EXPECT_EQ(Bundle(trashed).bundleVersion(), "2.0.5");
    EXPECT_EQ(QDir(appsFolder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{"Corvex.app"});
    // The delegate hears of the installation while the old bundle is still there, and the agent is quit
    // before the new bundle starts.
    EXPECT_EQ(delegate.calls, (QStringList{"parameters", "willInstall 2.1.0", "willRelaunch", "relaunch"}));
    EXPECT_EQ(delegate.bundleVersionAtInstall, "2.0.5");
    EXPECT_EQ(relaunchedPath, bundlePath);
    ASSERT_FALSE(progress.isEmpty());
    EXPECT_EQ(progress.last().at(0).toLongLong(), found.contentLength);
    EXPECT_EQ(progress.last().at(1).toLongLong(), found.contentLength);
}

TEST_F(SUUpdaterTest, DownloadFaultsLeaveTheInstalledBundleAlone)
{
    const sutest::Key otherKey;
    // Serves a signed archive of the entries in place of the release, and makes the item announce it.
    const auto serveInstead = [&](SUAppcastItem &item, const QList<sutest::Entry> &entries) {
        const QByteArray other = sutest::makeArchive(entries);
        server.set("/Corvex.tar.xz", {200, other});
        item.contentLength = other.size();
        item.edSignature = key.sign(other);
    };
    const struct
    {
        const char *name;
        std::function<void(SUAppcastItem &item, const QByteArray &archive)> spoil;
        SUError code;
        const char *expected;
    } cases[] = {
        {"wrong signature",
         [&](SUAppcastItem &item, const QByteArray &a) { item.edSignature = otherKey.sign(a); },
         SUError::SignatureError, "does not match"},
        {"truncated",
         [&](SUAppcastItem &, const QByteArray &a) {
             server.set("/Corvex.tar.xz", {200, a.left(a.size() / 2), a.size()});
         },
         SUError::DownloadLengthError, "ended after"},
        {"shorter than announced", [&](SUAppcastItem &item, const QByteArray &) { item.contentLength += 10; },
         SUError::DownloadLengthError, "ended after"},
        {"oversized",
         [&](SUAppcastItem &, const QByteArray &a) {
             server.set("/Corvex.tar.xz", {200, a + QByteArray(4096, 'x')});
         },
         SUError::DownloadLengthError, "larger than"},
        {"http error",
         [&](SUAppcastItem &, const QByteArray &) {
             server.set("/Corvex.tar.xz", {503, "busy"});
         },
         SUError::DownloadError, "answered 503"},
        {"escaping archive",
         [&](SUAppcastItem &item, const QByteArray &) {
             serveInstead(item,
                          sutest::bundleEntries("2.1.0") + QList<sutest::Entry>{{"../../escaped", "x"}});
         },
         SUError::UnarchivingError, "outside"},
        // The feed announces 2.1.0, the signed archive holds 2.0.4.
        {"not the announced version",
         [&](SUAppcastItem &item, const QByteArray &) { serveInstead(item, sutest::bundleEntries("2.0.4")); },
         SUError::BadBundleError, "announced version 2.1"},
        // An item that is an older version, installed anyway: the archive's own version decides.
        {"older than the installed bundle",
         [&](SUAppcastItem &item, const QByteArray &) {
             item.versionString = "2.0.4";
             serveInstead(item, sutest::bundleEntries("2.0.4"));
         },
         SUError::DowngradeError, ""},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const QByteArray archive = serveRelease("2.1.0");
        ASSERT_EQ(check(), "found 2.1.0");
        SUAppcastItem item = found;
        c.spoil(item, archive);
        EXPECT_FALSE(install(item));
        EXPECT_TRUE(suErrorIs(error, c.code)) << error.localizedDescription().toStdString();
        EXPECT_THAT(error.localizedDescription().toStdString(), testing::HasSubstr(c.expected));
        EXPECT_TRUE(installedBundleIsUntouched());
        EXPECT_EQ(QDir(appsFolder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                  QStringList{"Corvex.app"});
    }
    EXPECT_FALSE(QFile::exists(home() + "/escaped"));
    // The delegate hears of no installation that does not happen.
    EXPECT_EQ(delegate.calls.filter("will"), QStringList());
}

TEST_F(SUUpdaterTest, CancelStopsTheDownload)
{
    const QByteArray archive = serveRelease("2.1.0");
    ASSERT_EQ(check(), "found 2.1.0");
    // The server promises more than it sends and keeps the connection open.
    server.set("/Corvex.tar.xz", {200, archive.left(100), archive.size(), true});
    QSignalSpy cancelled(updater.get(), &SUUpdater::cancelled);
    QObject::connect(updater.get(), &SUUpdater::downloadProgress, updater.get(), [&] { updater->cancel(); });
    updater->installUpdate(found);
    EXPECT_TRUE(waitUntil([&] { return !cancelled.isEmpty(); }));
    EXPECT_EQ(updater->phase(), SUUpdater::Phase::Idle);
    EXPECT_TRUE(installedBundleIsUntouched());
}

} // namespace
