// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex about: the version and a description of this system, to paste into a bug report.
#include "cli/Command.h"
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

const cli::CommandRegistration registration{
    "about", "", "Prints the version and a description of this system for bug reports.", &runAbout,
    "The same description the feedback e-mail carries: version, operating system, memory, displays, locale,\n"
    "languages, time format and the custom screenshot settings (an empty last line when there are none)."};

} // namespace
