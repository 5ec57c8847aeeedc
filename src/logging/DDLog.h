// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>

// The message flags. A level is the union of the flags it lets through.
enum : quint32 { DDLogFlagError = 1, DDLogFlagWarning = 2, DDLogFlagInfo = 4, DDLogFlagVerbose = 8 };

// The logging dispatcher: every log statement goes through it to every added logger.
class DDLog
{
public:
    DDLog() = delete;

    // Hands one message to every logger. Synchronous calls return once every logger has the message; a null
    // message logs nothing.
    static void log(bool synchronous, quint32 level, quint32 flag, qint32 context, const char *file,
                    const char *function, int line, const QString &message);

    // Returns once every message logged before the call has been handed to every logger.
    static void flushLog();
};
