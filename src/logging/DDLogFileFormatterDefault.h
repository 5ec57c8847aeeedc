// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "logging/DDLogFormatter.h"

#include <mutex>

// The log file's line: the message's time as "yyyy/MM/dd HH:mm:ss:SSS" in the local time zone, two spaces,
// the message text. Safe for use from several threads.
class DDLogFileFormatterDefault : public DDLogFormatter
{
public:
    DDLogFileFormatterDefault() = default;

    QString formatLogMessage(const DDLogMessage &logMessage) override;

    // The time as the line shows it.
    QString stringFromTimestamp(qint64 msecsSinceEpoch);

private:
    // "yyyy/MM/dd HH:mm:ss" of the last second formatted; most messages share their second with the last one.
    std::mutex mMutex;
    qint64 mCachedSecond = -1;
    QString mCachedPrefix;
};
