// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/UpdateUserDriver.h"
#include "../core/SUTestSupport.h"
#include "WindowTestSupport.h"
#include "app/UpdateStatusWindow.h"
#include "app/UpdateWindowController.h"
#include "core/AppUserDefaults.h"
#include "core/SUUpdater.h"
#include "foundation/PreferenceKeys.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using namespace corvex::test;

// Saves a picture of the window when CORVEX_UPDATE_SCREENSHOTS names a folder (for looking at the windows).
void keepPicture(QWidget *window, const QString &name)
{
    const QString folder = qEnvironmentVariable("CORVEX_UPDATE_SCREENSHOTS");
    if (!folder.isEmpty())
        window->grab().save(folder + "/" + name + ".png");
}

class UpdateUserDriverTest : public testing::Test
{
protected:
    void SetUp() override
    {
        static int count = 0;
        apps = home() + u"/Apps%1"_s.arg(++count);
        bundlePath = sutest::makeInstalledBundle(apps + "/Corvex.app", "2.0.5", key.publicKeyBase64());
        preferences = AppUserDefaults::userDefaultsWithBundleIdentifier(u"test.driver%1"_s.arg(count));
        updater = std::make_unique<SUUpdater>(Bundle(bundlePath), *preferences);
        updater->setFeedURL(server.url("/appcast.xml"));
        updater->setRelaunchHandler([this](const QString &path) { relaunched = path; });
        driver = std::make_unique<UpdateUserDriver>(*updater);
    }

    void serve(const QString &version)
    {
        archive = sutest::makeArchive(sutest::bundleEntries(version));
        server.set("/Corvex.tar.xz", {200, archive});
        server.set("/appcast.xml", {200, sutest::makeFeed({{version, server.url("/Corvex.tar.xz").toString(),
                                                            archive.size(), key.sign(archive)}})});
    }

    sutest::Server server;
    sutest::Key key;
    QByteArray archive;
    QString apps, bundlePath, relaunched;
    std::unique_ptr<AppUserDefaults> preferences;
    std::unique_ptr<SUUpdater> updater;
    std::unique_ptr<UpdateUserDriver> driver;
};

TEST_F(UpdateUserDriverTest, ACheckShowsCheckingThenUpToDateOrWhyItFailedAndEscapeCancelsIt)
{
    serve("2.0.5");
    driver->checkForUpdates();
    ASSERT_TRUE(driver->statusWindow());
    EXPECT_EQ(driver->statusWindow()->titleText(), "Checking for updates…");
    keepPicture(driver->statusWindow(), "checking");
    const QPoint centre = driver->statusWindow()->geometry().center();
    ASSERT_TRUE(waitUntil([&] { return driver->statusWindow()->titleText() == "You're up to date!"; }));
    // The longer answer grows the window around its centre.
    EXPECT_LE((driver->statusWindow()->geometry().center() - centre).manhattanLength(), 1);
    EXPECT_EQ(driver->statusWindow()->messageText(),
              "Corvex 2.0.5 is currently the newest version available.");
    EXPECT_TRUE(driver->statusWindow()->isVisible());
    keepPicture(driver->statusWindow(), "up-to-date");
    buttonNamed(driver->statusWindow(), "OK")->click();
    EXPECT_TRUE(waitUntil([&] { return !driver->statusWindow(); }));

    // A failed check says why.
    server.set("/appcast.xml", {502, "bad gateway"});
    driver->checkForUpdates();
    ASSERT_TRUE(waitUntil([&] { return driver->statusWindow()->titleText() == "Update Error!"; }));
    EXPECT_THAT(driver->statusWindow()->messageText().toStdString(), testing::HasSubstr("answered 502"));
    keepPicture(driver->statusWindow(), "error");
    buttonNamed(driver->statusWindow(), "OK")->click();
    EXPECT_TRUE(waitUntil([&] { return !driver->statusWindow(); }));

    // Escape while checking cancels.
    server.set("/appcast.xml", {200, "<rss>", 100000, true}); // never finishes
    server.requests.clear();
    driver->checkForUpdates();
    ASSERT_TRUE(waitUntil([&] { return !server.requests.isEmpty(); }));
    QTest::keyClick(driver->statusWindow(), Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return updater->phase() == SUUpdater::Phase::Idle; }));
}

TEST_F(UpdateUserDriverTest, TheUpdateWindowOffersAndItsButtonsAnswerTheUpdater)
{
    serve("2.1");
    driver->checkForUpdates();
    ASSERT_TRUE(waitUntil([&] { return driver->updateWindow() != nullptr; }));
    UpdateWindowController *window = driver->updateWindow();
    EXPECT_TRUE(window->isVisible());
    EXPECT_THAT(window->headlineText().toStdString(),
                testing::HasSubstr("Corvex 2.1 is now available—you have 2.0.5"));
    EXPECT_EQ(window->releaseNotesText(), "New\nFaster renaming.");
    keepPicture(window, "update");
    for (const char *text : {"Install Update", "Remind Me Later", "Skip This Version"})
        EXPECT_TRUE(buttonNamed(window, text)) << text;

    // A cancelled download returns to the offer.
    server.set("/Corvex.tar.xz", {200, archive.left(archive.size() / 3), archive.size(), true});
    buttonNamed(window, "Install Update")->click();
    ASSERT_TRUE(waitUntil([&] { return window->statusText().startsWith("Downloading update… "); }));
    keepPicture(window, "downloading");
    buttonNamed(window, "Cancel")->click();
    EXPECT_TRUE(waitUntil([&] { return window->statusText().isEmpty(); }));
    ASSERT_TRUE(buttonNamed(window, "Install Update"));

    buttonNamed(window, "Remind Me Later")->click();
    EXPECT_TRUE(waitUntil([&] { return !driver->updateWindow(); }));
    EXPECT_FALSE(preferences->objectForKey(kSUSkippedVersionKey).isValid());

    driver->checkForUpdates();
    ASSERT_TRUE(waitUntil([&] { return driver->updateWindow() != nullptr; }));
    buttonNamed(driver->updateWindow(), "Skip This Version")->click();
    EXPECT_EQ(preferences->stringForKey(kSUSkippedVersionKey), "2.1");
    EXPECT_TRUE(waitUntil([&] { return !driver->updateWindow(); }));
    EXPECT_EQ(Bundle(bundlePath).bundleVersion(), "2.0.5");

    // Offered again, the update installs.
    preferences->removeObjectForKey(kSUSkippedVersionKey);
    server.set("/Corvex.tar.xz", {200, archive});
    driver->checkForUpdates();
    ASSERT_TRUE(waitUntil([&] { return driver->updateWindow() != nullptr; }));
    window = driver->updateWindow();
    buttonNamed(window, "Install Update")->click();
    ASSERT_TRUE(waitUntil([&] { return !relaunched.isEmpty(); }, std::chrono::seconds(20)));
    EXPECT_EQ(relaunched, bundlePath);
    EXPECT_EQ(Bundle(bundlePath).bundleVersion(), "2.1");
    EXPECT_EQ(window->statusText(), "Restarting Corvex…");
    // The application quitting now closes every window, this one included.
    EXPECT_TRUE(window->close());
}

TEST_F(UpdateUserDriverTest, PermissionIsAskedOnceOnTheSecondLaunch)
{
    EXPECT_FALSE(UpdateUserDriver::askForPermissionIfNeeded(*preferences)); // first launch
    EXPECT_TRUE(preferences->boolForKey(kSUHasLaunchedBeforeKey));
    whenModalIsUp([](QWidget *box) {
        box->findChild<QCheckBox *>()->setChecked(true);
        buttonNamed(box, "Check Automatically")->click();
    });
    EXPECT_TRUE(UpdateUserDriver::askForPermissionIfNeeded(*preferences));
    EXPECT_TRUE(preferences->boolForKey(kSUEnableAutomaticChecksKey));
    EXPECT_TRUE(preferences->boolForKey(kCheckForUpdatesKey));
    EXPECT_TRUE(preferences->boolForKey(kSUSendProfileInfoKey));
    EXPECT_FALSE(UpdateUserDriver::askForPermissionIfNeeded(*preferences)); // answered
}

} // namespace
