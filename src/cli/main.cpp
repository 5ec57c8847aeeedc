// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex: the command-line tool over the Corvex core. It knows every command's usage and help. Its version,
// comparing two versions and the preference domains need nothing of the core and are built in. Every other
// command is a module of its own, loaded for it from the PlugIns folder of the bundle the program lies in
// (Contents/ of Corvex.app) or, for the program of the build tree, of the bundle built beside it: each brings
// only the libraries its own work needs.
#include "cli/Command.h"
#include "foundation/BundlePlugIns.h"
#include "foundation/Diagnostics.h"
#include "foundation/Version.h"

#include <QCoreApplication>
#include <QFile>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>

namespace {

bool isHelpOption(const char *argument)
{
    return std::strcmp(argument, "--help") == 0 || std::strcmp(argument, "-h") == 0;
}

bool asksForHelp(int argc, char **argv)
{
    for (int i = 2; i < argc; ++i)
        if (isHelpOption(argv[i]))
            return true;
    return false;
}

// The platform services' messages, as the command modules' logger writes them: errors as "corvex: <text>",
// the others only when CORVEX_VERBOSE is set.
void printDiagnostic(Diagnostics::Level level, bool, const char *, const char *, int, const QString &message)
{
    static const bool verbose = !qEnvironmentVariableIsEmpty("CORVEX_VERBOSE");
    if (level == Diagnostics::Level::Error || verbose)
        cli::err(QStringLiteral("corvex: %1\n").arg(message));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 2 && (std::strcmp(argv[1], "--version") == 0 || std::strcmp(argv[1], "-V") == 0)) {
        std::fputs("corvex " CORVEX_MARKETING_VERSION " (" CORVEX_BUNDLE_VERSION
                   ", revision " CORVEX_SOURCE_REVISION ")\n",
                   stdout);
        return 0;
    }
    if (argc < 2) {
        cli::printUsage(stderr);
        return 2;
    }
    if (isHelpOption(argv[1]) || std::strcmp(argv[1], "help") == 0) {
        cli::printUsage(stdout);
        return 0;
    }
    const cli::Command *command = cli::findCommand(argv[1]);
    if (!command) {
        std::fprintf(stderr, "corvex: unknown command '%s' (try 'corvex --help')\n", argv[1]);
        return 1;
    }
    if (asksForHelp(argc, argv)) {
        cli::printHelp(*command);
        return 0;
    }
    if (command->run) {
        const QCoreApplication app(argc, argv);
        Diagnostics::setReceiver(printDiagnostic);
        return command->run(QCoreApplication::arguments().mid(2));
    }

    // Found before any application object exists: the module makes the one its command needs.
    const QString fileName = cli::moduleFileName(*command);
    const QString path = bundlePlugInPath(fileName);
    void *module =
        path.isEmpty() ? nullptr : dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    using Entry = int (*)(int, char **);
    const auto entry = module ? reinterpret_cast<Entry>(dlsym(module, "corvex_command_main")) : nullptr;
    if (!entry) {
        if (path.isEmpty())
            std::fprintf(stderr,
                         "corvex: the %s command is not installed: there is no %s in the PlugIns folder of "
                         "Corvex.app\n",
                         command->name, qPrintable(fileName));
        else
            std::fprintf(stderr, "corvex: the %s command is not installed properly: %s\n", command->name,
                         dlerror());
        return 1;
    }
    return entry(argc, argv);
}
