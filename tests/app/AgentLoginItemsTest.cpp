// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The application delegate's agent operations: where the agent lies, launching and quitting it, quitting
// other copies of the application, and the login items as the delegate uses them.
#include "../core/CapturingLogger.h"
#include "TestSupport.h"
#include "app/AppDelegate.h"
#include "platform/AutostartEntry.h"
#include "platform/PropertyList.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>
#include <ostream>

using namespace Qt::StringLiterals;

using namespace corvex::test;

namespace {

class AgentLoginItemsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        mLogger = std::make_unique<LogCapture>();
        mDelegate = std::make_unique<AppDelegate>();
        mLogger->takeMessages();
        mAutostart =
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/autostart"_s;
        QDir(mAutostart).removeRecursively();
    }
    void TearDown() override
    {
        mDelegate.reset();
        mLogger.reset();
    }
    // A bundle with a copy of a real program as its executable.
    QString makeBundle(const QString &folder, const QString &identifier, const QString &program)
    {
        const QString bundle = folder + u"/Corvex.app"_s;
        const QVariantMap info{{u"CFBundleIdentifier"_s, identifier},
                               {u"CFBundleVersion"_s, u"2.0.5"_s},
                               {u"CFBundleExecutable"_s, u"Corvex"_s}};
        writeFile(bundle + u"/Contents/Info.plist"_s,
                  PropertyList::serialize(info, PropertyList::Format::Xml));
        QDir().mkpath(bundle + u"/Contents/MacOS"_s);
        const QString executable = bundle + u"/Contents/MacOS/Corvex"_s;
        QFile::copy(program, executable);
        QFile::setPermissions(executable, QFile::permissions(program));
        return bundle;
    }
    void addEntry(const QString &fileName, const QString &name, const QString &program)
    {
        AutostartEntry entry;
        entry.setName(name);
        entry.setProgram(program);
        QDir().mkpath(mAutostart);
        ASSERT_TRUE(entry.write(mAutostart + u'/' + fileName));
        // Distinct modification times keep the list's order: each entry a second after the one before.
        QFile file(mAutostart + u'/' + fileName);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-100 + mEntries++),
                                     QFileDevice::FileModificationTime));
    }
    QStringList entries() const { return QDir(mAutostart).entryList({u"*.desktop"_s}, QDir::Files); }

    int mEntries = 0;
    std::unique_ptr<LogCapture> mLogger;
    std::unique_ptr<AppDelegate> mDelegate;
    QString mAutostart;
};

TEST_F(AgentLoginItemsTest, TheAgentLiesInTheHelpersFolderBesideTheExecutableAndAMissingOneFailsToLaunch)
{
    const QString expected =
        QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../Helpers/CorvexAgent.app"_s);
    EXPECT_EQ(mDelegate->corvexAgentApplicationURL(), QUrl::fromLocalFile(expected));
    // This test program has none there: launching it is logged as a failure.
    mDelegate->launchCorvexAgent();
    const QStringList messages = mLogger->takeMessages();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages.first().startsWith(u"Agent launch failed: "_s)) << messages.first().toStdString();
}

TEST_F(AgentLoginItemsTest, QuittingEndsTheAgentAndOtherCopiesButSparesThisOne)
{
    QProcess agent;
    agent.start(
        QStringLiteral(CORVEX_BUNDLE_DIR "/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent"), {});
    ASSERT_TRUE(agent.waitForStarted(10000));
    ASSERT_TRUE(waitUntil(
        [] {
            return QDBusConnection::sessionBus().interface()->isServiceRegistered(
                u"com.ostrel.CorvexAgent"_s);
        },
        std::chrono::seconds(15)));
    mDelegate->quitCorvexAgent();
    ASSERT_TRUE(agent.waitForFinished(15000));
    EXPECT_EQ(agent.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(agent.exitCode(), 0);
    EXPECT_EQ(mLogger->takeMessages(), QStringList{u"Agent app has been terminated"_s});

    // Quitting other copies of the application spares this one.
    const QString bundle = makeBundle(home() + u"/OtherCopy"_s, u"com.ostrel.Corvex"_s,
                                      QStandardPaths::findExecutable(u"sleep"_s));
    QProcess other;
    other.start(bundle + u"/Contents/MacOS/Corvex"_s, {u"60"_s});
    ASSERT_TRUE(other.waitForStarted(10000));
    mDelegate->quitOtherCorvexs();
    ASSERT_TRUE(other.waitForFinished(10000));
    EXPECT_EQ(other.exitStatus(), QProcess::CrashExit) << "sleep ends by the signal";
    EXPECT_EQ(mLogger->takeMessages(), QStringList{u"Another Corvex instance has been terminated"_s});
}

TEST_F(AgentLoginItemsTest, LoginItemsFollowTheAgentOfThisCopy)
{
    // Which entries go and what is logged is the login items' own matter (LoginItemsTest); the delegate hands
    // on the agent beside this copy.
    const QString oldCopy = makeBundle(home() + u"/OldAgent"_s, u"com.ostrel.CorvexAgent"_s,
                                       QStandardPaths::findExecutable(u"true"_s));
    addEntry(u"old-agent.desktop"_s, u"CorvexAgent"_s, oldCopy + u"/Contents/MacOS/Corvex"_s);
    addEntry(u"editor.desktop"_s, u"Editor"_s, u"/bin/sh"_s);
    mDelegate->removeAgentFromLoginItems();
    EXPECT_EQ(entries(), QStringList{u"editor.desktop"_s});

    // This test program has no agent beside it: the old entry goes and the new one cannot be added.
    addEntry(u"old-agent.desktop"_s, u"CorvexAgent"_s, oldCopy + u"/Contents/MacOS/Corvex"_s);
    mDelegate->ensureAgentIsInLoginItems();
    EXPECT_EQ(entries(), QStringList{u"editor.desktop"_s});
    const QStringList messages = mLogger->takeMessages();
    ASSERT_FALSE(messages.isEmpty());
    EXPECT_EQ(messages.last(),
              u"Item %1 could not be added to the login item list for an unknown reason."_s.arg(
                  mDelegate->corvexAgentApplicationURL().toString()));
}

} // namespace
