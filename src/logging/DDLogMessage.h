// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>
#include <mutex>

// One log statement: its text, level, flag, context, time, source position and thread. Immutable once made;
// the derived texts (thread number, file name, function name) are made on first use and may be read from
// any thread.
class DDLogMessage
{
public:
    // A message made now on the calling thread. `file` and `function` are not copied: they must outlive the
    // message (string literals, as log statements pass).
    DDLogMessage(const QString &logMsg, qint32 logLevel, qint32 logFlag, qint32 logContext, const char *file,
                 const char *function, qint32 lineNumber);
    // A message with a given creation time and thread number (for messages that arrive from elsewhere).
    DDLogMessage(const QString &logMsg, qint32 logLevel, qint32 logFlag, qint32 logContext, const char *file,
                 const char *function, qint32 lineNumber, const QDateTime &timestamp, quint32 machThreadID);

    DDLogMessage(const DDLogMessage &other);
    DDLogMessage &operator=(const DDLogMessage &) = delete;

    qint32 logLevel() const { return mLogLevel; }
    qint32 logFlag() const { return mLogFlag; }
    qint32 logContext() const { return mLogContext; }
    const QString &logMsg() const { return mLogMsg; }
    // The creation time, in the local time zone.
    QDateTime timestamp() const;
    // The creation time as milliseconds since the epoch.
    qint64 timestampMSecs() const { return mTimestampMSecs; }
    // The full source path of the statement (not copied; may be null).
    const char *file() const { return mFile; }
    // The statement's function (not copied; may be null).
    const char *function() const { return mFunction; }
    qint32 lineNumber() const { return mLineNumber; }
    // The kernel thread number of the thread that made the message.
    quint32 machThreadID() const { return mMachThreadID; }

    // machThreadID as lower-case hexadecimal without prefix.
    const QString &threadID() const;
    // The last path component of file() without its extension: the text after the last "/" and before the
    // last "." of the whole path (each only if present).
    const QString &fileName() const;
    // function() as a string; a null string when function() is null.
    const QString &methodName() const;

    // The kernel thread number of the calling thread.
    static quint32 currentThreadID();

private:
    qint32 mLogLevel;
    qint32 mLogFlag;
    qint32 mLogContext;
    QString mLogMsg;
    qint64 mTimestampMSecs;
    const char *mFile;
    const char *mFunction;
    qint32 mLineNumber;
    quint32 mMachThreadID;

    mutable std::once_flag mThreadIDOnce;
    mutable std::once_flag mFileNameOnce;
    mutable std::once_flag mMethodNameOnce;
    mutable QString mThreadID;
    mutable QString mFileName;
    mutable QString mMethodName;
};
