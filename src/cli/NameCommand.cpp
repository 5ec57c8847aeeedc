// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex name FILE [FORMAT-EXTENSION]: prints the name the stored renaming pattern gives the file, advancing
// the stored counter exactly as an automatic rename does.
#include "cli/CommandModule.h"
#include "core/AppUserDefaults.h"
#include "core/FileFormat.h"
#include "core/Processor.h"
#include "core/ScreenshotInfo.h"
#include "foundation/PreferenceKeys.h"

#include <QFileInfo>

namespace {

int runName(const QStringList &arguments)
{
    if (arguments.isEmpty() || arguments.size() > 2)
        return cli::fail(
            QStringLiteral("name needs a file and optionally a format extension (usage: corvex name "
                           "FILE [FORMAT-EXTENSION])"));
    const QFileInfo file(arguments.at(0));
    if (!file.exists())
        return cli::fail(QStringLiteral("%1: no such file").arg(arguments.at(0)));

    const QString extension = arguments.size() == 2 ? arguments.at(1) : file.suffix();
    const FileFormat *format = qzFileFormatForExtension(FileFormat::allFileFormats(), extension);
    if (!format)
        return cli::fail(
            QStringLiteral("unknown image format extension '%1' (known: gif, jpg, jpeg, jpe, bmp, pdf, "
                           "png, tiff, tif)")
                .arg(extension));

    AppUserDefaults &defaults = AppUserDefaults::sharedCorvexDefaults();
    defaults.synchronize();
    if (defaults.stringForKey(kAutoRenameFormatKey).isEmpty())
        return cli::fail(QStringLiteral("no renaming pattern is stored (set \"autoRenameFormat\" in the "
                                        "com.ostrel.Corvex domain)"));

    const ScreenshotInfo info(file.absoluteFilePath(), 1);
    cli::out(Processor::sharedProcessor().fileNameByAutomaticRenamingFromInfo(info, format) +
             QLatin1Char('\n'));
    return 0;
}

} // namespace

extern "C" Q_DECL_EXPORT int corvex_command_main(int argc, char **argv)
{
    const auto app = cli::makeApplicationForImages(argc, argv);
    return cli::runModuleCommand(&runName);
}
