// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <cstdio>
#include <functional>

// The commands of `corvex`. Each command's source file registers it with a static CommandRegistration:
//
//   static const CommandRegistration registration{
//       "version-compare", "A B", "Compares two version strings; prints -1, 0 or 1.", &runVersionCompare};
//
// A command gets its arguments (without the command's own name), prints its output on stdout, a one-line
// error on stderr, and returns the exit code. "--help" is handled for every command before it runs.
namespace cli {

using CommandFunction = std::function<int(const QStringList &arguments)>;

struct Command
{
    QString name;
    QString usage;   // the arguments, e.g. "read [DOMAIN [KEY]]"
    QString summary; // one line
    QString help;    // optional longer text printed by --help
    CommandFunction run;
};

struct CommandRegistration
{
    CommandRegistration(const char *name, const char *usage, const char *summary, CommandFunction run,
                        const char *help = "");
};

const QList<Command> &commands();

// Prints "usage: corvex COMMAND …" with every command's usage and summary.
void printUsage(std::FILE *stream);

// Output helpers: write UTF-8 text to stdout/stderr. fail() prints "corvex: <message>" and returns 1.
void out(const QString &text);
void err(const QString &text);
int fail(const QString &message);

} // namespace cli
