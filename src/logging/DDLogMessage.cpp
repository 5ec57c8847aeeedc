// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogMessage.h"

#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {
qint64 nowMSecs()
{
    struct timespec now
    {
    };
    clock_gettime(CLOCK_REALTIME, &now);
    return qint64(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}
} // namespace

DDLogMessage::DDLogMessage(const QString &logMsg, qint32 logLevel, qint32 logFlag, qint32 logContext,
                           const char *file, const char *function, qint32 lineNumber)
    : mLogLevel(logLevel), mLogFlag(logFlag), mLogContext(logContext), mLogMsg(logMsg),
      mTimestampMSecs(nowMSecs()), mFile(file), mFunction(function), mLineNumber(lineNumber),
      mMachThreadID(currentThreadID())
{
}

DDLogMessage::DDLogMessage(const QString &logMsg, qint32 logLevel, qint32 logFlag, qint32 logContext,
                           const char *file, const char *function, qint32 lineNumber,
                           const QDateTime &timestamp, quint32 machThreadID)
    : mLogLevel(logLevel), mLogFlag(logFlag), mLogContext(logContext), mLogMsg(logMsg),
      mTimestampMSecs(timestamp.toMSecsSinceEpoch()), mFile(file), mFunction(function),
      mLineNumber(lineNumber), mMachThreadID(machThreadID)
{
}

DDLogMessage::DDLogMessage(const DDLogMessage &other)
    : mLogLevel(other.mLogLevel), mLogFlag(other.mLogFlag), mLogContext(other.mLogContext),
      mLogMsg(other.mLogMsg), mTimestampMSecs(other.mTimestampMSecs), mFile(other.mFile),
      mFunction(other.mFunction), mLineNumber(other.mLineNumber), mMachThreadID(other.mMachThreadID)
{
}

QDateTime DDLogMessage::timestamp() const
{
    return QDateTime::fromMSecsSinceEpoch(mTimestampMSecs);
}

const QString &DDLogMessage::threadID() const
{
    std::call_once(mThreadIDOnce, [this] { mThreadID = QString::number(mMachThreadID, 16); });
    return mThreadID;
}

const QString &DDLogMessage::fileName() const
{
    std::call_once(mFileNameOnce, [this] {
        if (!mFile)
            return;
        // One pass: remember the last slash and the last dot of the whole path.
        const char *lastSlash = nullptr;
        const char *lastDot = nullptr;
        const char *end = mFile;
        for (; *end; ++end) {
            if (*end == '/')
                lastSlash = end;
            else if (*end == '.')
                lastDot = end;
        }
        const char *begin = lastSlash ? lastSlash + 1 : mFile;
        const char *stop = lastDot ? lastDot : end;
        mFileName = stop > begin ? QString::fromUtf8(begin, stop - begin) : QString(QLatin1String(""));
    });
    return mFileName;
}

const QString &DDLogMessage::methodName() const
{
    std::call_once(mMethodNameOnce, [this] {
        if (mFunction)
            mMethodName = QString::fromUtf8(mFunction);
    });
    return mMethodName;
}

quint32 DDLogMessage::currentThreadID()
{
    thread_local const quint32 identifier = quint32(::syscall(SYS_gettid));
    return identifier;
}
