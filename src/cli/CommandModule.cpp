// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandModule.h"
#include "cli/StderrLogger.h"

namespace cli {

int runModuleCommand(CommandFunction run)
{
    QCoreApplication::setApplicationName(QStringLiteral("corvex"));
    installStderrLogger();
    const int code = run(QCoreApplication::arguments().mid(2));
    flushLogs();
    return code;
}

} // namespace cli
