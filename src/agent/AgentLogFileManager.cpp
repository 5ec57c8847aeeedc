// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/AgentLogFileManager.h"

#include "foundation/Notifications.h"
#include "logging/DDLogFileInfo.h"
#include "platform/DistributedNotificationCenter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

void logPlain(const QString &text)
{
    std::fprintf(stderr, "CorvexAgent: %s\n", qUtf8Printable(text));
}

} // namespace

QString AgentLogFileManager::sharedLogsDirectory()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty())
        base = QDir::tempPath();
    return base + QStringLiteral("/Corvex/Logs");
}

AgentLogFileManager::AgentLogFileManager() : DDLogFileManagerDefault(sharedLogsDirectory()) {}

AgentLogFileManager::AgentLogFileManager(const QString &logsDirectory)
    : DDLogFileManagerDefault(logsDirectory)
{
}

bool AgentLogFileManager::isLogFile(const QString &fileName) const
{
    return fileName == CurrentLogFileName || DDLogFileManagerDefault::isLogFile(fileName);
}

QList<std::shared_ptr<DDLogFileInfo>> AgentLogFileManager::sortedLogFileInfos()
{
    QList<std::shared_ptr<DDLogFileInfo>> infos = DDLogFileManagerDefault::sortedLogFileInfos();
    std::stable_partition(infos.begin(), infos.end(), [](const std::shared_ptr<DDLogFileInfo> &info) {
        return info->fileName() == CurrentLogFileName;
    });
    return infos;
}

QString AgentLogFileManager::currentLogFilePath()
{
    return logsDirectory() + u'/' + CurrentLogFileName;
}

bool AgentLogFileManager::makeCurrentLogFile(const QString &path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) {
        if (errno == EEXIST)
            return true;
        logPlain(QStringLiteral("Could not create the log file %1: %2")
                     .arg(path, QString::fromLocal8Bit(std::strerror(errno))));
        return false;
    }
    ::close(fd);
    DDLogFileInfo(path, extendedAttributes()).recordCreationDate();
    return true;
}

bool AgentLogFileManager::moveArchivedFileAside(const QString &logFilePath)
{
    DDLogFileInfo info(logFilePath, extendedAttributes());
    const QString folder = QFileInfo(logFilePath).absolutePath();
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QString name = QStringLiteral("log-") + generateShortUUID() + QStringLiteral(".txt");
        if (QFileInfo::exists(folder + u'/' + name))
            continue;
        info.renameFile(name);
        return !QFileInfo::exists(logFilePath);
    }
    return false;
}

QString AgentLogFileManager::createNewLogFile()
{
    const QString path = currentLogFilePath();
    if (QFileInfo::exists(path) && DDLogFileInfo(path, extendedAttributes()).isArchived())
        moveArchivedFileAside(path);
    makeCurrentLogFile(path);
    deleteOldLogFiles();
    return path;
}

void AgentLogFileManager::archived(const QString &logFilePath)
{
    if (QFileInfo(logFilePath).fileName() == CurrentLogFileName) {
        moveArchivedFileAside(logFilePath);
        makeCurrentLogFile(currentLogFilePath());
    }
    deleteOldLogFiles();
    DistributedNotificationCenter::defaultCenter().postNotificationName(CorvexDidArchiveLogFileNotification);
}

void AgentLogFileManager::didArchiveLogFile(const QString &logFilePath)
{
    archived(logFilePath);
}

void AgentLogFileManager::didRollAndArchiveLogFile(const QString &logFilePath)
{
    archived(logFilePath);
}
