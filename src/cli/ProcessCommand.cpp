// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex process FILE: applies the automatic steps the shared preferences switch on, as the agent does, and
// prints where the file ended up.
#include "cli/CommandModule.h"
#include "core/AutomaticSteps.h"
#include "core/ScreenshotInfo.h"

#include <QFileInfo>

namespace {

int runProcess(const QStringList &arguments)
{
    if (arguments.size() != 1)
        return cli::fail(QStringLiteral("process needs exactly one file (usage: corvex process FILE)"));
    const QFileInfo file(arguments.at(0));
    if (!file.exists())
        return cli::fail(QStringLiteral("%1: no such file").arg(arguments.at(0)));
    if (!file.isFile())
        return cli::fail(QStringLiteral("%1: not a file").arg(arguments.at(0)));

    ScreenshotInfo info(file.absoluteFilePath(), 1);
    const AutomaticStepsReport report = AutomaticSteps::applyToScreenshotInfo(info);
    if (report.filePath.isNull())
        return cli::fail(QStringLiteral("%1: no such file").arg(arguments.at(0)));
    cli::out(report.filePath + QLatin1Char('\n'));
    if (!report.failedSteps.isEmpty())
        return cli::fail(QStringLiteral("%1 failed; the file is at %2")
                             .arg(report.failedSteps.join(QStringLiteral(", ")), report.filePath));
    return 0;
}

} // namespace

extern "C" Q_DECL_EXPORT int corvex_command_main(int argc, char **argv)
{
    const auto app = cli::makeGuiApplication(argc, argv);
    return cli::runModuleCommand(&runProcess);
}
