// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ExtendedAttributes.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

class DDLogFileInfo;

// What a file logger needs of a log file manager: where the files live, which they are (newest first), a new
// file when asked, and the clearing away of old ones. Called on the file logger's queue or the logging queue,
// never on both at once.
class DDLogFileManager
{
public:
    virtual ~DDLogFileManager() = default;

    // How many archived files are kept besides the one in use.
    virtual quint64 maximumNumberOfLogFiles() const = 0;
    virtual void setMaximumNumberOfLogFiles(quint64 maximumNumberOfLogFiles) = 0;

    // The folder of the log files.
    virtual QString logsDirectory() = 0;

    virtual QStringList unsortedLogFilePaths() = 0;
    virtual QStringList unsortedLogFileNames() = 0;
    virtual QList<std::shared_ptr<DDLogFileInfo>> unsortedLogFileInfos() = 0;

    // The log files, newest (by creation date) first.
    virtual QStringList sortedLogFilePaths() = 0;
    virtual QStringList sortedLogFileNames() = 0;
    virtual QList<std::shared_ptr<DDLogFileInfo>> sortedLogFileInfos() = 0;

    // Creates a new, empty log file and returns its path.
    virtual QString createNewLogFile() = 0;

    // Deletes archived files beyond the number kept.
    virtual void deleteOldLogFiles() = 0;

    // The store of the files' extended attributes (where the archived flag lives): the file system's unless
    // the manager says otherwise. The file logger reads and marks its files through it too.
    virtual const ExtendedAttributes &extendedAttributes() const { return ExtendedAttributes::fileSystem(); }

    // Optional notices: a file found unfit at start-up has been archived; the file in use has been rolled and
    // archived. The defaults do nothing.
    virtual void didArchiveLogFile(const QString &logFilePath) { Q_UNUSED(logFilePath); }
    virtual void didRollAndArchiveLogFile(const QString &logFilePath) { Q_UNUSED(logFilePath); }
};
