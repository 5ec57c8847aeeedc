// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex rename SOURCE DESTINATION: moves the file, or converts it to the destination's format (the source
// then goes to the Trash), exactly as the renaming window does.
#include "cli/Command.h"
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

int runRename(QStringList arguments)
{
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

const cli::CommandRegistration registration{
    "rename", "[--replace] SOURCE DESTINATION",
    "Moves an image, or converts it to the format of the destination's extension (the source goes to the "
    "Trash).",
    &runRename,
    "The formats come from the extensions: gif, jpg/jpeg/jpe, bmp, pdf, png, tiff/tif (any case). When both\n"
    "are the same format the file is moved. Otherwise the image (page 1 of a PDF) is written in the new\n"
    "format and the source is moved to the Trash, even when the conversion fails, so that it can be put "
    "back\n"
    "from there. Something already at the destination is left alone and the command fails, unless --replace\n"
    "is given: then a file in the way of a move goes to the Trash first, and one in the way of a conversion\n"
    "is replaced only once the new file is complete."};

} // namespace
