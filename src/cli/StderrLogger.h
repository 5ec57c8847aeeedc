// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "logging/DDAbstractLogger.h"

namespace cli {

// The command-line tool's logger: error messages go to standard error as "corvex: <text>", one line each;
// warnings and information too when the environment variable CORVEX_VERBOSE is set.
class StderrLogger : public DDAbstractLogger
{
public:
    // A logger for the given file descriptor (standard error by default).
    explicit StderrLogger(int fileDescriptor = 2, bool verbose = false);

    void logMessage(const DDLogMessage &logMessage) override;
    QString loggerName() const override;

private:
    int mFileDescriptor;
    bool mVerbose;
};

// Adds a StderrLogger (verbose when CORVEX_VERBOSE is set) to the dispatcher; the messages logged from then
// on reach it.
void installStderrLogger();

// Returns once every message logged so far has reached every logger.
void flushLogs();

} // namespace cli
