// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDFileLogger.h"
#include "RecordingLogger.h"
#include "RefusingAttributes.h"
#include "TestSupport.h"
#include "foundation/DispatchQueue.h"
#include "logging/DDLog.h"
#include "logging/DDLogFileInfo.h"
#include "logging/DDLogFileManagerDefault.h"
#include "logging/DDLogMessage.h"
#include "logging/DDLog_p.h"
#include "logging/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <csignal>
#include <gtest/gtest.h>
#include <semaphore>
#include <sys/resource.h>
#include <thread>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

namespace {

class DDFileLoggerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        mDirectory = corvex::test::home() + u"/logs-"_s +
                     QString::fromLatin1(::testing::UnitTest::GetInstance()->current_test_info()->name());
        mManager = std::make_shared<DDLogFileManagerDefault>(mDirectory);
    }
    void TearDown() override
    {
        DDLog::removeAllLoggers();
        DDLog::flushLog();
    }

    // A file logger over this test's folder, added to the dispatcher; without a formatter it writes bare
    // texts.
    std::shared_ptr<DDFileLogger> addFileLogger(bool formatted = true)
    {
        auto logger = std::make_shared<DDFileLogger>(mManager);
        if (!formatted)
            logger->setLogFormatter(nullptr);
        DDLog::addLogger(logger);
        return logger;
    }

    // Logs the texts, waits until every logger has them, and returns the logger's current file.
    static QString write(DDFileLogger &logger, const QStringList &messages)
    {
        for (const QString &text : messages)
            DDLogInfo(text);
        DDLog::flushLog();
        return logger.currentLogFileInfo()->filePath();
    }

    // The message texts of a log file, without their times.
    static QStringList texts(const QString &path)
    {
        static const QRegularExpression time(u"^\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d:\\d{3}  "_s);
        return corvex::test::readLines(path).replaceInStrings(time, QString());
    }

    QString mDirectory;
    std::shared_ptr<DDLogFileManagerDefault> mManager;
};

} // namespace

TEST_F(DDFileLoggerTest, DefaultsAndName)
{
    auto logger = std::make_shared<DDFileLogger>();
    EXPECT_EQ(logger->maximumFileSize(), 1048576u);
    EXPECT_EQ(logger->rollingFrequency(), 0.0);
    EXPECT_EQ(logger->loggerName(), u"cocoa.vofungudip.fileLogger"_s);
    EXPECT_EQ(logger->loggerQueue()->label(), u"cocoa.vofungudip.fileLogger"_s);
    EXPECT_TRUE(logger->logFormatter() != nullptr);
    EXPECT_TRUE(std::dynamic_pointer_cast<DDLogFileManagerDefault>(logger->logFileManager()) != nullptr);
}

// Without a formatter the raw text is written, with a line feed added where it has none.
TEST_F(DDFileLoggerTest, WritesOneTimestampedLinePerMessageOrTheRawTextWithoutAFormatter)
{
    auto logger = addFileLogger();
    write(*logger, {u"first"_s, u"ends in a line feed\n"_s, u"two\nlines"_s, u"Ünïcödé ✓"_s});
    logger->setLogFormatter(nullptr);
    const QString path = write(*logger, {u"raw"_s, u"raw with feed\n"_s});
    EXPECT_EQ(QFileInfo(path).path(), mDirectory);
    const QString text = QString::fromUtf8(corvex::test::readFile(path));
    const QRegularExpression exact(
        QStringLiteral("^(\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d:\\d{3})  first\\n"
                       "\\d{4}/[^\\n]{18}  ends in a line feed\\n"
                       "\\d{4}/[^\\n]{18}  two\\nlines\\n"
                       "\\d{4}/[^\\n]{18}  Ünïcödé ✓\\nraw\\nraw with feed\\n$"));
    const QRegularExpressionMatch match = exact.match(text);
    ASSERT_TRUE(match.hasMatch()) << qPrintable(text);
    const QDateTime written = QDateTime::fromString(match.captured(1), u"yyyy/MM/dd HH:mm:ss:zzz"_s);
    EXPECT_LE(qAbs(written.secsTo(QDateTime::currentDateTime())), 60);
}

TEST_F(DDFileLoggerTest, RollsByAgeWhenTheTimerFires)
{
    auto logger = addFileLogger();
    logger->setRollingFrequency(0.4);
    const QString first = write(*logger, {u"young"_s});
    EXPECT_FALSE(DDLogFileInfo(first).isArchived());
    EXPECT_TRUE(corvex::test::waitUntil([&] { return DDLogFileInfo(first).isArchived(); }, 5000ms));
    const QString second = write(*logger, {u"after"_s});
    EXPECT_NE(second, first);
    EXPECT_EQ(texts(second), QStringList{u"after"_s});
    EXPECT_EQ(texts(first), QStringList{u"young"_s});
}

// rollLogFile() takes its turn among the messages.
TEST_F(DDFileLoggerTest, RollsWhenTheFileReachesItsLimitExactlyOrWhenAsked)
{
    auto logger = addFileLogger(false);
    logger->setMaximumFileSize(4);
    DDLogInfo(u"a"_s); // "a\n": 2 bytes, below the limit
    DDLogInfo(u"b"_s); // 4 bytes: at the limit, the file rolls
    DDLogInfo(u"c"_s);
    logger->rollLogFile();
    write(*logger, {u"d"_s});
    QStringList files; // texts, and whether archived
    for (const std::shared_ptr<DDLogFileInfo> &file : mManager->unsortedLogFileInfos())
        files.append(texts(file->filePath()).join(u',') + (file->isArchived() ? u" archived"_s : QString()));
    files.sort();
    EXPECT_EQ(files.join(u" | ").toStdString(), "a,b archived | c archived | d");
}

TEST_F(DDFileLoggerTest, StartUpReusesARecentUnarchivedFile)
{
    auto first = addFileLogger();
    const QString path = write(*first, {u"before restart"_s});
    DDLog::removeLogger(first);
    DDLog::flushLog();
    first.reset();

    auto second = addFileLogger();
    second->setRollingFrequency(3600);
    EXPECT_EQ(write(*second, {u"after restart"_s}), path);
    EXPECT_EQ(texts(path), (QStringList{u"before restart"_s, u"after restart"_s}));
}

TEST_F(DDFileLoggerTest, StartUpArchivesAFileTooLargeOrTooOld)
{
    const QString tooLarge = mManager->createNewLogFile();
    corvex::test::writeFile(tooLarge, QByteArray(300, 'x'));
    auto logger = std::make_shared<DDFileLogger>(mManager);
    logger->setMaximumFileSize(300);
    DDLog::addLogger(logger);
    const QString second = write(*logger, {u"new file"_s});
    EXPECT_NE(second, tooLarge);
    EXPECT_TRUE(DDLogFileInfo(tooLarge).isArchived());
    DDLog::removeAllLoggers();
    DDLog::flushLog();
    logger.reset();

    // Rolled every microsecond: the file from before is too old once the file clock has moved on.
    ASSERT_TRUE(corvex::test::waitUntil([&] { return DDLogFileInfo(second).age() > 1e-6; }));
    auto later = std::make_shared<DDFileLogger>(mManager);
    later->setRollingFrequency(1e-6);
    DDLog::addLogger(later);
    EXPECT_NE(write(*later, {u"newer file"_s}), second);
    EXPECT_TRUE(DDLogFileInfo(second).isArchived());
    EXPECT_EQ(texts(second), QStringList{u"new file"_s});
}

TEST_F(DDFileLoggerTest, FlagFilesMarkArchivedFilesWhereAttributesAreRefused)
{
    const RefusingAttributes refusing;
    auto logger =
        std::make_shared<DDFileLogger>(std::make_shared<DDLogFileManagerDefault>(mDirectory, refusing));
    DDLog::addLogger(logger);
    DDLogInfo(u"one"_s);
    logger->rollLogFile();
    DDLog::flushLog();
    const QStringList names = mManager->sortedLogFileNames();
    ASSERT_EQ(names.size(), 1);
    EXPECT_TRUE(QFile::exists(mDirectory + u"/."_s + names.first() + u".archived"_s));
    DDLog::removeAllLoggers();
    DDLog::flushLog();
    logger.reset();

    // A restart on attributes taken honours the flag file: the archived file is not written again.
    auto restarted = addFileLogger();
    EXPECT_NE(QFileInfo(write(*restarted, {u"two"_s})).fileName(), names.first());
    EXPECT_EQ(texts(mDirectory + QLatin1Char('/') + names.first()), QStringList{u"one"_s});
}

TEST_F(DDFileLoggerTest, AnUnopenableFileDropsMessagesAndIsReportedOnce)
{
    const QString blocker = corvex::test::writeFile(mDirectory + u"-blocker"_s, "x");
    auto manager = std::make_shared<DDLogFileManagerDefault>(blocker + u"/Logs"_s);
    auto logger = std::make_shared<DDFileLogger>(manager);
    testing::internal::CaptureStderr();
    DDLog::addLogger(logger);
    for (int i = 0; i < 50; ++i)
        DDLogInfo(u"lost"_s);
    DDLogError(u"also lost"_s);
    DDLog::flushLog();
    const QString text = QString::fromStdString(testing::internal::GetCapturedStderr());
    EXPECT_EQ(text.count(u"DDFileLogManagerDefault: Error creating logsDirectory: "_s), 2)
        << "one listing and one creation" << qPrintable(text);
    EXPECT_EQ(text.count(u"DDFileLogger: Error opening log file ("_s), 1) << qPrintable(text);
}

TEST_F(DDFileLoggerTest, AFullDiskDropsMessagesButKeepsWholeLines)
{
    auto logger = addFileLogger(false);
    const QString kept(3999, QLatin1Char('k'));
    const QString path = write(*logger, {kept});

    // The file may grow by 10 more bytes only; a 30-byte line is cut off by the system. (The limit holds
    // for every file of the process, the captured standard error too: it stays below it.)
    std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit saved
    {
    };
    getrlimit(RLIMIT_FSIZE, &saved);
    struct rlimit small = saved;
    small.rlim_cur = 4000 + 10;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    testing::internal::CaptureStderr();
    write(*logger, {QString(29, QLatin1Char('y')), QString(29, QLatin1Char('z'))});
    setrlimit(RLIMIT_FSIZE, &saved);
    const QString text = QString::fromStdString(testing::internal::GetCapturedStderr());
    write(*logger, {u"again"_s});

    EXPECT_EQ(corvex::test::readFile(path), kept.toLatin1() + "\nagain\n");
    EXPECT_EQ(text.count(u"DDFileLogger: Error writing to log file ("_s + path), 1) << qPrintable(text);
}

TEST_F(DDFileLoggerTest, SettingsAppliedFromOutsideCheckTheRulesAtOnce)
{
    auto logger = addFileLogger();
    const QString first = write(*logger, {QString(50, QLatin1Char('a'))});
    logger->setMaximumFileSize(10); // the file is already larger: rolled now
    DDLog::flushLog();
    EXPECT_EQ(logger->maximumFileSize(), 10u);
    EXPECT_TRUE(DDLogFileInfo(first).isArchived());

    logger->setMaximumFileSize(1 << 20);
    const QString second = write(*logger, {u"b"_s});
    EXPECT_NE(second, first);
    ASSERT_TRUE(corvex::test::waitUntil([&] { return DDLogFileInfo(second).age() > 1e-6; }));
    logger->setRollingFrequency(1e-6); // the file is already older than a microsecond: rolled now
    EXPECT_EQ(logger->rollingFrequency(), 1e-6);
    EXPECT_TRUE(DDLogFileInfo(second).isArchived());
}

TEST_F(DDFileLoggerTest, AnErrorIsInTheFileWhenItsStatementReturnsWhileLinesAreGathered)
{
    auto logger = addFileLogger();
    // A second logger that stops every delivery at "hold", so that deliveries still follow the error.
    std::binary_semaphore holdGate(0);
    auto holder = std::make_shared<RecordingLogger>(u"holder"_s);
    holder->hook = [&](const DDLogMessage &message) {
        if (message.logMsg() == u"hold"_s)
            holdGate.acquire();
    };
    DDLog::addLogger(holder);
    const QString path = write(*logger, {u"opens the file"_s});

    std::binary_semaphore gate(0);
    DDLog::loggingQueue()->async([&gate] { gate.acquire(); });
    for (int i = 0; i < 20; ++i)
        DDLogInfo(u"before %1"_s.arg(i));
    const long waiting = ddlog_private::queueSizeSemaphore().value();
    std::thread later([&] {
        // Once the error waits in the queue: more lines behind it, then deliveries may start.
        corvex::test::waitUntil([&] { return ddlog_private::queueSizeSemaphore().value() < waiting; });
        DDLogInfo(u"hold"_s);
        DDLogInfo(u"after"_s);
        gate.release();
    });
    DDLogError(u"boom"_s);
    EXPECT_EQ(texts(path).last(), u"boom"_s);
    holdGate.release();
    later.join();
    DDLog::flushLog();
    EXPECT_EQ(texts(path).last(), u"after"_s);
}

TEST_F(DDFileLoggerTest, GatheredLinesAreWrittenWhenTheLoggerIsRemoved)
{
    auto logger = addFileLogger();
    auto other =
        std::make_shared<DDFileLogger>(std::make_shared<DDLogFileManagerDefault>(mDirectory + u"-other"_s));
    DDLog::addLogger(other);
    const QString path = write(*logger, {u"opens the file"_s});
    const QString otherPath = other->currentLogFileInfo()->filePath();

    // Hold the logging queue so that messages pile up behind the removal: the logger's last message is
    // followed by more (for the other logger), so its line is gathered, and the removal must write it.
    std::binary_semaphore gate(0);
    DDLog::loggingQueue()->async([&gate] { gate.acquire(); });
    for (int i = 0; i < 100; ++i)
        DDLogInfo(u"line %1"_s.arg(i));
    DDLog::removeLogger(logger);
    for (int i = 0; i < 100; ++i)
        DDLogInfo(u"later %1"_s.arg(i));

    // A message handed to the logger directly, outside the dispatcher's deliveries, is written at once.
    const DDLogMessage direct(u"direct"_s, 7, DDLogFlagInfo, 1, __FILE__, "f", 1);
    other->loggerQueue()->sync([&] { other->logMessage(direct); });
    EXPECT_EQ(texts(otherPath), (QStringList{u"opens the file"_s, u"direct"_s}));

    gate.release();
    DDLog::flushLog();
    const QStringList written = texts(path);
    ASSERT_EQ(written.size(), 101);
    EXPECT_EQ(written.last(), u"line 99"_s);
    EXPECT_EQ(texts(otherPath).size(), 202);
}

TEST_F(DDFileLoggerTest, FlushLogWritesEveryEarlierLineWhileAnotherThreadKeepsLogging)
{
    auto logger = addFileLogger(false);
    std::atomic<bool> stop{false};
    std::thread other([&] {
        while (!stop)
            DDLogInfo(u"noise"_s);
    });
    const QString path = logger->currentLogFileInfo()->filePath();
    int missing = 0;
    for (int round = 0; round < 300; ++round) {
        const QByteArray marker = "marker " + QByteArray::number(round) + '\n';
        DDLogInfo(QString::fromLatin1(marker.trimmed()));
        DDLog::flushLog();
        // The noise may roll the file between the flush and this look: every file of the folder counts.
        QByteArray all = corvex::test::readFile(logger->currentLogFileInfo()->filePath());
        const QDir folder = QFileInfo(path).dir();
        for (const QString &name : all.contains(marker) ? QStringList() : folder.entryList(QDir::Files))
            all += corvex::test::readFile(folder.filePath(name));
        if (!all.contains(marker))
            ++missing;
    }
    stop = true;
    other.join();
    EXPECT_EQ(missing, 0) << "first file " << qPrintable(path);
}
