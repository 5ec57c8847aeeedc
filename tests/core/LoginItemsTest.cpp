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

namespace {

// Makes NAME.app with an Info.plist and an executable; returns the bundle path.
QString makeBundle(const QString &folder, const QString &name, const QString &identifier,
                   const QString &version)
{
    const QString bundle = folder + u'/' + name + QStringLiteral(".app");
    const QVariantMap info{{QStringLiteral("CFBundleIdentifier"), identifier},
                           {QStringLiteral("CFBundleVersion"), version},
                           {QStringLiteral("CFBundleName"), name},
                           {QStringLiteral("CFBundleExecutable"), name}};
    corvex::test::writeFile(bundle + QStringLiteral("/Contents/Info.plist"),
                            PropertyList::serialize(info, PropertyList::Format::Xml));
    const QString executable =
        corvex::test::writeFile(bundle + QStringLiteral("/Contents/MacOS/") + name, "#!/bin/sh\nexit 0\n");
    QFile::setPermissions(executable, QFile::permissions(executable) | QFile::ExeOwner);
    return bundle;
}

class LoginItemsTest : public testing::Test
{
protected:
    void SetUp() override
    {
        mRoot = corvex::test::home() + QStringLiteral("/login-") + QString::number(++sCounter);
        mFolder = mRoot + QStringLiteral("/autostart");
        QDir().mkpath(mFolder);
        mCurrent = QStringLiteral("/Current/Corvex.app");
        const QString currentApp = makeBundle(mRoot + QStringLiteral("/Current"), QStringLiteral("Corvex"),
                                              QStringLiteral("com.ostrel.Corvex"), QStringLiteral("2.0.5"));
        mAgent = makeBundle(currentApp + QStringLiteral("/Contents/Helpers"), QStringLiteral("CorvexAgent"),
                            QStringLiteral("com.ostrel.CorvexAgent"), QStringLiteral("2.0.5"));
        const QString oldApp = makeBundle(mRoot + QStringLiteral("/Old"), QStringLiteral("Corvex"),
                                          QStringLiteral("com.ostrel.Corvex"), QStringLiteral("1.9"));
        mOldApp = oldApp;
        mOldAgent = makeBundle(oldApp + QStringLiteral("/Contents/Helpers"), QStringLiteral("CorvexAgent"),
                               QStringLiteral("com.ostrel.CorvexAgent"), QStringLiteral("1.9"));
        mLogger = std::make_unique<LogCapture>();
    }
    void TearDown() override { mLogger.reset(); }

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
    QString agentProgram(const QString &bundle) const
    {
        return bundle + QStringLiteral("/Contents/MacOS/CorvexAgent");
    }
    QStringList names(const QList<LoginItem> &items) const
    {
        QStringList result;
        for (const LoginItem &item : items)
            result.append(QFileInfo(item.entryPath).fileName());
        return result;
    }
    QUrl agentURL() const { return QUrl::fromLocalFile(mAgent); }

    static inline int sCounter = 0;
    QString mRoot, mFolder, mCurrent, mAgent, mOldApp, mOldAgent;
    std::unique_ptr<LogCapture> mLogger;
};

TEST_F(LoginItemsTest, AddingLeavesExactlyOneAgentEntryAtTheEnd)
{
    LoginItems items(mFolder);
    addEntry(QStringLiteral("old-agent.desktop"), QStringLiteral("CorvexAgent"), agentProgram(mOldAgent), 1);
    addEntry(QStringLiteral("editor.desktop"), QStringLiteral("Editor"), QStringLiteral("/bin/sh"), 2);
    addEntry(QStringLiteral("agent.desktop"), QStringLiteral("CorvexAgent"), agentProgram(mAgent), 3);

    items.addAgentToLoginItems(agentURL(), QStringLiteral("2.0.5"));

    const QList<LoginItem> after = items.snapshot();
    ASSERT_EQ(after.size(), 2);
    EXPECT_EQ(QFileInfo(after.at(0).entryPath).fileName(), QStringLiteral("editor.desktop"));
    QUrl url;
    ASSERT_TRUE(LoginItems::resolveItem(after.at(1), &url));
    EXPECT_EQ(LoginItems::standardizedURL(url), LoginItems::standardizedURL(agentURL()));
    EXPECT_EQ(after.at(1).displayName, QStringLiteral("CorvexAgent"));
    EXPECT_TRUE(mLogger->takeMessages().isEmpty());

    // Adding again replaces the entry instead of piling up another one.
    items.addAgentToLoginItems(agentURL(), QStringLiteral("2.0.5"));
    EXPECT_EQ(items.snapshot().size(), 2);
}

TEST_F(LoginItemsTest, RemovingTakesOnlyTheFirstAgentEntry)
{
    LoginItems items(mFolder);
    addEntry(QStringLiteral("b-old-agent.desktop"), QStringLiteral("CorvexAgent"), agentProgram(mOldAgent),
             1);
    addEntry(QStringLiteral("a-agent.desktop"), QStringLiteral("CorvexAgent"), agentProgram(mAgent), 2);

    items.removeAgentFromLoginItems();
    EXPECT_EQ(names(items.snapshot()), QStringList{QStringLiteral("a-agent.desktop")});
    items.removeAgentFromLoginItems();
    EXPECT_TRUE(items.snapshot().isEmpty());
    items.removeAgentFromLoginItems(); // nothing left: nothing happens
    EXPECT_TRUE(mLogger->takeMessages().isEmpty());
}

TEST_F(LoginItemsTest, OlderCopiesOfTheApplicationGoEqualOnesStay)
{
    LoginItems items(mFolder);
    addEntry(QStringLiteral("old-app.desktop"), QStringLiteral("Corvex"),
             mOldApp + QStringLiteral("/Contents/MacOS/Corvex"), 1);
    addEntry(QStringLiteral("current-app.desktop"), QStringLiteral("Corvex"),
             mRoot + mCurrent + QStringLiteral("/Contents/MacOS/Corvex"), 2);

    items.addAgentToLoginItems(agentURL(), QStringLiteral("2.0.5"));
    QStringList left = names(items.snapshot());
    ASSERT_EQ(left.size(), 2);
    EXPECT_EQ(left.at(0), QStringLiteral("current-app.desktop"));

    // A running copy older than the entry leaves the entry alone.
    addEntry(QStringLiteral("old-app.desktop"), QStringLiteral("Corvex"),
             mOldApp + QStringLiteral("/Contents/MacOS/Corvex"), 0);
    items.addAgentToLoginItems(agentURL(), QStringLiteral("1.5"));
    left = names(items.snapshot());
    EXPECT_TRUE(left.contains(QStringLiteral("old-app.desktop")));
    EXPECT_TRUE(left.contains(QStringLiteral("current-app.desktop")));
}

TEST_F(LoginItemsTest, UnresolvableAgentEntryIsRemovedByAddAndOnlyLoggedByRemove)
{
    LoginItems items(mFolder);
    addEntry(QStringLiteral("gone.desktop"), QStringLiteral("CorvexAgent"),
             QStringLiteral("/no/such/CorvexAgent.app/Contents/MacOS/CorvexAgent"), 1);
    addEntry(QStringLiteral("other-gone.desktop"), QStringLiteral("Something"),
             QStringLiteral("/no/such/tool"), 2);

    items.removeAgentFromLoginItems();
    EXPECT_EQ(items.snapshot().size(), 2);
    EXPECT_EQ(mLogger->takeMessages(),
              (QStringList{QStringLiteral("Login item CorvexAgent could not be resolved.  Error: 2"),
                           QStringLiteral("Login item Something could not be resolved.  Error: 2")}));

    items.addAgentToLoginItems(agentURL(), QStringLiteral("2.0.5"));
    const QStringList left = names(items.snapshot());
    ASSERT_EQ(left.size(), 2);
    EXPECT_EQ(left.at(0), QStringLiteral("other-gone.desktop"));
    EXPECT_EQ(mLogger->takeMessages().size(), 2);
}

TEST_F(LoginItemsTest, EnsureAddsOnlyWhenTheCurrentAgentIsMissing)
{
    LoginItems items(mFolder);
    items.ensureAgentIsInLoginItems(agentURL(), QStringLiteral("2.0.5"));
    EXPECT_EQ(mLogger->takeMessages(),
              QStringList{QStringLiteral("Agent wasn't found in login items so we'll add it.")});
    ASSERT_EQ(items.snapshot().size(), 1);
    const QString entry = items.snapshot().first().entryPath;
    const QDateTime written = QFileInfo(entry).lastModified();

    items.ensureAgentIsInLoginItems(agentURL(), QStringLiteral("2.0.5"));
    EXPECT_TRUE(mLogger->takeMessages().isEmpty());
    EXPECT_EQ(QFileInfo(entry).lastModified(), written);

    // An entry for another copy of the agent does not count: it is replaced.
    QFile::remove(entry);
    addEntry(QStringLiteral("old-agent.desktop"), QStringLiteral("CorvexAgent"), agentProgram(mOldAgent), 1);
    items.ensureAgentIsInLoginItems(agentURL(), QStringLiteral("2.0.5"));
    EXPECT_EQ(mLogger->takeMessages().size(), 1);
    const QList<LoginItem> after = items.snapshot();
    ASSERT_EQ(after.size(), 1);
    QUrl url;
    ASSERT_TRUE(LoginItems::resolveItem(after.first(), &url));
    EXPECT_EQ(LoginItems::standardizedURL(url), LoginItems::standardizedURL(agentURL()));
}

TEST_F(LoginItemsTest, AnAgentEntrySwitchedOffInTheDesktopIsTheUsersNo)
{
    LoginItems items(mFolder);
    const QString path =
        addEntry(QStringLiteral("agent.desktop"), QStringLiteral("CorvexAgent"), agentProgram(mAgent), 1);
    EXPECT_FALSE(items.agentSwitchedOffByDesktop());
    for (const char *line : {"X-GNOME-Autostart-enabled=false\n", "Hidden=true\n"}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::Append));
        file.write(line);
        file.close();
        EXPECT_TRUE(items.agentSwitchedOffByDesktop()) << line;
        items.ensureAgentIsInLoginItems(agentURL(), QStringLiteral("2.0.5"));
        const QList<LoginItem> after = items.snapshot();
        ASSERT_EQ(after.size(), 1);
        EXPECT_FALSE(after.first().enabled) << "not switched on again behind the user's back";
        ASSERT_TRUE(QFile::remove(path));
        addEntry(QStringLiteral("agent.desktop"), QStringLiteral("CorvexAgent"), agentProgram(mAgent), 1);
    }
}

TEST(AutostartEntryTest, CommandLinesRoundTripThroughQuoting)
{
    const QString folder = corvex::test::home() + QStringLiteral("/entries");
    QDir().mkpath(folder);
    for (const QString &program : {QStringLiteral("/opt/My Apps/Corvex.app/Contents/MacOS/CorvexAgent"),
                                   QStringLiteral("/tmp/odd \"name\" $HOME `x` back\\slash 100%/prog"),
                                   QStringLiteral("/plain/path")}) {
        AutostartEntry entry;
        entry.setName(QStringLiteral(" Leading space"));
        entry.setProgram(program);
        const QString path = folder + QStringLiteral("/e.desktop");
        ASSERT_TRUE(entry.write(path));
        AutostartEntry read;
        ASSERT_TRUE(read.read(path));
        EXPECT_EQ(read.program(), program);
        EXPECT_EQ(read.name(), QStringLiteral(" Leading space"));
        EXPECT_TRUE(read.isEnabled());
    }
}

TEST(AutostartEntryTest, ProgramSkipsEnvironmentAndRejectsBrokenQuoting)
{
    AutostartEntry entry;
    entry.setExec(QStringLiteral("env LANG=C FOO=bar \"/a b/prog\" --flag %u"));
    EXPECT_EQ(entry.program(), QStringLiteral("/a b/prog"));
    entry.setExec(QStringLiteral("\"/unterminated/prog"));
    EXPECT_TRUE(entry.program().isNull());
    entry.setExec(QStringLiteral("\"/a\"b"));
    EXPECT_TRUE(entry.program().isNull());

    const QString path = corvex::test::writeFile(corvex::test::home() + QStringLiteral("/x.desktop"),
                                                 "[Other Group]\nExec=/bin/sh\n");
    int status = 0;
    EXPECT_FALSE(AutostartEntry().read(path, &status));
    EXPECT_EQ(status, ENOEXEC);
    EXPECT_FALSE(AutostartEntry().read(path + QStringLiteral(".missing"), &status));
    EXPECT_EQ(status, ENOENT);
}

} // namespace
