// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "DDLog.h"

#include <cstdio>

void DDLog::log(bool synchronous, quint32 level, quint32 flag, qint32 context, const char *file,
                const char *function, int line, const QString &message)
{
    Q_UNUSED(synchronous);
    Q_UNUSED(level);
    Q_UNUSED(flag);
    Q_UNUSED(context);
    Q_UNUSED(file);
    Q_UNUSED(function);
    Q_UNUSED(line);
    Q_UNUSED(message);
}

void DDLog::flushLog() {}
