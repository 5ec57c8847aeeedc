// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "StderrLogger.h"

#include "logging/DDLog.h"

namespace cli {

void installStderrLogger() {}

void flushLogs()
{
    DDLog::flushLog();
}

} // namespace cli
