// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The Dropbox client's settings files: host.db (a base64 folder path, in any text encoding) and info.json.
#include "FuzzSupport.h"
#include "core/DropboxCheck.h"

#include <QDir>

CORVEX_FUZZ_INITIALIZE

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const DropboxCheck check = [] {
        QDir().mkpath(fuzz::folder() + QStringLiteral("/.dropbox"));
        return DropboxCheck(fuzz::folder(), [] { return DropboxClientFacts{}; });
    }();
    (void)DropboxCheck::decodeBase64(fuzz::bytes(data, size));
    fuzz::writeInput(QStringLiteral(".dropbox/host.db"), data, size);
    fuzz::writeInput(QStringLiteral(".dropbox/info.json"), data, size);
    (void)check.dropboxFolder();
    (void)check.accountFolders();
    return 0;
}
