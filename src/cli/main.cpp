// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex: the command-line tool over the Corvex core. Printing its version and comparing two versions need
// nothing but Qt Core and start at once; every other command is in the commands module, loaded for it from
// the PlugIns folder of the bundle the program lies in (Contents/ of Corvex.app) or, for the program of the
// build tree, of the bundle built beside it.
#include "cli/Command.h"
#include "foundation/BundlePlugIns.h"
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

} // namespace

int main(int argc, char **argv)
{
    if (argc == 2 && (std::strcmp(argv[1], "--version") == 0 || std::strcmp(argv[1], "-V") == 0)) {
        std::fputs("corvex " CORVEX_MARKETING_VERSION " (" CORVEX_BUNDLE_VERSION
                   ", revision " CORVEX_SOURCE_REVISION ")\n",
                   stdout);
        return 0;
    }
    if (argc >= 2 && std::strcmp(argv[1], "version-compare") == 0 && !asksForHelp(argc, argv)) {
        const QCoreApplication app(argc, argv);
        for (const cli::Command &command : cli::commands())
            if (command.name == QLatin1String("version-compare"))
                return command.run(QCoreApplication::arguments().mid(2));
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
