// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex rename SOURCE DESTINATION: moves the file, or converts it to the destination's format (the source
// then goes to the Trash), exactly as the renaming window does.
#include "cli/Command.h"
#include "foundation/CorvexError.h"
#include "core/FileFormat.h"
#include "core/Processor.h"

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

int runRename(const QStringList &arguments)
{
    if (arguments.size() != 2)
        return cli::fail(
            QStringLiteral("rename needs a source and a destination (usage: corvex rename SOURCE "
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
    "rename", "SOURCE DESTINATION",
    "Moves an image, or converts it to the format of the destination's extension (the source goes to the "
    "Trash).",
    &runRename,
    "The formats come from the extensions: gif, jpg/jpeg/jpe, bmp, pdf, png, tiff/tif (any case). When both\n"
    "are the same format the file is moved; an existing destination is never replaced. Otherwise the image\n"
    "(page 1 of a PDF) is written in the new format and the source is moved to the Trash, even when the\n"
    "conversion fails, so that it can be put back from there."};

} // namespace
