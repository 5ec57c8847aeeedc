// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/StderrLogger.h"

#include "foundation/WriteAll.h"
#include "logging/DDLog.h"
#include "logging/DDLogFormatter.h"
#include "logging/DDLogMessage.h"

#include <cerrno>
#include <unistd.h>

namespace cli {

StderrLogger::StderrLogger(int fileDescriptor, bool verbose)
    : mFileDescriptor(fileDescriptor), mVerbose(verbose)
{
}

void StderrLogger::logMessage(const DDLogMessage &logMessage)
{
    if (!(quint32(logMessage.logFlag()) & DDLogFlagError) && !mVerbose)
        return;
    const QString text = formatter() ? formatter()->formatLogMessage(logMessage) : logMessage.logMsg();
    if (text.isNull())
        return;
    QByteArray line = "corvex: " + text.toUtf8();
    if (!line.endsWith('\n'))
        line.append('\n');
    // One write per line, so that lines of concurrent writers never interleave.
    writeAll(mFileDescriptor, line);
}

QString StderrLogger::loggerName() const
{
    return QStringLiteral("corvex.stderrLogger");
}

void installStderrLogger()
{
    DDLog::addLogger(
        std::make_shared<StderrLogger>(STDERR_FILENO, !qEnvironmentVariableIsEmpty("CORVEX_VERBOSE")));
}

void flushLogs()
{
    DDLog::flushLog();
}

} // namespace cli
