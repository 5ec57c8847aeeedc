// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "logging/DDLogFileManager.h"
#include "platform/ExtendedAttributes.h"

#include <atomic>

// The standard log file manager: files named "log-XXXXXX.txt" (six upper-case hexadecimal characters) in
// $XDG_DATA_HOME/<process name>/Logs, keeping the file in use and five archived files unless told otherwise.
// The files' extended attributes are those of the store given (the file system's unless told otherwise),
// which must outlive the manager. Make it with std::make_shared so that changes of the number kept can clear
// away files later.
class DDLogFileManagerDefault : public DDLogFileManager,
                                public std::enable_shared_from_this<DDLogFileManagerDefault>
{
public:
    // Files in the standard folder.
    DDLogFileManagerDefault();
    // Files in the given folder (an empty path stands for the standard one).
    explicit DDLogFileManagerDefault(const QString &logsDirectory,
                                     const ExtendedAttributes &attributes = ExtendedAttributes::fileSystem());

    // The store of the files' extended attributes.
    const ExtendedAttributes &extendedAttributes() const override { return mExtendedAttributes; }

    quint64 maximumNumberOfLogFiles() const override;
    // Clears away files beyond the new number (asynchronously, on the logging queue) when it changes.
    void setMaximumNumberOfLogFiles(quint64 maximumNumberOfLogFiles) override;

    // The folder, created with its parents when missing (a failure goes to the system log; the path is
    // returned all the same).
    QString logsDirectory() override;

    // True for "log-" followed by six characters of "0123456789ABCDEF" (whatever follows).
    virtual bool isLogFile(const QString &fileName) const;

    QStringList unsortedLogFilePaths() override;
    QStringList unsortedLogFileNames() override;
    QList<std::shared_ptr<DDLogFileInfo>> unsortedLogFileInfos() override;
    QStringList sortedLogFilePaths() override;
    QStringList sortedLogFileNames() override;
    QList<std::shared_ptr<DDLogFileInfo>> sortedLogFileInfos() override;

    // A new empty file under an unused "log-XXXXXX.txt" name; old files are cleared away afterwards.
    QString createNewLogFile() override;

    // Keeps the newest file when it is not archived (the one in use) and the newest archived files up to the
    // number kept; deletes the rest. Deletion failures are ignored.
    void deleteOldLogFiles() override;

    // The standard folder: Application Support ($XDG_DATA_HOME, else ~/.local/share; the temporary folder
    // when there is no home), the process name, "Logs".
    static QString defaultLogsDirectory();
    // The application's name, else the executable's.
    static QString processName();
    // Six characters: the start of a new random UUID, upper-case hexadecimal.
    static QString generateShortUUID();

private:
    // The log file names in the folder.
    QStringList logFileNamesIn(const QString &directory) const;
    QStringList logFilePathsIn(const QString &directory) const;

    QString mLogsDirectory;
    const ExtendedAttributes &mExtendedAttributes;
    std::atomic<quint64> mMaximumNumberOfLogFiles{5};
};
