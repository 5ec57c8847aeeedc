// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "utilities/PFMoveApplication.h"
#include "TestSupport.h"
#include "utilities/PFMoveApplicationEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::readFile;
using corvex::test::writeFile;

QString infoPlist(const QString &version)
{
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                          "<key>CFBundleIdentifier</key><string>com.ostrel.Corvex</string>"
                          "<key>CFBundleExecutable</key><string>Corvex</string>"
                          "<key>CFBundleVersion</key><string>%1</string></dict></plist>\n")
        .arg(version);
}

// A bundle whose program records that it ran in <bundle>/../ran-<name>.
QString makeBundle(const QString &path, const QString &version)
{
    writeFile(path + u"/Contents/Info.plist"_s, infoPlist(version).toUtf8());
    const QString program = writeFile(path + u"/Contents/MacOS/Corvex"_s,
                                      "#!/bin/sh\ntouch \"$(dirname \"$0\")/../../../ran\"\n");
    QFile::setPermissions(program, QFile::permissions(program) | QFile::ExeOwner);
    writeFile(path + u"/Contents/Resources/desktop/com.ostrel.Corvex.desktop.in"_s,
              "[Desktop Entry]\nType=Application\nName=Corvex\nIcon=com.ostrel.Corvex\n"
              "Exec=\"@CORVEX_BUNDLE_PATH@/Contents/MacOS/Corvex\" %u\n");
    return path;
}

QString makeScript(const QString &path, const QByteArray &body)
{
    writeFile(path, "#!/bin/sh\n" + body);
    QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner);
    return path;
}

struct Started
{
    QString program;
    QStringList arguments;
};

class PFMoveApplicationTest : public ::testing::Test
{
public:
    void SetUp() override
    {
        // A test that runs several cases calls this again for each: everything starts afresh.
        static int run = 0;
        mRoot = QFileInfo(corvex::test::home()).canonicalFilePath() + u"/move-%1"_s.arg(++run);
        suppressed = false;
        answer = {};
        alerts.clear();
        failureAlerts.clear();
        running.clear();
        started.clear();
        agentQuits = otherQuits = 0;
        exits.clear();
        log.clear();
        ASSERT_TRUE(QDir().mkpath(mRoot + u"/Downloads"_s));
        ASSERT_TRUE(QDir().mkpath(mRoot + u"/local"_s));
        mSource = makeBundle(mRoot + u"/Downloads/Corvex.app"_s, u"2.0.5"_s);

        env = PFMoveApplicationEnvironment::systemEnvironment();
        env.bundlePath = mSource;
        env.userApplicationsDirectory = mRoot + u"/home/Applications"_s;
        env.localApplicationsDirectories = {mRoot + u"/local"_s};
        env.otherApplicationsDirectories = {};
        env.downloadsDirectories = {mRoot + u"/Downloads"_s};
        env.diskImageMountRoots = {mRoot + u"/media/"_s};
        env.launcherDirectory = mRoot + u"/launchers"_s;
        env.autostartDirectory = mRoot + u"/autostart"_s;
        env.privilegeProgram = mRoot + u"/no-pkexec"_s;
        env.processId = 999999;
        env.isAlertSuppressed = [this] { return suppressed; };
        env.suppressAlert = [this] { suppressed = true; };
        env.runAlert = [this](const PFMoveApplicationAlertRequest &request) {
            alerts.append(request);
            return answer;
        };
        env.runFailureAlert = [this](const QString &title) { failureAlerts.append(title); };
        env.runningApplications = [this] { return running; };
        env.startDetached = [this](const QString &program, const QStringList &arguments) {
            started.append({program, arguments});
            return true;
        };
        env.quitCorvexAgent = [this] { ++agentQuits; };
        env.quitOtherCorvexs = [this] { ++otherQuits; };
        env.exitProcess = [this](int status) { exits.append(status); };
        env.log = [this](const QString &line) { log.append(line); };
    }

    QString homeApps() const { return env.userApplicationsDirectory; }
    QString local() const { return env.localApplicationsDirectories.last(); }
    void putAppIntoHomeApplications() { ASSERT_TRUE(QDir().mkpath(homeApps() + u"/Other.app"_s)); }
    bool moved(const QString &destination) const
    {
        return exits == QList<int>{0} && QFileInfo::exists(destination + u"/Contents/Info.plist"_s);
    }

    PFMoveApplicationEnvironment env;
    QString mRoot;
    QString mSource;
    bool suppressed = false;
    PFMoveApplicationAlertAnswer answer;
    QList<PFMoveApplicationAlertRequest> alerts;
    QStringList failureAlerts;
    QList<RunningApplication> running;
    QList<Started> started;
    int agentQuits = 0;
    int otherQuits = 0;
    QList<int> exits;
    QStringList log;
};

TEST_F(PFMoveApplicationTest, NeverAsksWhenSuppressedOrAlreadyInAnApplicationsFolder)
{
    // Where the bundle lies below the test's root: ~/Applications, a subfolder of the local folder, a folder
    // below one named Applications; none: it stays in Downloads with the question suppressed.
    const QString places[] = {u"/home/Applications/Corvex.app"_s, u"/local/Utilities/Corvex.app"_s,
                              u"/x/Applications/Tools/Corvex.app"_s, QString()};
    for (const QString &place : places) {
        SCOPED_TRACE(place.toStdString());
        SetUp();
        if (place.isEmpty())
            suppressed = true;
        else
            env.bundlePath = makeBundle(mRoot + place, u"1"_s);
        PFMoveToApplicationsFolderIfNecessary(env);
        EXPECT_TRUE(alerts.isEmpty());
        EXPECT_TRUE(exits.isEmpty());
        EXPECT_TRUE(QFileInfo::exists(env.bundlePath));
    }
}

TEST_F(PFMoveApplicationTest, AlertNamesTheTargetAddsTheRightNoteAndDoNotMoveSuppressesOnlyWhenTicked)
{
    const QString body = u"I can move myself to the Applications folder if you'd like."_s;
    const QString password = body + u" Note that this will require an administrator password."_s;
    const QString downloads = body + u" This will keep your Downloads folder uncluttered."_s;
    const QString system = u"Move to Applications folder?"_s;
    const QString home = u"Move to Applications folder in your Home folder?"_s;
    struct Case
    {
        const char *name;
        bool appInHome;    // ~/Applications holds an application
        bool emptyHome;    // ~/Applications exists but holds none
        bool localMissing; // the local folder cannot be written (it does not exist)
        bool fromDownloads;
        QString title, text;
        bool ticked; // "Do not show this message again" is ticked before "Do Not Move"
    };
    const Case cases[] = {
        {"home target from Downloads", true, false, false, true, home, downloads, true},
        {"home target elsewhere", true, false, false, false, home, body, false},
        {"empty ~/Applications: system target", false, true, false, true, system, downloads, true},
        {"no ~/Applications: system target", false, false, false, false, system, body, false},
        {"password needed: no downloads note", false, false, true, true, system, password, false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        SetUp();
        if (c.appInHome)
            putAppIntoHomeApplications();
        if (c.emptyHome) {
            ASSERT_TRUE(QDir().mkpath(homeApps()));
        }
        if (c.localMissing)
            env.localApplicationsDirectories = {mRoot + u"/missing/Applications"_s};
        if (!c.fromDownloads)
            env.downloadsDirectories = {mRoot + u"/elsewhere"_s};
        answer = {false, c.ticked};
        PFMoveToApplicationsFolderIfNecessary(env);
        ASSERT_EQ(alerts.size(), 1);
        EXPECT_EQ(alerts[0].title, c.title);
        EXPECT_EQ(alerts[0].informativeText, c.text);
        EXPECT_TRUE(alerts[0].showsSuppressionButton);
        EXPECT_TRUE(exits.isEmpty()); // "Do Not Move"
        EXPECT_EQ(agentQuits, 0);
        EXPECT_EQ(suppressed, c.ticked);
        PFMoveToApplicationsFolderIfNecessary(env);
        EXPECT_EQ(alerts.size(), c.ticked ? 1 : 2) << "asks again at the next launch unless suppressed";
    }
}

TEST_F(PFMoveApplicationTest, MovesIntoHomeApplicationsRetargetsEntriesAndRelaunchesAfterExit)
{
    putAppIntoHomeApplications();
    const QString agent = u"/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent"_s;
    writeFile(
        env.autostartDirectory + u"/com.ostrel.CorvexAgent.desktop"_s,
        ("[Desktop Entry]\nType=Application\nName=CorvexAgent\nExec=" + mSource + agent + "\n").toUtf8());
    writeFile(env.autostartDirectory + u"/other.desktop"_s, "[Desktop Entry]\nExec=/usr/bin/other\n");
    answer.move = true;

    PFMoveToApplicationsFolderIfNecessary(env);

    const QString destination = homeApps() + u"/Corvex.app"_s;
    ASSERT_TRUE(moved(destination));
    EXPECT_EQ(log, QStringList{u"INFO -- Moving myself to the Applications folder"_s});
    EXPECT_EQ(agentQuits, 1);
    EXPECT_FALSE(QFileInfo::exists(mSource)) << "the old copy goes to the Trash";
    const QString trashed = QDir::home().filePath(u".local/share/Trash/files"_s);
    EXPECT_FALSE(QDir(trashed).entryList({u"Corvex*.app"_s}, QDir::Dirs).isEmpty());

    EXPECT_TRUE(readFile(env.autostartDirectory + u"/com.ostrel.CorvexAgent.desktop"_s)
                    .contains(("Exec=" + destination + agent).toUtf8()));
    // A launcher made from the bundle's template.
    const QByteArray launcherText = readFile(env.launcherDirectory + u"/com.ostrel.Corvex.desktop"_s);
    EXPECT_TRUE(launcherText.contains(("Exec=\"" + destination + "/Contents/MacOS/Corvex\" %u").toUtf8()));
    EXPECT_TRUE(
        launcherText.contains(QByteArray("Icon=" + destination.toUtf8() + "/Contents/Resources/icons/")));

    // The relaunch waits for this process (here a stand-in) to end, then starts the moved copy.
    ASSERT_EQ(started.size(), 1);
    ASSERT_EQ(started[0].arguments.size(), 2);
    QProcess stillRunning;
    stillRunning.start(u"sleep"_s, {u"60"_s});
    ASSERT_TRUE(stillRunning.waitForStarted());
    QString command = started[0].arguments[1];
    EXPECT_TRUE(command.contains(u"ps -p 999999 "_s));
    command.replace(u"999999"_s, QString::number(stillRunning.processId()));
    ASSERT_EQ(QProcess::execute(started[0].program, {started[0].arguments[0], command}), 0);
    const QString ran = homeApps() + u"/ran"_s;
    EXPECT_FALSE(QFileInfo::exists(ran));
    stillRunning.kill();
    stillRunning.waitForFinished();
    EXPECT_TRUE(corvex::test::waitUntil([&] { return QFileInfo::exists(ran); }));
}

TEST_F(PFMoveApplicationTest, RunningCopyInTheTargetIsSwitchedToUnlessThisOneIsNewer)
{
    struct Case
    {
        const char *own, *runningVersion;
        bool switches;
    };
    const Case cases[] = {{"2.0.5", "2.0.5", true}, {"2.0.5", "2.1", true}, {"2.1", "2.0.5", false}};
    for (const Case &c : cases) {
        SCOPED_TRACE(std::string(c.own) + " vs running " + c.runningVersion);
        SetUp();
        makeBundle(mSource, QString::fromLatin1(c.own));
        putAppIntoHomeApplications();
        const QString destination = makeBundle(homeApps() + u"/Corvex.app"_s, c.runningVersion);
        running = {{4242, destination, destination + u"/Contents/MacOS/Corvex"_s, u"com.ostrel.Corvex"_s}};
        answer.move = true;
        PFMoveToApplicationsFolderIfNecessary(env);
        EXPECT_EQ(exits, QList<int>{0});
        if (c.switches) {
            EXPECT_TRUE(log.contains(u"INFO -- Switching to an already running version"_s));
            ASSERT_EQ(started.size(), 1);
            EXPECT_EQ(started[0].program, destination + u"/Contents/MacOS/Corvex"_s);
            EXPECT_EQ(otherQuits, 0);
            EXPECT_TRUE(QFileInfo::exists(mSource)) << "nothing moved";
        } else {
            EXPECT_EQ(otherQuits, 1);
            EXPECT_TRUE(readFile(destination + u"/Contents/Info.plist"_s).contains("<string>2.1</string>"))
                << "replaced by this copy";
        }
    }
}

TEST_F(PFMoveApplicationTest, FailuresLeaveTheOldCopyAndSayWhy)
{
    // Each case starts afresh, the move to ~/Applications agreed to and the Trash working as given.
    const auto arrange = [this](bool trashWorks) -> QString {
        SetUp();
        putAppIntoHomeApplications();
        answer.move = true;
        env.moveToTrash = [trashWorks](const QString &) { return trashWorks; };
        return homeApps() + u"/Corvex.app"_s;
    };

    // The copy in the way cannot be trashed.
    QString destination = arrange(false);
    makeBundle(destination, u"1.0"_s);
    PFMoveToApplicationsFolderIfNecessary(env);
    EXPECT_EQ(log.last(), u"ERROR -- Could not trash '%1'"_s.arg(destination));
    EXPECT_EQ(failureAlerts, QStringList{u"Could not move to Applications folder"_s});
    EXPECT_TRUE(exits.isEmpty());

    // The copy fails: a file stays where the bundle should go.
    destination = arrange(true);
    writeFile(destination, "not a bundle");
    PFMoveToApplicationsFolderIfNecessary(env);
    ASSERT_EQ(log.size(), 3);
    EXPECT_TRUE(log[1].startsWith(u"ERROR -- Could not copy '%1' to '%2' ("_s.arg(mSource, destination)));
    EXPECT_EQ(log[2], u"ERROR -- Could not copy myself to %1"_s.arg(destination));
    EXPECT_EQ(failureAlerts.size(), 1);
    EXPECT_TRUE(exits.isEmpty());
    EXPECT_TRUE(QFileInfo::exists(mSource + u"/Contents/MacOS/Corvex"_s));
    EXPECT_TRUE(QFileInfo(destination).isFile()) << "what stood in the way is left alone";

    // The old copy cannot be trashed after the move: a warning, and the move goes on.
    destination = arrange(false);
    PFMoveToApplicationsFolderIfNecessary(env);
    EXPECT_TRUE(moved(destination));
    EXPECT_EQ(log.last(),
              u"WARNING -- Could not delete application after moving it to Applications folder"_s);
    EXPECT_TRUE(failureAlerts.isEmpty());
}

TEST_F(PFMoveApplicationTest, PrivilegedCopyThroughPkexec)
{
    struct Case
    {
        const char *name;
        QByteArray script; // the pkexec stand-in; empty: there is none
        bool copies;
        const char *logLine;
        bool failureAlert;
    };
    const char *authorizationError = "ERROR -- Could not copy myself to /Applications with authorization";
    const Case cases[] = {
        {"authorised", "exec \"$@\"\n", true, nullptr, false},
        {"dialog dismissed", "exit 126\n", false, "INFO -- Not moving because user canceled authorization",
         false},
        {"not authorised", "exit 127\n", false, "INFO -- Not moving because user canceled authorization",
         false},
        {"copy failed", "exit 1\n", false, authorizationError, true},
        {"no pkexec", "", false, authorizationError, true},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        SetUp();
        // A folder that does not exist yet cannot be written without administrator rights.
        const QString target = mRoot + u"/system/Applications"_s;
        env.localApplicationsDirectories = {target};
        if (!c.script.isEmpty())
            env.privilegeProgram = makeScript(mRoot + u"/pkexec"_s, c.script);
        answer.move = true;
        PFMoveToApplicationsFolderIfNecessary(env);
        ASSERT_EQ(alerts.size(), 1);
        EXPECT_TRUE(alerts[0].informativeText.endsWith(u"administrator password."_s));
        EXPECT_EQ(moved(target + u"/Corvex.app"_s), c.copies);
        if (c.logLine) {
            EXPECT_EQ(log.last(), QString::fromLatin1(c.logLine));
        }
        EXPECT_EQ(failureAlerts.size(), c.failureAlert ? 1 : 0);
        EXPECT_EQ(QFileInfo::exists(mSource), !c.copies);
    }
}

} // namespace
