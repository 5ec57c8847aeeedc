// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex process FILE: applies the automatic steps the shared preferences switch on, as the agent does, and
// prints where the file ended up.
#include "cli/Command.h"
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

const cli::CommandRegistration registration{
    "process", "FILE",
    "Applies the automatic steps that are switched on to the file, as the agent does; prints its final path.",
    &runProcess,
    "The steps, in order, each when its switch in the com.ostrel.Corvex domain is on:\n"
    "  rename   \"autoRename\": the name \"autoRenameFormat\" gives, with the file's extension, same folder\n"
    "  convert  \"autoReformat\": to the format of \"autoReformatExtension\" (the source goes to the Trash)\n"
    "  move     \"autoMove\": into \"autoMoveFolder\" (created when missing)\n"
    "  open     \"openWith\": with \"openWithBundleIdentifier\", when the window is off "
    "(\"showCorvexWindow\")\n"
    "An existing file is never replaced: a taken name gets \" 2\", \" 3\", ... before the extension. A "
    "failing\n"
    "step is reported and skipped, the file stays where it is; the exit status is then 1."};

} // namespace
