// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex: the command-line tool over the Corvex core. Its version, comparing two versions and the preference
// domains need nothing of the core and start at once: they are built in. Every other command is in the
// commands module, loaded for it from the PlugIns folder of the bundle the program lies in (Contents/ of
// Corvex.app) or, for the program of the build tree, of the bundle built beside it.
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

constexpr const char *CommandsModuleName = "libcorvex_commands.so";

bool asksForHelp(int argc, char **argv)
{
    for (int i = 2; i < argc; ++i)
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0)
            return true;
    return false;
}

// The built-in command of that name, or null.
const cli::Command *builtInCommand(const char *name)
{
    for (const cli::Command &command : cli::commands())
        if (command.name == QLatin1String(name))
            return &command;
    return nullptr;
}

// The platform services' messages, as the commands module's logger writes them: errors as "corvex: <text>",
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
    if (const cli::Command *command = argc >= 2 ? builtInCommand(argv[1]) : nullptr;
        command && !asksForHelp(argc, argv)) {
        const QCoreApplication app(argc, argv);
        Diagnostics::setReceiver(printDiagnostic);
        return command->run(QCoreApplication::arguments().mid(2));
    }

    // Found before any application object exists: the module makes the one its command needs.
    const QString path = bundlePlugInPath(QLatin1String(CommandsModuleName));
    void *module =
        path.isEmpty() ? nullptr : dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
    using Entry = int (*)(int, char **);
    const auto entry = module ? reinterpret_cast<Entry>(dlsym(module, "corvex_commands_main")) : nullptr;
    if (!entry) {
        std::fprintf(stderr,
                     path.isEmpty()
                         ? "corvex: the commands are not installed: there is no %s in the PlugIns folder of "
                           "Corvex.app\n"
                         : "corvex: the commands are not installed properly: %s\n",
                     path.isEmpty() ? CommandsModuleName : dlerror());
        return 1;
    }
    return entry(argc, argv);
}
