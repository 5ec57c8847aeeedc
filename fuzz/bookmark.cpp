// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Bookmark data, as the agent hands it to the application on its command line and through the preferences.
#include "platform/Bookmark.h"
#include "FuzzSupport.h"

CORVEX_FUZZ_INITIALIZE

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    bool stale = false;
    (void)Bookmark::resolve(fuzz::bytes(data, size), &stale);
    return 0;
}
