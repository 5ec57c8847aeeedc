// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The output helpers of `corvex` and of its command modules.
#include "cli/Command.h"

#include <cstdio>

namespace cli {

void out(const QString &text)
{
    std::fputs(text.toUtf8().constData(), stdout);
    std::fflush(stdout);
}

void err(const QString &text)
{
    std::fputs(text.toUtf8().constData(), stderr);
    std::fflush(stderr);
}

int fail(const QString &message)
{
    err(QStringLiteral("corvex: %1\n").arg(message));
    return 1;
}

} // namespace cli
