// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The command table of `corvex` and its output helpers.
#include "cli/Command.h"

#include <algorithm>
#include <cstdio>

namespace cli {

namespace {
QList<Command> &registry()
{
    static QList<Command> list;
    return list;
}
} // namespace

void printUsage(std::FILE *stream)
{
    QString text = QStringLiteral("usage: corvex COMMAND [ARGUMENTS...] | --version\n\nCommands:\n");
    for (const Command &command : commands())
        text += QStringLiteral("  %1 %2\n      %3\n").arg(command.name, command.usage, command.summary);
    text += QStringLiteral("\nRun 'corvex COMMAND --help' for a command's help.\n");
    std::fputs(text.toUtf8().constData(), stream);
}

CommandRegistration::CommandRegistration(const char *name, const char *usage, const char *summary,
                                         CommandFunction run, const char *help)
{
    registry().append(Command{QString::fromUtf8(name), QString::fromUtf8(usage), QString::fromUtf8(summary),
                              QString::fromUtf8(help), std::move(run)});
    std::sort(registry().begin(), registry().end(),
              [](const Command &a, const Command &b) { return a.name < b.name; });
}

const QList<Command> &commands()
{
    return registry();
}

void out(const QString &text)
{
    std::fputs(text.toUtf8().constData(), stdout);
    std::fflush(stdout);
}

void err(const QString &text)
{
    std::fputs(text.toUtf8().constData(), stderr);
    std::fflush(stderr);
}

int fail(const QString &message)
{
    err(QStringLiteral("corvex: %1\n").arg(message));
    return 1;
}

} // namespace cli
