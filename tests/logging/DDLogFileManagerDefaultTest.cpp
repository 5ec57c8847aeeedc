// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogFileManagerDefault.h"
#include "TestSupport.h"
#include "logging/DDLog.h"
#include "logging/DDLogFileInfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QThread>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString directoryFor(const char *name)
{
    return corvex::test::home() + u"/manager-"_s + QString::fromLatin1(name);
}

// A new log file whose creation time differs from the files made before it: file times follow the kernel's
// coarse clock, which moves in steps of up to 10 ms.
QString newLogFile(DDLogFileManagerDefault &manager)
{
    static QDateTime last;
    for (;;) {
        const QString path = manager.createNewLogFile();
        const QDateTime created = DDLogFileInfo(path).creationDate();
        if (!last.isValid() || created > last) {
            last = created;
            return path;
        }
        QFile::remove(path); // made in the same tick of the file clock: again
    }
}

// Makes a log file through the manager and marks it archived.
QString archivedFile(DDLogFileManagerDefault &manager)
{
    const QString path = newLogFile(manager);
    DDLogFileInfo(path).setIsArchived(true);
    return path;
}

} // namespace

TEST(DDLogFileManagerDefaultTest, StandardFolderIsTheProcessFolderInApplicationSupport)
{
    const QString name = QCoreApplication::applicationName();
    ASSERT_FALSE(name.isEmpty());
    EXPECT_EQ(DDLogFileManagerDefault::processName(), name);
    const QString expected =
        qEnvironmentVariable("XDG_DATA_HOME") + QLatin1Char('/') + name + QLatin1String("/Logs");
    EXPECT_EQ(DDLogFileManagerDefault::defaultLogsDirectory(), expected);
    DDLogFileManagerDefault manager;
    EXPECT_FALSE(QDir(expected).exists());
    EXPECT_EQ(manager.logsDirectory(), expected);
    EXPECT_TRUE(QDir(expected).exists()) << "created with its parents";
    EXPECT_EQ(manager.maximumNumberOfLogFiles(), 5u);
}

TEST(DDLogFileManagerDefaultTest, LogFileNamesAreLogDashAndSixUpperCaseHexDigits)
{
    DDLogFileManagerDefault manager(directoryFor("names"));
    EXPECT_TRUE(manager.isLogFile(u"log-3F2A9C.txt"_s));
    EXPECT_TRUE(manager.isLogFile(u"log-12AB56"_s));
    EXPECT_TRUE(manager.isLogFile(u"log-000000.log"_s));
    EXPECT_FALSE(manager.isLogFile(u"log-12ab56.txt"_s));
    EXPECT_FALSE(manager.isLogFile(u"log-12AB5"_s));
    EXPECT_FALSE(manager.isLogFile(u"log-12AG56.txt"_s));
    EXPECT_FALSE(manager.isLogFile(u"Log-12AB56.txt"_s));
    EXPECT_FALSE(manager.isLogFile(u".log-12AB56.txt.archived"_s));

    const QRegularExpression pattern(u"^log-[0-9A-F]{6}\\.txt$"_s);
    QStringList made;
    for (int i = 0; i < 20; ++i) {
        const QString path = manager.createNewLogFile();
        const QFileInfo info(path);
        EXPECT_EQ(info.path(), directoryFor("names"));
        EXPECT_TRUE(pattern.match(info.fileName()).hasMatch()) << qPrintable(info.fileName());
        EXPECT_TRUE(info.exists());
        EXPECT_EQ(info.size(), 0);
        EXPECT_FALSE(made.contains(path));
        made.append(path);
        DDLogFileInfo(path).setIsArchived(true);
    }
    EXPECT_EQ(DDLogFileManagerDefault::generateShortUUID().size(), 6);
}

TEST(DDLogFileManagerDefaultTest, ListsOnlyLogFilesNewestFirst)
{
    const QString directory = directoryFor("lists");
    DDLogFileManagerDefault manager(directory);
    manager.setMaximumNumberOfLogFiles(10);
    const QString first = archivedFile(manager);
    const QString second = archivedFile(manager);
    const QString third = newLogFile(manager);
    corvex::test::writeFile(directory + u"/notes.txt"_s, "x");
    corvex::test::writeFile(directory + u"/log-abcdef.txt"_s, "x");
    EXPECT_EQ(manager.sortedLogFilePaths(), (QStringList{third, second, first}));
    EXPECT_EQ(manager.sortedLogFileNames(),
              (QStringList{QFileInfo(third).fileName(), QFileInfo(second).fileName(),
                           QFileInfo(first).fileName()}));
    EXPECT_THAT(manager.unsortedLogFilePaths(), testing::UnorderedElementsAre(first, second, third));
    EXPECT_EQ(manager.unsortedLogFileNames().size(), 3);
    EXPECT_EQ(manager.unsortedLogFileInfos().size(), 3);
    EXPECT_EQ(manager.sortedLogFileInfos().first()->filePath(), third);
}

TEST(DDLogFileManagerDefaultTest, KeepsTheFileInUseAndFiveArchivedFiles)
{
    DDLogFileManagerDefault manager(directoryFor("keep"));
    manager.setMaximumNumberOfLogFiles(10);
    QStringList archived;
    for (int i = 0; i < 6; ++i)
        archived.append(archivedFile(manager));
    const QString current = manager.createNewLogFile();
    manager.setMaximumNumberOfLogFiles(5); // not shared: clears away at once
    // Six archived files and the one in use: the oldest archived one goes.
    EXPECT_EQ(manager.sortedLogFilePaths(),
              (QStringList{current} + QStringList(archived.rbegin(), archived.rend() - 1)));

    // The file in use is rolled and a new one made: again five archived files stay besides it.
    DDLogFileInfo(current).setIsArchived(true);
    const QString next = manager.createNewLogFile();
    const QStringList remaining = manager.sortedLogFilePaths();
    ASSERT_EQ(remaining.size(), 6);
    EXPECT_EQ(remaining.first(), next);
    EXPECT_EQ(remaining.at(1), current);
    EXPECT_FALSE(remaining.contains(archived.at(1)));
}

TEST(DDLogFileManagerDefaultTest, LoweringTheNumberKeptClearsAwayLaterOnTheLoggingQueue)
{
    auto manager = std::make_shared<DDLogFileManagerDefault>(directoryFor("lower"));
    for (int i = 0; i < 4; ++i)
        archivedFile(*manager);
    // A file flagged by a flag file goes with its flag.
    const QString flagged = manager->createNewLogFile();
    corvex::test::writeFile(
        DDLogFileInfo(flagged).flagFilePathForAttribute(DDLogFileInfo::ArchivedAttributeName), "");
    const QString current = manager->createNewLogFile();
    manager->setMaximumNumberOfLogFiles(5); // unchanged: nothing queued
    manager->setMaximumNumberOfLogFiles(1);
    DDLog::flushLog();
    EXPECT_EQ(manager->sortedLogFilePaths(), (QStringList{current, flagged}));
    manager->setMaximumNumberOfLogFiles(0);
    DDLog::flushLog();
    EXPECT_EQ(manager->sortedLogFilePaths(), QStringList{current});
    EXPECT_FALSE(
        QFile::exists(DDLogFileInfo(flagged).flagFilePathForAttribute(DDLogFileInfo::ArchivedAttributeName)));
}

TEST(DDLogFileManagerDefaultTest, AFolderThatCannotBeMadeIsReportedAndReturned)
{
    const QString blocker = corvex::test::writeFile(directoryFor("blocked") + u"/file"_s, "x");
    const QString directory = blocker + u"/Logs"_s;
    DDLogFileManagerDefault manager(directory);
    testing::internal::CaptureStderr();
    EXPECT_EQ(manager.logsDirectory(), directory);
    const QString path = manager.createNewLogFile();
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::StartsWith("DDFileLogManagerDefault: Error creating logsDirectory: "));
    EXPECT_TRUE(path.startsWith(directory + u"/log-"_s));
    EXPECT_FALSE(QFile::exists(path));
}
