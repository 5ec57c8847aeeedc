// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <cstdio>
#include <span>

// The commands of `corvex`. Every command is described in one table, which `corvex` itself holds: it prints
// the usage and every command's help, and rejects an unknown command, without loading anything. A command
// is either built in (its function is in the table) or a module of its own in the bundle's PlugIns folder,
// libcorvex_command_NAME.so, loaded for it alone so that each command links only the libraries it needs.
//
// A command gets its arguments (without the command's own name), prints its output on stdout, a one-line
// error on stderr, and returns the exit code.
namespace cli {

using CommandFunction = int (*)(const QStringList &arguments);

struct Command
{
    const char *name;
    const char *usage;   // the arguments, e.g. "read [DOMAIN [KEY]]"
    const char *summary; // one line
    const char *help;    // the longer text printed by --help, or ""
    CommandFunction run; // a built-in command's function; null for a command of a module
};

// Every command, sorted by name.
std::span<const Command> commands();

// The command of that name, or null.
const Command *findCommand(const char *name);

// The file name of a command's module, "libcorvex_command_NAME.so".
QString moduleFileName(const Command &command);

// Prints "usage: corvex COMMAND …" with every command's usage and summary.
void printUsage(std::FILE *stream);

// Prints a command's usage, summary and help on stdout.
void printHelp(const Command &command);

// The built-in commands.
int runVersionCompare(const QStringList &arguments);
int runDefaults(const QStringList &arguments);

// Output helpers: write UTF-8 text to stdout/stderr. fail() prints "corvex: <message>" and returns 1.
void out(const QString &text);
void err(const QString &text);
int fail(const QString &message);

} // namespace cli
