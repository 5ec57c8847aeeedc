// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "logging/DDLogFileManagerDefault.h"

#include "foundation/DispatchQueue.h"
#include "logging/DDLog.h"
#include "logging/DDLogFileInfo.h"
#include "logging/SystemLog_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QUuid>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Creates the folder and its missing parents. Returns 0, or the errno value of the step that failed.
int makeDirectories(const QString &path)
{
    const QByteArray full = QFile::encodeName(QDir::cleanPath(path));
    struct stat status
    {
    };
    if (::stat(full.constData(), &status) == 0)
        return S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
    for (qsizetype slash = full.indexOf('/', 1);; slash = full.indexOf('/', slash + 1)) {
        const QByteArray step = slash < 0 ? full : full.left(slash);
        if (::mkdir(step.constData(), 0755) != 0 && errno != EEXIST)
            return errno;
        if (slash < 0)
            break;
    }
    if (::stat(full.constData(), &status) != 0)
        return errno;
    return S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
}

} // namespace

DDLogFileManagerDefault::DDLogFileManagerDefault() : DDLogFileManagerDefault(QString()) {}

DDLogFileManagerDefault::DDLogFileManagerDefault(const QString &logsDirectory,
                                                 const ExtendedAttributes &attributes)
    : mLogsDirectory(logsDirectory), mExtendedAttributes(attributes)
{
}

quint64 DDLogFileManagerDefault::maximumNumberOfLogFiles() const
{
    return mMaximumNumberOfLogFiles.load();
}

void DDLogFileManagerDefault::setMaximumNumberOfLogFiles(quint64 maximumNumberOfLogFiles)
{
    if (mMaximumNumberOfLogFiles.exchange(maximumNumberOfLogFiles) == maximumNumberOfLogFiles)
        return;
    DispatchQueue *loggingQueue = DDLog::loggingQueue();
    if (std::shared_ptr<DDLogFileManagerDefault> self = weak_from_this().lock()) {
        loggingQueue->async([self = std::move(self)] { self->deleteOldLogFiles(); });
    } else if (loggingQueue->isCurrent()) {
        deleteOldLogFiles();
    } else {
        // Not shared, so nothing would keep the manager alive until later: clear away now, in turn.
        loggingQueue->sync([this] { deleteOldLogFiles(); });
    }
}

QString DDLogFileManagerDefault::processName()
{
    const QString name = QCoreApplication::applicationName();
    if (!name.isEmpty())
        return name;
    return QString::fromLocal8Bit(program_invocation_short_name);
}

QString DDLogFileManagerDefault::defaultLogsDirectory()
{
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (base.isEmpty())
        base = QDir::tempPath();
    return base + QLatin1Char('/') + processName() + QLatin1String("/Logs");
}

QString DDLogFileManagerDefault::logsDirectory()
{
    const QString directory = mLogsDirectory.isEmpty() ? defaultLogsDirectory() : mLogsDirectory;
    if (const int errorCode = makeDirectories(directory)) {
        logging_private::systemLog(
            QStringLiteral("DDFileLogManagerDefault: Error creating logsDirectory: %1")
                .arg(logging_private::describeError(CorvexError::fromErrno(errorCode, directory, true))));
    }
    return directory;
}

bool DDLogFileManagerDefault::isLogFile(const QString &fileName) const
{
    if (!fileName.startsWith(QLatin1String("log-")) || fileName.size() < 10)
        return false;
    for (qsizetype i = 4; i < 10; ++i) {
        const QChar c = fileName.at(i);
        if (!((c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
              (c >= QLatin1Char('A') && c <= QLatin1Char('F'))))
            return false;
    }
    return true;
}

QStringList DDLogFileManagerDefault::logFileNamesIn(const QString &directory) const
{
    QStringList names;
    const QStringList entries =
        QDir(directory).entryList(QDir::Files | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        if (isLogFile(entry))
            names.append(entry);
    }
    return names;
}

QStringList DDLogFileManagerDefault::logFilePathsIn(const QString &directory) const
{
    QStringList paths;
    for (const QString &name : logFileNamesIn(directory))
        paths.append(directory + QLatin1Char('/') + name);
    return paths;
}

QStringList DDLogFileManagerDefault::unsortedLogFileNames()
{
    return logFileNamesIn(logsDirectory());
}

QStringList DDLogFileManagerDefault::unsortedLogFilePaths()
{
    return logFilePathsIn(logsDirectory());
}

QList<std::shared_ptr<DDLogFileInfo>> DDLogFileManagerDefault::unsortedLogFileInfos()
{
    QList<std::shared_ptr<DDLogFileInfo>> infos;
    for (const QString &path : unsortedLogFilePaths())
        infos.append(DDLogFileInfo::logFileWithPath(path, mExtendedAttributes));
    return infos;
}

QList<std::shared_ptr<DDLogFileInfo>> DDLogFileManagerDefault::sortedLogFileInfos()
{
    QList<std::shared_ptr<DDLogFileInfo>> infos = unsortedLogFileInfos();
    std::stable_sort(infos.begin(), infos.end(),
                     [](const std::shared_ptr<DDLogFileInfo> &a, const std::shared_ptr<DDLogFileInfo> &b) {
                         return a->reverseCompareByCreationDate(*b) < 0;
                     });
    return infos;
}

QStringList DDLogFileManagerDefault::sortedLogFilePaths()
{
    QStringList paths;
    for (const std::shared_ptr<DDLogFileInfo> &info : sortedLogFileInfos())
        paths.append(info->filePath());
    return paths;
}

QStringList DDLogFileManagerDefault::sortedLogFileNames()
{
    QStringList names;
    for (const std::shared_ptr<DDLogFileInfo> &info : sortedLogFileInfos())
        names.append(info->fileName());
    return names;
}

QString DDLogFileManagerDefault::generateShortUUID()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).left(6).toUpper();
}

QString DDLogFileManagerDefault::createNewLogFile()
{
    const QString directory = logsDirectory();
    QString path;
    bool created = false;
    // A name in use is never reused; another failure (no folder, no permission) ends the search, and the
    // file logger then finds the file unopenable.
    for (int attempt = 0; attempt < 1000; ++attempt) {
        path = directory + QLatin1String("/log-") + generateShortUUID() + QLatin1String(".txt");
        const QByteArray encoded = QFile::encodeName(path);
        const int fd = ::open(encoded.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0) {
            ::close(fd);
            DDLogFileInfo(path, mExtendedAttributes).recordCreationDate();
            created = true;
            break;
        }
        if (errno != EEXIST && errno != EINTR)
            break;
    }
    if (created)
        deleteOldLogFiles();
    return path;
}

void DDLogFileManagerDefault::deleteOldLogFiles()
{
    QList<std::shared_ptr<DDLogFileInfo>> infos = sortedLogFileInfos();
    if (!infos.isEmpty() && !infos.first()->isArchived())
        infos.removeFirst(); // the file in use
    const quint64 keep = maximumNumberOfLogFiles();
    for (qsizetype i = 0; i < infos.size(); ++i) {
        if (quint64(i) < keep)
            continue;
        const std::shared_ptr<DDLogFileInfo> &info = infos.at(i);
        QFile::remove(info->filePath());
        QFile::remove(info->flagFilePathForAttribute(DDLogFileInfo::ArchivedAttributeName));
    }
}
