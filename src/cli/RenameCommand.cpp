// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex rename SOURCE DESTINATION: moves the file, or converts it to the destination's format (the source
// then goes to the Trash), exactly as the renaming window does.
#include "cli/CommandModule.h"
#include "core/FileFormat.h"
#include "core/Processor.h"
#include "foundation/CorvexError.h"
#include "platform/Trash.h"

#include <QFileInfo>
#include <QStringList>
#include <QUrl>
#include <algorithm>

namespace {

QString knownExtensions()
{
    QStringList extensions;
    for (const FileFormat *format : FileFormat::allFileFormats())
        extensions += format->extensions();
    return extensions.join(QStringLiteral(", "));
}

const FileFormat *formatOfPath(const QString &path, QString *problem)
{
    const QString extension = QFileInfo(path).suffix();
    const FileFormat *format = qzFileFormatForExtension(FileFormat::allFileFormats(), extension);
    if (!format)
        *problem = QStringLiteral("%1: unknown image extension '%2' (known: %3)")
                       .arg(path, extension, knownExtensions());
    return format;
}

int runRename(const QStringList &commandLine)
{
    QStringList arguments = commandLine;
    const bool replace = arguments.removeAll(QStringLiteral("--replace")) > 0;
    if (arguments.size() != 2)
        return cli::fail(
            QStringLiteral("rename needs a source and a destination (usage: corvex rename [--replace] SOURCE "
                           "DESTINATION)"));
    const QString sourcePath = QFileInfo(arguments.at(0)).absoluteFilePath();
    const QString destinationPath = QFileInfo(arguments.at(1)).absoluteFilePath();
    QString problem;
    const FileFormat *sourceFormat = formatOfPath(sourcePath, &problem);
    if (!sourceFormat)
        return cli::fail(problem);
    const FileFormat *destinationFormat = formatOfPath(destinationPath, &problem);
    if (!destinationFormat)
        return cli::fail(problem);

    // Something at the destination stays unless the user asked to replace it. A move puts it in the Trash
    // first; a conversion replaces it only once the new file is complete.
    const QFileInfo destinationInfo(destinationPath);
    if ((destinationInfo.exists() || destinationInfo.isSymLink()) &&
        destinationInfo != QFileInfo(sourcePath)) {
        if (!replace)
            return cli::fail(
                QStringLiteral("%1 already exists (give --replace to replace it)").arg(destinationPath));
        if (destinationInfo.isDir() && !destinationInfo.isSymLink())
            return cli::fail(QStringLiteral("%1 is a folder; it is not replaced").arg(destinationPath));
        CorvexError trashError;
        if (sourceFormat == destinationFormat &&
            !Trash::moveItemToTrash(destinationPath, nullptr, &trashError))
            return cli::fail(QStringLiteral("could not move %1 to the Trash: %2")
                                 .arg(destinationPath, trashError.localizedDescription()));
    }

    CorvexError error;
    if (Processor::sharedProcessor().renameItemAtURL(QUrl::fromLocalFile(sourcePath), sourceFormat,
                                                     QUrl::fromLocalFile(destinationPath), destinationFormat,
                                                     &error))
        return 0;
    QString message = error.localizedDescription();
    const QString suggestion = error.localizedRecoverySuggestion();
    if (!suggestion.isEmpty())
        message += QLatin1Char('\n') + suggestion;
    return cli::fail(message);
}

} // namespace

extern "C" Q_DECL_EXPORT int corvex_command_main(int argc, char **argv)
{
    const auto app = cli::makeApplicationForImages(argc, argv);
    return cli::runModuleCommand(&runRename);
}
