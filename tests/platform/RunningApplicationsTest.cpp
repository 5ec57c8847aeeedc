// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RunningApplications.h"
#include "TestSupport.h"
#include "platform/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <gtest/gtest.h>
#include <memory>

namespace {

using corvex::test::home;
using corvex::test::writeFile;

// A bundle whose executable is a copy of sleep(1), so /proc/<pid>/exe points into the bundle.
QString makeSleeperBundle(const QString &name, const QString &identifier)
{
    const QString bundle = home() + "/Apps/" + name + ".app";
    writeFile(bundle + "/Contents/Info.plist",
              PropertyList::serialize(
                  QVariantMap{{"CFBundleIdentifier", identifier}, {"CFBundleExecutable", "sleeper"}},
                  PropertyList::Format::Xml));
    QDir().mkpath(bundle + "/Contents/MacOS");
    const QString executable = bundle + "/Contents/MacOS/sleeper";
    EXPECT_TRUE(QFile::copy("/bin/sleep", executable));
    QFile::setPermissions(executable, QFile::permissions(executable) | QFile::ExeOwner);
    return bundle;
}

std::unique_ptr<QProcess> start(const QString &executable)
{
    auto process = std::make_unique<QProcess>();
    process->start(executable, {"60"});
    EXPECT_TRUE(process->waitForStarted());
    return process;
}

TEST(RunningApplicationsTest, FindsProcessesByTheirBundleIdentifier)
{
    const QString bundle = makeSleeperBundle("Sleeper", "org.example.sleeper");
    const QString other = makeSleeperBundle("Other", "org.example.other");
    auto first = start(bundle + "/Contents/MacOS/sleeper");
    auto second = start(bundle + "/Contents/MacOS/sleeper");
    auto third = start(other + "/Contents/MacOS/sleeper");
    // A helper tool inside the bundle is not the application.
    QDir().mkpath(bundle + "/Contents/Helpers");
    ASSERT_TRUE(QFile::copy(bundle + "/Contents/MacOS/sleeper", bundle + "/Contents/Helpers/tool"));
    auto helper = start(bundle + "/Contents/Helpers/tool");

    const QList<RunningApplication> found =
        RunningApplications::runningApplicationsWithBundleIdentifier("org.example.sleeper");
    ASSERT_EQ(found.size(), 2);
    EXPECT_LT(found.at(0).pid, found.at(1).pid);
    for (const RunningApplication &application : found) {
        EXPECT_TRUE(application.pid == first->processId() || application.pid == second->processId());
        EXPECT_EQ(application.bundlePath, bundle);
        EXPECT_EQ(application.executablePath, bundle + "/Contents/MacOS/sleeper");
        EXPECT_EQ(application.bundleIdentifier, "org.example.sleeper");
    }
    const QList<RunningApplication> others =
        RunningApplications::runningApplicationsWithBundleIdentifier("org.example.other");
    ASSERT_EQ(others.size(), 1);
    EXPECT_EQ(others.first().pid, third->processId());
    EXPECT_TRUE(RunningApplications::runningApplicationsWithBundleIdentifier("org.example.none").isEmpty());
    EXPECT_TRUE(RunningApplications::runningApplicationsWithBundleIdentifier(QString()).isEmpty());

    // The test program itself lies in no bundle.
    for (const RunningApplication &application : RunningApplications::runningApplications())
        EXPECT_NE(application.pid, QCoreApplication::applicationPid());
    EXPECT_TRUE(RunningApplications::processIds().contains(QCoreApplication::applicationPid()));
    EXPECT_EQ(RunningApplications::executablePathOfProcess(QCoreApplication::applicationPid()),
              QCoreApplication::applicationFilePath());
    EXPECT_TRUE(RunningApplications::executablePathOfProcess(-1).isNull());
}

TEST(RunningApplicationsTest, OnlyCopiesOfThisSessionCount)
{
    const QString bundle = makeSleeperBundle("Sessions", "org.example.sessions");
    auto here = start(bundle + "/Contents/MacOS/sleeper");
    QProcess elsewhere;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=/tmp/another-session-bus");
    elsewhere.setProcessEnvironment(environment);
    elsewhere.start(bundle + "/Contents/MacOS/sleeper", {"60"});
    ASSERT_TRUE(elsewhere.waitForStarted());
    QProcess busless;
    environment.remove("DBUS_SESSION_BUS_ADDRESS");
    busless.setProcessEnvironment(environment);
    busless.start(bundle + "/Contents/MacOS/sleeper", {"60"});
    ASSERT_TRUE(busless.waitForStarted());

    const QList<RunningApplication> found =
        RunningApplications::runningApplicationsWithBundleIdentifier("org.example.sessions");
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().pid, here->processId());
    EXPECT_TRUE(RunningApplications::isInThisSession(QCoreApplication::applicationPid()));
    EXPECT_FALSE(RunningApplications::isInThisSession(elsewhere.processId()));
    EXPECT_FALSE(RunningApplications::isInThisSession(-1));
    elsewhere.kill();
    busless.kill();
    elsewhere.waitForFinished();
    busless.waitForFinished();
}

TEST(RunningApplicationsTest, AReplacedExecutableStillCountsAndTerminateSendsSigterm)
{
    const QString bundle = makeSleeperBundle("Replaced", "org.example.replaced");
    auto process = start(bundle + "/Contents/MacOS/sleeper");
    ASSERT_TRUE(QFile::remove(bundle + "/Contents/MacOS/sleeper"));
    const QList<RunningApplication> found =
        RunningApplications::runningApplicationsWithBundleIdentifier("org.example.replaced");
    ASSERT_EQ(found.size(), 1);
    EXPECT_EQ(found.first().pid, process->processId());
    EXPECT_EQ(found.first().executablePath, bundle + "/Contents/MacOS/sleeper");

    ASSERT_TRUE(RunningApplications::terminate(process->processId()));
    ASSERT_TRUE(process->waitForFinished(5000));
    EXPECT_EQ(process->exitStatus(), QProcess::CrashExit);
    EXPECT_TRUE(
        RunningApplications::runningApplicationsWithBundleIdentifier("org.example.replaced").isEmpty());
    EXPECT_FALSE(RunningApplications::terminate(0));
    EXPECT_FALSE(RunningApplications::terminate(-1));
}

} // namespace
