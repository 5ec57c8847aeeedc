// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Command-line arguments and "qzcv:" links: the application's argument domain ("-filePath", "-screenNum",
// "-bookmarkData", any "-key value" with property-list values) and the link commands. The input's words are
// separated by NUL bytes.
#include "FuzzSupport.h"
#include "app/URLDispatch.h"
#include "core/UserDefaults.h"
#include "platform/PreferenceStore.h"

CORVEX_FUZZ_INITIALIZE

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static PreferenceStore store(fuzz::folder() + QStringLiteral("/preferences"));
    QStringList words;
    for (const QByteArray &word : fuzz::bytes(data, size).split('\0'))
        words.append(QString::fromUtf8(word));
    for (const QString &word : words)
        (void)URLDispatch::actionForURL(word);
    const UserDefaults defaults(QStringLiteral("com.example.Fuzz"), words, &store);
    (void)defaults.argumentDomain();
    return 0;
}
