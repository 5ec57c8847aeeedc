// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/Diagnostics.h"

#include <atomic>
#include <cstdio>

namespace Diagnostics {
namespace {

std::atomic<Receiver> gReceiver{nullptr};

const char *levelName(Level level)
{
    switch (level) {
    case Level::Error:
        return "error";
    case Level::Warning:
        return "warning";
    case Level::Info:
        break;
    }
    return "info";
}

} // namespace

void setReceiver(Receiver receiver)
{
    gReceiver.store(receiver);
}

void report(Level level, bool synchronous, const char *file, const char *function, int line,
            const QString &message)
{
    if (message.isNull())
        return;
    if (const Receiver receiver = gReceiver.load()) {
        receiver(level, synchronous, file, function, line, message);
        return;
    }
    std::fprintf(stderr, "Corvex %s: %s\n", levelName(level), message.toLocal8Bit().constData());
}

} // namespace Diagnostics
