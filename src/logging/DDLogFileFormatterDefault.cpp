// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogFileFormatterDefault.h"

#include "logging/DDLogMessage.h"

#include <cstdio>
#include <ctime>

namespace {

// Whole seconds and milliseconds of a time, also before 1970.
void split(qint64 msecs, qint64 *seconds, int *milliseconds)
{
    *seconds = msecs / 1000;
    *milliseconds = int(msecs % 1000);
    if (*milliseconds < 0) {
        *milliseconds += 1000;
        *seconds -= 1;
    }
}

} // namespace

QString DDLogFileFormatterDefault::stringFromTimestamp(qint64 msecsSinceEpoch)
{
    qint64 second = 0;
    int millisecond = 0;
    split(msecsSinceEpoch, &second, &millisecond);
    QString prefix;
    {
        std::lock_guard lock(mMutex);
        if (second != mCachedSecond) {
            const time_t seconds = time_t(second);
            struct tm local
            {
            };
            localtime_r(&seconds, &local);
            char text[64];
            std::snprintf(text, sizeof text, "%04d/%02d/%02d %02d:%02d:%02d", local.tm_year + 1900,
                          local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
            mCachedPrefix = QString::fromLatin1(text);
            mCachedSecond = second;
        }
        prefix = mCachedPrefix;
    }
    const char digits[4] = {char('0' + millisecond / 100), char('0' + millisecond / 10 % 10),
                            char('0' + millisecond % 10), 0};
    return prefix + QLatin1Char(':') + QLatin1String(digits, 3);
}

QString DDLogFileFormatterDefault::formatLogMessage(const DDLogMessage &logMessage)
{
    const QString time = stringFromTimestamp(logMessage.timestampMSecs());
    QString line;
    line.reserve(time.size() + 2 + logMessage.logMsg().size() + 1);
    line.append(time);
    line.append(QLatin1String("  "));
    line.append(logMessage.logMsg());
    return line;
}
