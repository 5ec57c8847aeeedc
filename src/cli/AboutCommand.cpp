// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex about: the version and a description of this system, to paste into a bug report.
#include "cli/CommandModule.h"
#include "core/FeedbackReport.h"
#include "foundation/Version.h"

namespace {

int runAbout(const QStringList &arguments)
{
    if (!arguments.isEmpty())
        return cli::fail(QStringLiteral("about takes no arguments (usage: corvex about)"));
    const SystemFacts facts = FeedbackReport::currentSystemFacts();
    QString shortVersion = FeedbackReport::applicationBundle().shortVersionString();
    if (shortVersion.isEmpty())
        shortVersion = QStringLiteral(CORVEX_MARKETING_VERSION);
    cli::out(QStringLiteral("Corvex %1\n").arg(shortVersion));
    cli::out(FeedbackReport::systemDescription(facts, QStringLiteral("\n")));
    return 0;
}

} // namespace

extern "C" Q_DECL_EXPORT int corvex_command_main(int argc, char **argv)
{
    // On the session's display, to count its screens.
    const auto app = cli::makeGuiApplication(argc, argv, cli::Platform::SessionDisplay);
    return cli::runModuleCommand(&runAbout);
}
