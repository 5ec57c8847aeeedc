// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The three log statement forms every source file uses. Each takes one QString: the finished message text
// (a null QString logs nothing). Errors are delivered synchronously (the statement returns once every logger
// has the message), warnings and information asynchronously. Level 7, context 1, this file, function, line.
//
//   DDLogError(QStringLiteral("Could not move %1 to Trash.").arg(path));

#include "logging/DDLog.h"

#define CORVEX_LOG_CONTEXT 1
#define CORVEX_LOG_LEVEL 7u

#define CORVEX_LOG_MAYBE(sync, flag, message)                                                                \
    do {                                                                                                     \
        if (CORVEX_LOG_LEVEL & (flag))                                                                       \
            ::DDLog::log((sync), CORVEX_LOG_LEVEL, (flag), CORVEX_LOG_CONTEXT, __FILE__, Q_FUNC_INFO,        \
                         __LINE__, (message));                                                               \
    } while (0)

#define DDLogError(message) CORVEX_LOG_MAYBE(true, DDLogFlagError, message)
#define DDLogWarn(message) CORVEX_LOG_MAYBE(false, DDLogFlagWarning, message)
#define DDLogInfo(message) CORVEX_LOG_MAYBE(false, DDLogFlagInfo, message)
