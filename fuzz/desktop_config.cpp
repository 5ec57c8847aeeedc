// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The desktop's configuration files: the screenshot tools' settings in both INI dialects, "user-dirs.dirs"
// and autostart entries with their command lines.
#include "FuzzSupport.h"
#include "platform/AutostartEntry.h"
#include "platform/DesktopConfigFiles_p.h"

CORVEX_FUZZ_INITIALIZE

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path = fuzz::writeInput(QStringLiteral("config"), data, size);
    const QString home = QStringLiteral("/home/fuzz");
    for (const DesktopConfigFiles::IniDialect dialect :
         {DesktopConfigFiles::IniDialect::KConfig, DesktopConfigFiles::IniDialect::QSettings}) {
        const DesktopConfigFiles::IniValues values = DesktopConfigFiles::readIni(path, dialect, home);
        for (const QString &value : values)
            (void)DesktopConfigFiles::folderFromSetting(value, home);
    }
    (void)DesktopConfigFiles::readUserDirs(path, home);

    AutostartEntry entry;
    int status = 0;
    if (entry.read(path, &status))
        (void)entry.program();
    QStringList words;
    if (AutostartEntry::splitCommandLine(QString::fromUtf8(fuzz::bytes(data, size)), &words)) {
        QStringList quoted;
        for (const QString &word : words)
            quoted.append(AutostartEntry::quoteArgument(word));
        QStringList again;
        if (!AutostartEntry::splitCommandLine(quoted.join(QLatin1Char(' ')), &again) || again != words)
            __builtin_trap();
    }
    return 0;
}
