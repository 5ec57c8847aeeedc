// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/LoginItems.h"
#include "../core/CapturingLogger.h"
#include "TestSupport.h"
#include "platform/AutostartEntry.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// Makes NAME.app with an Info.plist and an executable; returns the bundle path.
QString makeBundle(const QString &folder, const QString &name, const QString &identifier,
                   const QString &version)
{
    const QString bundle = folder + u'/' + name + u".app"_s;
    const QVariantMap info{{u"CFBundleIdentifier"_s, identifier},
                           {u"CFBundleVersion"_s, version},
                           {u"CFBundleName"_s, name},
                           {u"CFBundleExecutable"_s, name}};
    corvex::test::writeFile(bundle + u"/Contents/Info.plist"_s,
                            PropertyList::serialize(info, PropertyList::Format::Xml));
    const QString executable =
        corvex::test::writeFile(bundle + u"/Contents/MacOS/"_s + name, "#!/bin/sh\nexit 0\n");
    QFile::setPermissions(executable, QFile::permissions(executable) | QFile::ExeOwner);
    return bundle;
}

class LoginItemsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QDir().mkpath(mFolder);
        mCurrentApp = makeBundle(mRoot + u"/Current"_s, u"Corvex"_s, u"com.ostrel.Corvex"_s, u"2.0.5"_s);
        mAgent = makeBundle(mCurrentApp + u"/Contents/Helpers"_s, u"CorvexAgent"_s,
                            u"com.ostrel.CorvexAgent"_s, u"2.0.5"_s);
        mOldApp = makeBundle(mRoot + u"/Old"_s, u"Corvex"_s, u"com.ostrel.Corvex"_s, u"1.9"_s);
        mOldAgent = makeBundle(mOldApp + u"/Contents/Helpers"_s, u"CorvexAgent"_s,
                               u"com.ostrel.CorvexAgent"_s, u"1.9"_s);
    }

    // Writes an entry whose modification time puts it at the given place in the list.
    QString addEntry(const QString &fileName, const QString &name, const QString &program, int order)
    {
        AutostartEntry entry;
        entry.setName(name);
        entry.setProgram(program);
        const QString path = mFolder + u'/' + fileName;
        EXPECT_TRUE(entry.write(path));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        file.setFileTime(QDateTime::currentDateTimeUtc().addSecs(-1000 + order),
                         QFileDevice::FileModificationTime);
        return path;
    }
    QString agentProgram(const QString &bundle) const { return bundle + u"/Contents/MacOS/CorvexAgent"_s; }
    // The file names of the entries, in the list's order.
    QStringList names() const
    {
        QStringList result;
        for (const LoginItem &item : items.snapshot())
            result.append(QFileInfo(item.entryPath).fileName());
        return result;
    }
    QUrl agentURL() const { return QUrl::fromLocalFile(mAgent); }

    static inline int sCounter = 0;
    const QString mRoot = corvex::test::home() + u"/login-"_s + QString::number(++sCounter);
    const QString mFolder = mRoot + u"/autostart"_s;
    QString mCurrentApp, mAgent, mOldApp, mOldAgent;
    LoginItems items{mFolder};
    LogCapture mLogger;
};

TEST_F(LoginItemsTest, AddingLeavesExactlyOneAgentEntryAtTheEnd)
{
    addEntry(u"old-agent.desktop"_s, u"CorvexAgent"_s, agentProgram(mOldAgent), 1);
    addEntry(u"editor.desktop"_s, u"Editor"_s, u"/bin/sh"_s, 2);
    addEntry(u"agent.desktop"_s, u"CorvexAgent"_s, agentProgram(mAgent), 3);

    items.addAgentToLoginItems(agentURL(), u"2.0.5"_s);

    const QList<LoginItem> after = items.snapshot();
    ASSERT_EQ(after.size(), 2);
    EXPECT_EQ(QFileInfo(after.at(0).entryPath).fileName(), u"editor.desktop"_s);
    EXPECT_EQ(after.at(1).program, agentProgram(mAgent));
    EXPECT_EQ(after.at(1).displayName, u"CorvexAgent"_s);
    EXPECT_TRUE(mLogger.takeMessages().isEmpty());

    // Adding again replaces the entry instead of piling up another one.
    items.addAgentToLoginItems(agentURL(), u"2.0.5"_s);
    EXPECT_EQ(items.snapshot().size(), 2);
}

TEST_F(LoginItemsTest, RemovingTakesOnlyTheFirstAgentEntry)
{
    addEntry(u"b-old-agent.desktop"_s, u"CorvexAgent"_s, agentProgram(mOldAgent), 1);
    addEntry(u"a-agent.desktop"_s, u"CorvexAgent"_s, agentProgram(mAgent), 2);

    items.removeAgentFromLoginItems();
    EXPECT_EQ(names(), QStringList{u"a-agent.desktop"_s});
    items.removeAgentFromLoginItems();
    EXPECT_TRUE(items.snapshot().isEmpty());
    items.removeAgentFromLoginItems(); // nothing left: nothing happens
    EXPECT_TRUE(mLogger.takeMessages().isEmpty());
}

TEST_F(LoginItemsTest, OlderCopiesOfTheApplicationGoEqualOnesStay)
{
    addEntry(u"old-app.desktop"_s, u"Corvex"_s, mOldApp + u"/Contents/MacOS/Corvex"_s, 1);
    addEntry(u"current-app.desktop"_s, u"Corvex"_s, mCurrentApp + u"/Contents/MacOS/Corvex"_s, 2);

    items.addAgentToLoginItems(agentURL(), u"2.0.5"_s);
    const QStringList left = names();
    ASSERT_EQ(left.size(), 2);
    EXPECT_EQ(left.at(0), u"current-app.desktop"_s);

    // A running copy older than the entry leaves the entry alone.
    addEntry(u"old-app.desktop"_s, u"Corvex"_s, mOldApp + u"/Contents/MacOS/Corvex"_s, 0);
    items.addAgentToLoginItems(agentURL(), u"1.5"_s);
    EXPECT_EQ(names().first(2), (QStringList{u"old-app.desktop"_s, u"current-app.desktop"_s}));
}

TEST_F(LoginItemsTest, UnresolvableAgentEntryIsRemovedByAddAndOnlyLoggedByRemove)
{
    addEntry(u"gone.desktop"_s, u"CorvexAgent"_s, u"/no/such/CorvexAgent.app/Contents/MacOS/CorvexAgent"_s,
             1);
    addEntry(u"other-gone.desktop"_s, u"Something"_s, u"/no/such/tool"_s, 2);

    items.removeAgentFromLoginItems();
    EXPECT_EQ(items.snapshot().size(), 2);
    EXPECT_EQ(mLogger.takeMessages(),
              (QStringList{u"Login item CorvexAgent could not be resolved.  Error: 2"_s,
                           u"Login item Something could not be resolved.  Error: 2"_s}));

    items.addAgentToLoginItems(agentURL(), u"2.0.5"_s);
    const QStringList left = names();
    ASSERT_EQ(left.size(), 2);
    EXPECT_EQ(left.at(0), u"other-gone.desktop"_s);
    EXPECT_EQ(mLogger.takeMessages().size(), 2);
}

TEST_F(LoginItemsTest, EnsureAddsOnlyWhenTheCurrentAgentIsMissing)
{
    items.ensureAgentIsInLoginItems(agentURL(), u"2.0.5"_s);
    EXPECT_EQ(mLogger.takeMessages(), QStringList{u"Agent wasn't found in login items so we'll add it."_s});
    ASSERT_EQ(items.snapshot().size(), 1);
    const QString entry = items.snapshot().first().entryPath;
    const QDateTime written = QFileInfo(entry).lastModified();

    items.ensureAgentIsInLoginItems(agentURL(), u"2.0.5"_s);
    EXPECT_TRUE(mLogger.takeMessages().isEmpty());
    EXPECT_EQ(QFileInfo(entry).lastModified(), written);

    // An entry for another copy of the agent does not count: it is replaced.
    QFile::remove(entry);
    addEntry(u"old-agent.desktop"_s, u"CorvexAgent"_s, agentProgram(mOldAgent), 1);
    items.ensureAgentIsInLoginItems(agentURL(), u"2.0.5"_s);
    EXPECT_EQ(mLogger.takeMessages().size(), 1);
    ASSERT_EQ(items.snapshot().size(), 1);
    EXPECT_EQ(items.snapshot().first().program, agentProgram(mAgent));
}

TEST_F(LoginItemsTest, AnAgentEntrySwitchedOffInTheDesktopIsTheUsersNo)
{
    const QString path = addEntry(u"agent.desktop"_s, u"CorvexAgent"_s, agentProgram(mAgent), 1);
    EXPECT_FALSE(items.agentSwitchedOffByDesktop());
    for (const char *line : {"X-GNOME-Autostart-enabled=false\n", "Hidden=true\n"}) {
        corvex::test::writeFile(path, corvex::test::readFile(path) + line);
        EXPECT_TRUE(items.agentSwitchedOffByDesktop()) << line;
        items.ensureAgentIsInLoginItems(agentURL(), u"2.0.5"_s);
        const QList<LoginItem> after = items.snapshot();
        ASSERT_EQ(after.size(), 1);
        EXPECT_FALSE(after.first().enabled) << "not switched on again behind the user's back";
        ASSERT_TRUE(QFile::remove(path));
        addEntry(u"agent.desktop"_s, u"CorvexAgent"_s, agentProgram(mAgent), 1);
    }
}

TEST(AutostartEntryTest, CommandLinesRoundTripThroughQuotingAndBrokenOnesAreRefused)
{
    for (const QString &program :
         {u"/opt/My Apps/Corvex.app/Contents/MacOS/CorvexAgent"_s,
          u"/tmp/odd \"name\" $HOME `x` back\\slash 100%/prog"_s, u"/plain/path"_s,
          u"/home/me/My\u00a0Apps/Corvex"_s}) { // a no-break space separates words too
        AutostartEntry entry;
        entry.setName(u" Leading space"_s);
        entry.setProgram(program);
        const QString path = corvex::test::home() + u"/e.desktop"_s;
        ASSERT_TRUE(entry.write(path));
        AutostartEntry read;
        ASSERT_TRUE(read.read(path));
        EXPECT_EQ(read.program(), program);
        EXPECT_EQ(read.name(), u" Leading space"_s);
        EXPECT_TRUE(read.isEnabled());
    }

    // The program skips the environment; broken quoting gives none.
    AutostartEntry entry;
    entry.setExec(u"env LANG=C FOO=bar \"/a b/prog\" --flag %u"_s);
    EXPECT_EQ(entry.program(), u"/a b/prog"_s);
    entry.setExec(u"\"/unterminated/prog"_s);
    EXPECT_TRUE(entry.program().isNull());
    entry.setExec(u"\"/a\"b"_s);
    EXPECT_TRUE(entry.program().isNull());

    const QString path =
        corvex::test::writeFile(corvex::test::home() + u"/x.desktop"_s, "[Other Group]\nExec=/bin/sh\n");
    int status = 0;
    EXPECT_FALSE(AutostartEntry().read(path, &status));
    EXPECT_EQ(status, ENOEXEC);
    EXPECT_FALSE(AutostartEntry().read(path + u".missing"_s, &status));
    EXPECT_EQ(status, ENOENT);
}

} // namespace
