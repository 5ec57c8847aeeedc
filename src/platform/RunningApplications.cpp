// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RunningApplications.h"

#include "platform/Bundle.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QThread>
#include <algorithm>
#include <csignal>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

// The session bus address a process was started with; empty when it has none.
QByteArray sessionBusAddressOfEnvironment(const QByteArray &environment)
{
    static const QByteArray key("DBUS_SESSION_BUS_ADDRESS=");
    for (const QByteArray &entry : environment.split('\0')) {
        if (entry.startsWith(key))
            return entry.mid(key.size());
    }
    return QByteArray();
}

} // namespace

QList<qint64> RunningApplications::processIds()
{
    QList<qint64> pids;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &entry : entries) {
        bool ok = false;
        const qint64 pid = entry.toLongLong(&ok);
        if (ok && pid > 0)
            pids.append(pid);
    }
    std::sort(pids.begin(), pids.end());
    return pids;
}

QString RunningApplications::executablePathOfProcess(qint64 pid)
{
    const QString link = QStringLiteral("/proc/%1/exe").arg(pid);
    QString target = QFile::symLinkTarget(link);
    if (target.isEmpty())
        return QString();
    // An executable that was replaced or removed while running reads as "<path> (deleted)".
    static const QString deleted = QStringLiteral(" (deleted)");
    if (target.endsWith(deleted) && !QFile::exists(target))
        target.chop(deleted.size());
    return target;
}

QList<RunningApplication> RunningApplications::runningApplications()
{
    QList<RunningApplication> applications;
    // Many processes share a bundle (or none): read each folder's Info.plist once per call.
    QHash<QString, QString> identifierOfBundle;
    QHash<QString, QString> mainExecutableOfBundle;
    QHash<QString, QString> bundleOfFolder;
    for (const qint64 pid : processIds()) {
        const QString executable = executablePathOfProcess(pid);
        if (executable.isEmpty())
            continue;
        const QString folder = executable.left(executable.lastIndexOf(QLatin1Char('/')));
        auto found = bundleOfFolder.constFind(folder);
        if (found == bundleOfFolder.constEnd())
            found = bundleOfFolder.insert(folder, Bundle::bundlePathContainingPath(executable));
        const QString bundlePath = found.value();
        if (bundlePath.isEmpty())
            continue;
        auto identifier = identifierOfBundle.constFind(bundlePath);
        if (identifier == identifierOfBundle.constEnd()) {
            const Bundle bundle(bundlePath);
            identifier = identifierOfBundle.insert(bundlePath, bundle.bundleIdentifier());
            mainExecutableOfBundle.insert(bundlePath, bundle.executablePath());
        }
        // Only the bundle's own program is the application: a helper tool that lies in the bundle is not.
        if (identifier.value().isEmpty() || mainExecutableOfBundle.value(bundlePath) != executable ||
            !isInThisSession(pid))
            continue;
        applications.append(RunningApplication{pid, bundlePath, executable, identifier.value()});
    }
    return applications;
}

QList<RunningApplication>
RunningApplications::runningApplicationsWithBundleIdentifier(const QString &bundleIdentifier)
{
    QList<RunningApplication> matching;
    if (bundleIdentifier.isEmpty())
        return matching;
    for (const RunningApplication &application : runningApplications()) {
        if (application.bundleIdentifier == bundleIdentifier)
            matching.append(application);
    }
    return matching;
}

bool RunningApplications::isInThisSession(qint64 pid)
{
    if (pid == QCoreApplication::applicationPid())
        return true; // its environment file shows how it started, not what it may have set since
    const QByteArray folder = QStringLiteral("/proc/%1").arg(pid).toLocal8Bit();
    struct stat info = {};
    if (::stat(folder.constData(), &info) != 0 || info.st_uid != ::getuid())
        return false;
    // A process caught in the middle of starting (its program loaded, its new memory not yet set up) shows
    // no environment for a moment: look again a few times before taking it as empty.
    QByteArray environment;
    for (int attempt = 0; attempt < 20 && environment.isEmpty(); ++attempt) {
        if (attempt > 0)
            QThread::msleep(1);
        QFile file(QString::fromLocal8Bit(folder) + QStringLiteral("/environ"));
        if (!file.open(QIODevice::ReadOnly))
            return false;
        environment = file.readAll();
    }
    return sessionBusAddressOfEnvironment(environment) == qgetenv("DBUS_SESSION_BUS_ADDRESS");
}

bool RunningApplications::terminate(qint64 pid)
{
    if (pid <= 0)
        return false;
    return ::kill(static_cast<pid_t>(pid), SIGTERM) == 0;
}
