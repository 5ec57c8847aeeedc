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

using namespace corvex::test;

inline void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList &list, std::ostream *stream)
{
    *stream << '[' << list.join(QStringLiteral(", ")).toStdString() << ']';
}

namespace {

class AgentLoginItemsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        mLogger = std::make_unique<LogCapture>();
        mDelegate = std::make_unique<AppDelegate>();
        mLogger->takeMessages();
        mAutostart = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                     QStringLiteral("/autostart");
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
        const QString bundle = folder + QStringLiteral("/Corvex.app");
        const QVariantMap info{{QStringLiteral("CFBundleIdentifier"), identifier},
                               {QStringLiteral("CFBundleVersion"), QStringLiteral("2.0.5")},
                               {QStringLiteral("CFBundleExecutable"), QStringLiteral("Corvex")}};
        writeFile(bundle + QStringLiteral("/Contents/Info.plist"),
                  PropertyList::serialize(info, PropertyList::Format::Xml));
        QDir().mkpath(bundle + QStringLiteral("/Contents/MacOS"));
        const QString executable = bundle + QStringLiteral("/Contents/MacOS/Corvex");
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
        spin(std::chrono::milliseconds(15)); // distinct modification times keep the list's order
    }
    QStringList entries() const
    {
        return QDir(mAutostart).entryList({QStringLiteral("*.desktop")}, QDir::Files);
    }

    std::unique_ptr<LogCapture> mLogger;
    std::unique_ptr<AppDelegate> mDelegate;
    QString mAutostart;
};

TEST_F(AgentLoginItemsTest, TheAgentLiesInTheHelpersFolderBesideTheExecutable)
{
    const QString expected = QDir::cleanPath(QCoreApplication::applicationDirPath() +
                                             QStringLiteral("/../Helpers/CorvexAgent.app"));
    EXPECT_EQ(mDelegate->corvexAgentApplicationURL(), QUrl::fromLocalFile(expected));
    EXPECT_TRUE(mDelegate->corvexAgentApplicationURL().isLocalFile());
}

TEST_F(AgentLoginItemsTest, LaunchingAMissingAgentIsLoggedAsAFailure)
{
    mDelegate->launchCorvexAgent();
    const QStringList messages = mLogger->takeMessages();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages.first().startsWith(QStringLiteral("Agent launch failed: ")))
        << messages.first().toStdString();
}

TEST_F(AgentLoginItemsTest, QuittingTheAgentEndsEveryRunningAgent)
{
    QProcess agent;
    agent.start(
        QStringLiteral(CORVEX_BUNDLE_DIR "/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent"), {});
    ASSERT_TRUE(agent.waitForStarted(10000));
    ASSERT_TRUE(waitUntil(
        [] {
            return QDBusConnection::sessionBus().interface()->isServiceRegistered(
                QStringLiteral("com.ostrel.CorvexAgent"));
        },
        std::chrono::seconds(15)));
    mDelegate->quitCorvexAgent();
    ASSERT_TRUE(agent.waitForFinished(15000));
    EXPECT_EQ(agent.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(agent.exitCode(), 0);
    EXPECT_EQ(mLogger->takeMessages(), QStringList{QStringLiteral("Agent app has been terminated")});
}

TEST_F(AgentLoginItemsTest, QuittingOtherCopiesSparesThisOne)
{
    const QString bundle =
        makeBundle(home() + QStringLiteral("/OtherCopy"), QStringLiteral("com.ostrel.Corvex"),
                   QStandardPaths::findExecutable(QStringLiteral("sleep")));
    QProcess other;
    other.start(bundle + QStringLiteral("/Contents/MacOS/Corvex"), {QStringLiteral("60")});
    ASSERT_TRUE(other.waitForStarted(10000));
    mDelegate->quitOtherCorvexs();
    ASSERT_TRUE(other.waitForFinished(10000));
    EXPECT_EQ(other.exitStatus(), QProcess::CrashExit) << "sleep ends by the signal";
    EXPECT_EQ(mLogger->takeMessages(),
              QStringList{QStringLiteral("Another Corvex instance has been terminated")});
}

TEST_F(AgentLoginItemsTest, LoginItemsFollowTheAgentOfThisCopy)
{
    const QString oldCopy =
        makeBundle(home() + QStringLiteral("/OldAgent"), QStringLiteral("com.ostrel.CorvexAgent"),
                   QStandardPaths::findExecutable(QStringLiteral("true")));
    addEntry(QStringLiteral("old-agent.desktop"), QStringLiteral("CorvexAgent"),
             oldCopy + QStringLiteral("/Contents/MacOS/Corvex"));
    addEntry(QStringLiteral("gone-agent.desktop"), QStringLiteral("CorvexAgent"),
             QStringLiteral("/gone/CorvexAgent"));
    addEntry(QStringLiteral("editor.desktop"), QStringLiteral("Editor"), QStringLiteral("/bin/sh"));

    // Removing takes the first agent entry only and stops there.
    mDelegate->removeAgentFromLoginItems();
    EXPECT_EQ(entries(),
              (QStringList{QStringLiteral("editor.desktop"), QStringLiteral("gone-agent.desktop")}));
    EXPECT_TRUE(mLogger->takeMessages().isEmpty());

    // This test program has no agent beside it: every agent entry goes and the new one cannot be added.
    addEntry(QStringLiteral("old-agent.desktop"), QStringLiteral("CorvexAgent"),
             oldCopy + QStringLiteral("/Contents/MacOS/Corvex"));
    mDelegate->ensureAgentIsInLoginItems();
    EXPECT_EQ(entries(), QStringList{QStringLiteral("editor.desktop")});
    const QStringList messages = mLogger->takeMessages();
    ASSERT_EQ(messages.size(), 3) << messages.join(u'\n').toStdString();
    EXPECT_EQ(messages.at(0), QStringLiteral("Agent wasn't found in login items so we'll add it."));
    EXPECT_EQ(messages.at(1), QStringLiteral("Login item CorvexAgent could not be resolved.  Error: 2"));
    EXPECT_EQ(messages.at(2),
              QStringLiteral("Item %1 could not be added to the login item list for an unknown reason.")
                  .arg(mDelegate->corvexAgentApplicationURL().toString()));
}

} // namespace
