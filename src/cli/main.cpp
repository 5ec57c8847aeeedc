// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex: the command-line tool over the Corvex core.
#include "cli/Command.h"
#include "cli/StderrLogger.h"
#include "core/ImageIOSource.h"
#include "foundation/Version.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>
#include <cstdio>
#include <cstring>
#include <memory>

namespace cli {

namespace {
QList<Command> &registry()
{
    static QList<Command> list;
    return list;
}

void printUsage(FILE *stream)
{
    QString text = QStringLiteral("usage: corvex COMMAND [ARGUMENTS...] | --version\n\nCommands:\n");
    for (const Command &command : commands())
        text += QStringLiteral("  %1 %2\n      %3\n").arg(command.name, command.usage, command.summary);
    text += QStringLiteral("\nRun 'corvex COMMAND --help' for a command's help.\n");
    std::fputs(text.toUtf8().constData(), stream);
}
} // namespace

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

namespace {

// Whether the command line needs a GUI application object: rendering and writing PDF pages does (fonts, the
// paint engines). Converting bitmaps and the commands that do no image work start faster without it: no
// platform plugin, no font set-up.
bool needsGuiApplication(int argc, char **argv)
{
    if (argc < 2)
        return true;
    if (std::strcmp(argv[1], "version-compare") == 0)
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

int main(int argc, char **argv)
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
    if (arguments.first() == QLatin1String("--version") || arguments.first() == QLatin1String("-V")) {
        cli::out(QStringLiteral("corvex " CORVEX_MARKETING_VERSION " (" CORVEX_BUNDLE_VERSION
                                ", revision " CORVEX_SOURCE_REVISION ")\n"));
        return 0;
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
