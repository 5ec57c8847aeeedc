// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "logging/DDLogFileManagerDefault.h"

// The files of the shared log that the agent keeps and the log window shows: the file in use is always
// "Corvex log.txt" in $XDG_DATA_HOME/Corvex/Logs; when it is archived (by size, by age, or because it was
// unfit at start-up) it is renamed to "log-XXXXXX.txt", a fresh "Corvex log.txt" is made at once, the oldest
// archives beyond the number kept (five) are deleted, and "CorvexDidArchiveLogFile" is posted so that log
// windows start over.
class AgentLogFileManager : public DDLogFileManagerDefault
{
public:
    static inline const QString CurrentLogFileName = QStringLiteral("Corvex log.txt");

    // Files in $XDG_DATA_HOME/Corvex/Logs.
    AgentLogFileManager();
    explicit AgentLogFileManager(const QString &logsDirectory);

    // The folder of the shared log: Application Support, "Corvex", "Logs".
    static QString sharedLogsDirectory();

    // "Corvex log.txt" as well as the archived "log-XXXXXX" files.
    bool isLogFile(const QString &fileName) const override;

    // Newest first, with "Corvex log.txt" always first.
    QList<std::shared_ptr<DDLogFileInfo>> sortedLogFileInfos() override;

    // "Corvex log.txt", made empty when it does not exist (an archived one is moved aside first).
    QString createNewLogFile() override;

    void didArchiveLogFile(const QString &logFilePath) override;
    void didRollAndArchiveLogFile(const QString &logFilePath) override;

private:
    QString currentLogFilePath();
    // Renames an archived "Corvex log.txt" to a fresh archive name; false when it could not.
    bool moveArchivedFileAside(const QString &logFilePath);
    bool makeCurrentLogFile(const QString &path);
    void archived(const QString &logFilePath);
};
