// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The commands module of `corvex` (libcorvex_commands.so in the bundle's Contents/PlugIns): every command
// over the Corvex core, run from the command line `corvex` hands over.
#include "cli/Command.h"
#include "cli/StderrLogger.h"
#include "core/ImageIOSource.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <cstdio>
#include <cstring>
#include <memory>

namespace {

// Whether the command line needs a GUI application object: rendering and writing PDF pages does (fonts, the
// paint engines). Converting bitmaps and the commands that do no image work start faster without it: no
// platform plugin, no font set-up.
bool needsGuiApplication(int argc, char **argv)
{
    if (argc < 2)
        return false;
    for (const char *command :
         {"version-compare", "defaults", "notifications", "watch", "--help", "-h", "help"})
        if (std::strcmp(argv[1], command) == 0)
            return false;
    if (std::strcmp(argv[1], "rename") != 0 || argc != 4)
        return true;
    const QString source = QFile::decodeName(argv[2]), destination = QFile::decodeName(argv[3]);
    for (const QString &path : {source, destination})
        if (QFileInfo(path).suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0)
            return true;
    // A PDF under a bitmap's name is still rendered as a PDF.
    return ImageIOSource::kindOfFile(source) == ImageIOSource::Kind::PDF;
}

} // namespace

extern "C" Q_DECL_EXPORT int corvex_commands_main(int argc, char **argv)
{
    std::unique_ptr<QCoreApplication> app;
    if (needsGuiApplication(argc, argv)) {
        // The offscreen platform needs no display.
        if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
            qputenv("QT_QPA_PLATFORM", "offscreen");
        app = std::make_unique<QGuiApplication>(argc, argv);
    } else {
        app = std::make_unique<QCoreApplication>(argc, argv);
    }
    QCoreApplication::setApplicationName(QStringLiteral("corvex"));
    cli::installStderrLogger();

    QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.isEmpty() || arguments.first() == QLatin1String("--help") ||
        arguments.first() == QLatin1String("-h") || arguments.first() == QLatin1String("help")) {
        cli::printUsage(arguments.isEmpty() ? stderr : stdout);
        return arguments.isEmpty() ? 2 : 0;
    }
    const QString name = arguments.takeFirst();
    for (const cli::Command &command : cli::commands()) {
        if (command.name != name)
            continue;
        if (arguments.contains(QLatin1String("--help")) || arguments.contains(QLatin1String("-h"))) {
            cli::out(QStringLiteral("usage: corvex %1 %2\n%3\n")
                         .arg(command.name, command.usage, command.summary));
            if (!command.help.isEmpty())
                cli::out(QStringLiteral("\n%1\n").arg(command.help));
            return 0;
        }
        const int code = command.run(arguments);
        cli::flushLogs();
        return code;
    }
    return cli::fail(QStringLiteral("unknown command '%1' (try 'corvex --help')").arg(name));
}
