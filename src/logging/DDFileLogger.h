// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "logging/DDAbstractLogger.h"

#include <QString>

class DDLogFileInfo;
class DDLogFileManager;

// A logger that appends each message as one line (or more, for a text with line feeds) to a log file, starts
// a new file when the current one reaches a size or an age, and leaves the keeping of old files to its
// manager. A line reaches the file before the message counts as delivered, except while more messages wait on
// the logging queue: their lines are then gathered (up to 64 KiB) and written together with the last of them.
// Error messages are written at once. The log files' extended attributes are those of the manager's store.
// Make it with std::make_shared.
class DDFileLogger : public DDAbstractLogger
{
public:
    // A logger with a new DDLogFileManagerDefault and a DDLogFileFormatterDefault.
    DDFileLogger();
    // A logger with the manager (a new DDLogFileManagerDefault when null).
    explicit DDFileLogger(const std::shared_ptr<DDLogFileManager> &logFileManager);
    // Closes the file (after writing it out to disk) and stops the age timer.
    ~DDFileLogger() override;

    const std::shared_ptr<DDLogFileManager> &logFileManager() const { return mLogFileManager; }

    // Roll when the file reaches this size in bytes (default 1048576). The setter takes effect in turn with
    // the messages, and the size rule is checked at once.
    quint64 maximumFileSize() const;
    void setMaximumFileSize(quint64 maximumFileSize);

    // Roll files older than this many seconds; 0 (the default) never rolls by age. The setter takes effect
    // in turn with the messages, and the age rule is checked at once.
    double rollingFrequency() const;
    void setRollingFrequency(double rollingFrequency);

    // Archives the current file, in turn with the messages; the next message starts a new file.
    void rollLogFile();

    // The file being written; it is chosen (an unarchived recent file is reused, else a new one is made)
    // when needed. Safe from any thread.
    std::shared_ptr<DDLogFileInfo> currentLogFileInfo();

    // Writes the message. Called on the logger's queue.
    void logMessage(const DDLogMessage &logMessage) override;

    // "cocoa.vofungudip.fileLogger".
    QString loggerName() const override;

    // About to be removed: gathered lines are written.
    void willRemoveLogger() override;
    // Writes any gathered lines now.
    void flush() override;

private:
    // All of these run on the logger's queue.
    std::shared_ptr<DDLogFileInfo> currentLogFileInfoOnQueue();
    int currentLogFileHandle();
    // Writes the gathered lines; on failure only whole lines stay in the file.
    void writeOut();
    void rollLogFileNow();
    void maybeRollLogFileDueToAge();
    void maybeRollLogFileDueToSize();
    void scheduleTimerToRollLogFileDueToAge();
    void cancelRollingTimer();

    std::shared_ptr<DDLogFileManager> mLogFileManager;
    std::shared_ptr<DDLogFileInfo> mCurrentLogFileInfo;
    int mCurrentLogFileHandle = -1;
    quint64 mCurrentOffset = 0; // bytes in the file, not counting mPendingBytes
    QByteArray mPendingBytes;   // lines gathered for one write
    quint64 mRollingTimer = 0;  // the identifier of the delayed check on the logger's queue; 0 for none
    bool mShuttingDown = false;
    quint64 mMaximumFileSize = 1048576;
    double mRollingFrequency = 0.0;
    QString mUnopenablePath; // reported once, until another file opens
    bool mWriteFailureReported = false;
};
