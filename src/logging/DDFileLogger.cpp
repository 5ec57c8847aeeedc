// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDFileLogger.h"

#include "foundation/DispatchQueue.h"
#include "foundation/WriteAll.h"
#include "logging/DDLog.h"
#include "logging/DDLogDelivery.h"
#include "logging/DDLogFileFormatterDefault.h"
#include "logging/DDLogFileInfo.h"
#include "logging/DDLogFileManagerDefault.h"
#include "logging/DDLogMessage.h"
#include "logging/DDLog_p.h"
#include "logging/SystemLog_p.h"

#include <QFile>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using logging_private::describeError;
using logging_private::systemLog;

namespace {
// The most bytes gathered before they are written.
constexpr qsizetype kGatherLimit = 64 * 1024;
} // namespace

DDFileLogger::DDFileLogger() : DDFileLogger(nullptr) {}

DDFileLogger::DDFileLogger(const std::shared_ptr<DDLogFileManager> &logFileManager)
    : DDAbstractLogger(std::make_shared<DDLogFileFormatterDefault>()),
      mLogFileManager(logFileManager ? logFileManager : std::make_shared<DDLogFileManagerDefault>(QString()))
{
}

DDFileLogger::~DDFileLogger()
{
    // Stop the timer in turn with the queue's work, so that no check is running or left to run.
    auto stop = [this] {
        mShuttingDown = true;
        cancelRollingTimer();
    };
    if (isOnLoggerQueue())
        stop();
    else
        loggerQueue()->sync(stop);
    if (mCurrentLogFileHandle >= 0) {
        writeOut();
        ::fdatasync(mCurrentLogFileHandle);
        ::close(mCurrentLogFileHandle);
    }
}

QString DDFileLogger::loggerName() const
{
    return QStringLiteral("cocoa.vofungudip.fileLogger");
}

quint64 DDFileLogger::maximumFileSize() const
{
    quint64 result = 0;
    syncThroughLoggingQueue([this, &result] { result = mMaximumFileSize; });
    return result;
}

void DDFileLogger::setMaximumFileSize(quint64 maximumFileSize)
{
    auto apply = [this, maximumFileSize] {
        mMaximumFileSize = maximumFileSize;
        maybeRollLogFileDueToSize();
    };
    if (isOnLoggerQueue())
        apply();
    else
        asyncThroughLoggingQueue(apply);
}

double DDFileLogger::rollingFrequency() const
{
    double result = 0.0;
    syncThroughLoggingQueue([this, &result] { result = mRollingFrequency; });
    return result;
}

void DDFileLogger::setRollingFrequency(double rollingFrequency)
{
    auto apply = [this, rollingFrequency] {
        mRollingFrequency = rollingFrequency > 0.0 ? rollingFrequency : 0.0;
        maybeRollLogFileDueToAge();
    };
    if (isOnLoggerQueue())
        apply();
    else
        asyncThroughLoggingQueue(apply);
}

void DDFileLogger::rollLogFile()
{
    asyncThroughLoggingQueue([this] { rollLogFileNow(); });
}

std::shared_ptr<DDLogFileInfo> DDFileLogger::currentLogFileInfo()
{
    std::shared_ptr<DDLogFileInfo> result;
    syncThroughLoggingQueue([this, &result] { result = currentLogFileInfoOnQueue(); });
    return result;
}

std::shared_ptr<DDLogFileInfo> DDFileLogger::currentLogFileInfoOnQueue()
{
    if (mCurrentLogFileInfo)
        return mCurrentLogFileInfo;
    const QList<std::shared_ptr<DDLogFileInfo>> sorted = mLogFileManager->sortedLogFileInfos();
    if (!sorted.isEmpty()) {
        const std::shared_ptr<DDLogFileInfo> &newest = sorted.first();
        if (!newest->isArchived()) {
            const bool smallEnough = newest->fileSize() < mMaximumFileSize;
            const bool youngEnough = mRollingFrequency == 0.0 || newest->age() < mRollingFrequency;
            if (smallEnough && youngEnough) {
                mCurrentLogFileInfo = newest;
            } else {
                newest->setIsArchived(true);
                mLogFileManager->didArchiveLogFile(newest->filePath());
            }
        }
    }
    if (!mCurrentLogFileInfo)
        mCurrentLogFileInfo = DDLogFileInfo::logFileWithPath(mLogFileManager->createNewLogFile(),
                                                             mLogFileManager->extendedAttributes());
    return mCurrentLogFileInfo;
}

int DDFileLogger::currentLogFileHandle()
{
    if (mCurrentLogFileHandle >= 0)
        return mCurrentLogFileHandle;
    const QString path = currentLogFileInfoOnQueue()->filePath();
    const QByteArray encoded = QFile::encodeName(path);
    // Appending: every write goes to the end, whatever else touched the file.
    const int fd = ::open(encoded.constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd < 0) {
        if (mUnopenablePath != path) {
            mUnopenablePath = path;
            systemLog(QStringLiteral("DDFileLogger: Error opening log file (%1): %2")
                          .arg(path, describeError(CorvexError::fromErrno(errno, path, true))));
        }
        return -1;
    }
    mUnopenablePath.clear();
    struct stat status
    {
    };
    mCurrentOffset = ::fstat(fd, &status) == 0 ? quint64(status.st_size) : 0;
    mCurrentLogFileHandle = fd;
    scheduleTimerToRollLogFileDueToAge();
    return fd;
}

void DDFileLogger::logMessage(const DDLogMessage &logMessage)
{
    const QString text = formatter() ? formatter()->formatLogMessage(logMessage) : logMessage.logMsg();
    if (text.isNull())
        return;
    const int fd = currentLogFileHandle();
    if (fd < 0)
        return;
    const qsizetype start = mPendingBytes.size();
    mPendingBytes.append(text.toUtf8());
    if (mPendingBytes.size() == start || mPendingBytes.back() != '\n')
        mPendingBytes.append('\n');
    // Gather lines only in a delivery that more deliveries follow: the last of them writes them all.
    if (mPendingBytes.size() >= kGatherLimit || (quint32(logMessage.logFlag()) & DDLogFlagError) ||
        !DDLogDelivery::isDelivering() || !ddlog_private::moreDeliveriesFollow())
        writeOut();
    maybeRollLogFileDueToSize();
}

void DDFileLogger::willRemoveLogger()
{
    flush();
}

void DDFileLogger::flush()
{
    if (isOnLoggerQueue())
        writeOut();
    else
        loggerQueue()->sync([this] { writeOut(); });
}

void DDFileLogger::writeOut()
{
    if (mPendingBytes.isEmpty() || mCurrentLogFileHandle < 0)
        return;
    const int fd = mCurrentLogFileHandle;
    const qsizetype done = writeAll(fd, mPendingBytes.constData(), mPendingBytes.size());
    if (done < mPendingBytes.size()) {
        const int errorCode = errno;
        // Keep the whole lines that made it; cut off the rest of a line written in part.
        const qsizetype whole = done > 0 ? mPendingBytes.lastIndexOf('\n', done - 1) + 1 : 0;
        if (done != whole && ::ftruncate(fd, off_t(mCurrentOffset + quint64(whole))) != 0)
            mCurrentOffset += quint64(done);
        else
            mCurrentOffset += quint64(whole);
        mPendingBytes.clear();
        if (!mWriteFailureReported) {
            mWriteFailureReported = true;
            const QString path = mCurrentLogFileInfo ? mCurrentLogFileInfo->filePath() : QString();
            systemLog(QStringLiteral("DDFileLogger: Error writing to log file (%1): %2")
                          .arg(path, describeError(CorvexError::fromErrno(errorCode, path, true))));
        }
        return;
    }
    mCurrentOffset += quint64(mPendingBytes.size());
    mPendingBytes.clear();
    mWriteFailureReported = false;
}

void DDFileLogger::maybeRollLogFileDueToSize()
{
    if (mCurrentLogFileHandle >= 0 && mCurrentOffset + quint64(mPendingBytes.size()) >= mMaximumFileSize)
        rollLogFileNow();
}

void DDFileLogger::maybeRollLogFileDueToAge()
{
    if (mRollingFrequency == 0.0)
        return;
    if (mCurrentLogFileInfo && mCurrentLogFileInfo->age() >= mRollingFrequency)
        rollLogFileNow();
    else
        scheduleTimerToRollLogFileDueToAge();
}

void DDFileLogger::rollLogFileNow()
{
    if (mCurrentLogFileHandle >= 0) {
        writeOut();
        ::fdatasync(mCurrentLogFileHandle);
        ::close(mCurrentLogFileHandle);
        mCurrentLogFileHandle = -1;
        mCurrentOffset = 0;
    }
    if (!mCurrentLogFileInfo)
        return;
    mCurrentLogFileInfo->setIsArchived(true);
    mLogFileManager->didRollAndArchiveLogFile(mCurrentLogFileInfo->filePath());
    mCurrentLogFileInfo.reset();
}

void DDFileLogger::cancelRollingTimer()
{
    if (mRollingTimer != 0) {
        loggerQueue()->cancel(mRollingTimer);
        mRollingTimer = 0;
    }
}

void DDFileLogger::scheduleTimerToRollLogFileDueToAge()
{
    cancelRollingTimer();
    if (mShuttingDown || !mCurrentLogFileInfo || mRollingFrequency == 0.0)
        return;
    const QDateTime created = mCurrentLogFileInfo->creationDate();
    const qint64 due = created.isValid() ? created.toMSecsSinceEpoch() + qint64(mRollingFrequency * 1000.0)
                                         : QDateTime::currentMSecsSinceEpoch();
    // A little past the moment the file comes of age, so that the check finds it old enough.
    const qint64 delay = qMax<qint64>(0, due - QDateTime::currentMSecsSinceEpoch()) + 1;
    mRollingTimer = loggerQueue()->asyncAfter(std::chrono::milliseconds(delay), [this] {
        mRollingTimer = 0;
        maybeRollLogFileDueToAge();
    });
}
