// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "utilities/PFMoveApplicationEnvironment.h"

#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"
#include "logging/DDLog.h"
#include "platform/Bundle.h"
#include "platform/Trash.h"
#include "utilities/PFMoveApplicationAlert.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <cstdio>
#include <cstdlib>

namespace {

std::function<void()> &delegateQuitAgent()
{
    static std::function<void()> action;
    return action;
}

std::function<void()> &delegateQuitOthers()
{
    static std::function<void()> action;
    return action;
}

QString dataHome()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

} // namespace

void PFMoveApplicationEnvironment::setDelegateActions(std::function<void()> quitCorvexAgent,
                                                      std::function<void()> quitOtherCorvexs)
{
    delegateQuitAgent() = std::move(quitCorvexAgent);
    delegateQuitOthers() = std::move(quitOtherCorvexs);
}

PFMoveApplicationEnvironment PFMoveApplicationEnvironment::systemEnvironment()
{
    PFMoveApplicationEnvironment environment;
    environment.bundlePath = Bundle::mainBundle().bundlePath();
    environment.userApplicationsDirectory = QDir::home().filePath(QStringLiteral("Applications"));
    environment.localApplicationsDirectories = {QStringLiteral("/opt/Applications")};
    environment.otherApplicationsDirectories = {QStringLiteral("/Applications")};
    const QString downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (!downloads.isEmpty() && downloads != QDir::homePath())
        environment.downloadsDirectories = {downloads};
    environment.diskImageMountRoots = {QStringLiteral("/media/"), QStringLiteral("/run/media/")};
    environment.launcherDirectory = QDir(dataHome()).filePath(QStringLiteral("applications"));
    environment.autostartDirectory =
        QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
            .filePath(QStringLiteral("autostart"));
    environment.privilegeProgram = QStringLiteral("pkexec");
    environment.shell = QStringLiteral("/bin/sh");
    environment.processId = QCoreApplication::applicationPid();

    environment.isAlertSuppressed = [] {
        return UserDefaults::standardUserDefaults().boolForKey(kMoveToApplicationsFolderAlertSuppressKey);
    };
    environment.suppressAlert = [] {
        UserDefaults &defaults = UserDefaults::standardUserDefaults();
        defaults.setBool(true, kMoveToApplicationsFolderAlertSuppressKey);
        defaults.synchronize();
    };
    environment.runAlert = [](const PFMoveApplicationAlertRequest &request) {
        return PFMoveApplicationAlert::run(request);
    };
    environment.runFailureAlert = [](const QString &title) { PFMoveApplicationAlert::runFailure(title); };
    environment.runningApplications = [] { return RunningApplications::runningApplications(); };
    environment.moveToTrash = [](const QString &path) { return Trash::moveItemToTrash(path); };
    environment.startDetached = [](const QString &program, const QStringList &arguments) {
        return QProcess::startDetached(program, arguments);
    };
    environment.quitCorvexAgent = [] {
        if (delegateQuitAgent())
            delegateQuitAgent()();
    };
    environment.quitOtherCorvexs = [] {
        if (delegateQuitOthers())
            delegateQuitOthers()();
    };
    environment.exitProcess = [](int status) {
        // The process ends here, without the shut-down of a normal quit: the relaunched copy takes over.
        DDLog::flushLog();
        std::fflush(nullptr);
        std::_Exit(status);
    };
    environment.log = [](const QString &line) {
        std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
        std::fflush(stderr);
    };
    return environment;
}
