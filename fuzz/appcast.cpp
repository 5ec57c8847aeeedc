// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The update feed, as any server (or anyone between it and the user) may send it.
#include "FuzzSupport.h"
#include "core/SUAppcast.h"
#include "foundation/CorvexError.h"

#include <QUrl>

CORVEX_FUZZ_INITIALIZE

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    SUAppcast appcast;
    CorvexError error;
    (void)appcast.parse(fuzz::bytes(data, size),
                        QUrl(QStringLiteral("https://example.org/corvex/appcast.xml")), &error);
    return 0;
}
