// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The shared log's files in this process: the file in use is always "Corvex log.txt", archives get
// log-XXXXXX.txt names, and a log window is told.
#include "agent/AgentLogFileManager.h"
#include "AgentTestSupport.h"
#include "logging/DDFileLogger.h"
#include "logging/DDLog.h"
#include "logging/DDLogFileInfo.h"

#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

using namespace corvex::test;
using namespace corvex::test::agent;

namespace {

class AgentLogFileManagerTest : public testing::Test
{
protected:
    void SetUp() override
    {
        mFolder = freshFolder(u"logs"_s);
        mObserver = DistributedNotificationCenter::defaultCenter().addObserver(
            CorvexDidArchiveLogFileNotification, nullptr,
            [this](const QString &, const QVariantMap &) { ++mArchives; });
    }
    void TearDown() override
    {
        if (mLogger) {
            DDLog::removeLogger(mLogger);
            DDLog::flushLog();
        }
        DistributedNotificationCenter::defaultCenter().removeObserver(mObserver);
    }
    void startLogger(quint64 maximumFileSize)
    {
        mLogger = std::make_shared<DDFileLogger>(std::make_shared<AgentLogFileManager>(mFolder));
        mLogger->setMaximumFileSize(maximumFileSize);
        DDLog::addLogger(mLogger);
    }
    void log(const QString &text)
    {
        DDLog::log(false, 7, DDLogFlagInfo, 1, __FILE__, "test", __LINE__, text);
    }
    QString current() const { return mFolder + u"/Corvex log.txt"_s; }
    QStringList archives() const { return QDir(mFolder).entryList({u"log-*.txt"_s}, QDir::Files); }
    static QString read(const QString &path) { return QString::fromUtf8(readFile(path)); }

    QString mFolder;
    std::shared_ptr<DDFileLogger> mLogger;
    int mObserver = 0;
    int mArchives = 0;
};

TEST_F(AgentLogFileManagerTest, RollingRenamesTheFileStartsAFreshOneAndKeepsFiveArchives)
{
    startLogger(400);
    for (int i = 0; i < 6; ++i)
        log(u"first file line %1 "_s.arg(i) + QString(40, u'a'));
    DDLog::flushLog();
    ASSERT_TRUE(waitUntil([&] { return mArchives == 1; }));
    ASSERT_EQ(archives().size(), 1);
    const QString archived = mFolder + u'/' + archives().first();
    EXPECT_TRUE(QRegularExpression(u"/log-[0-9A-F]{6}\\.txt$"_s).match(archived).hasMatch());
    EXPECT_TRUE(DDLogFileInfo(archived).isArchived());
    EXPECT_TRUE(read(archived).contains(u"first file line 0"_s));
    // The fresh file exists at once, so a log window that reopens finds it.
    ASSERT_TRUE(QFileInfo::exists(current()));
    EXPECT_FALSE(DDLogFileInfo(current()).isArchived());

    log(u"second file line"_s);
    DDLog::flushLog();
    EXPECT_TRUE(read(current()).endsWith(u"  second file line\n"_s));
    EXPECT_FALSE(read(current()).contains(u"first file line 0"_s));

    for (int i = 0; i < 40; ++i)
        log(u"line %1 "_s.arg(i) + QString(450, u'b'));
    DDLog::flushLog();
    ASSERT_TRUE(waitUntil([&] { return mArchives >= 41; }));
    EXPECT_EQ(archives().size(), 5);
    EXPECT_TRUE(QFileInfo::exists(current()));
}

TEST_F(AgentLogFileManagerTest, AtStartAnOversizeFileIsArchivedAndASmallOneReused)
{
    writeFile(current(), QByteArray(2000, 'x') + '\n');
    startLogger(1000);
    log(u"after start"_s);
    DDLog::flushLog();
    ASSERT_TRUE(waitUntil([&] { return mArchives == 1; }));
    ASSERT_EQ(archives().size(), 1);
    EXPECT_EQ(QFileInfo(mFolder + u'/' + archives().first()).size(), 2001);
    EXPECT_TRUE(read(current()).endsWith(u"  after start\n"_s));
    DDLog::removeLogger(mLogger);
    DDLog::flushLog();

    // A second start goes on in the same file.
    mLogger.reset();
    startLogger(1000);
    log(u"second start"_s);
    DDLog::flushLog();
    const QString text = read(current());
    EXPECT_TRUE(text.contains(u"after start"_s));
    EXPECT_TRUE(text.endsWith(u"  second start\n"_s));
    EXPECT_EQ(archives().size(), 1);
}

} // namespace
