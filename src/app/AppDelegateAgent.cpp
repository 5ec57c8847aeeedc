// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The application's side of the agent: its location in the bundle, launching and quitting it, quitting other
// copies of the application, keeping it a login item, and the log window it writes for.
#include "AppDelegate.h"

#include "Bundle.h"
#include "CorvexError.h"
#include "FileManagerReveal.h"
#include "Log.h"
#include "LogWindowController.h"
#include "LoginItems.h"
#include "RunningApplications.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <cerrno>

namespace {

const QString agentBundleIdentifier = QStringLiteral("com.ostrel.CorvexAgent");
const QString applicationBundleIdentifier = QStringLiteral("com.ostrel.Corvex");

// The "CFBundleVersion" of the running application (the build's when it runs outside its bundle).
QString runningBundleVersion()
{
    const QString version = Bundle::mainBundle().bundleVersion();
    return version.isEmpty() ? QStringLiteral(CORVEX_BUNDLE_VERSION) : version;
}

// Starts the bundle's executable detached, without taking focus; fills *error when it cannot.
bool launchBundle(const QString &bundlePath, CorvexError *error)
{
    const Bundle bundle(bundlePath);
    const QString executable = bundle.isValid() ? bundle.executablePath() : QString();
    if (executable.isEmpty() || !QFileInfo(executable).isFile()) {
        *error = CorvexError::fromErrno(ENOENT, bundlePath, false);
        return false;
    }
    if (!QFileInfo(executable).isExecutable()) {
        *error = CorvexError::fromErrno(EACCES, executable, false);
        return false;
    }
    if (!QProcess::startDetached(executable, {}, QDir::homePath())) {
        *error = CorvexError(
            CorvexError::CocoaErrorDomain, CorvexError::FileReadUnknownError,
            {{CorvexError::LocalizedDescriptionKey,
              QCoreApplication::translate("AppDelegate", "The application “%1” could not be launched.")
                  .arg(QFileInfo(bundlePath).fileName())},
             {CorvexError::FilePathErrorKey, executable}});
        return false;
    }
    return true;
}

} // namespace

QUrl AppDelegate::corvexAgentApplicationURL() const
{
    const QUrl executable = QUrl::fromLocalFile(QCoreApplication::applicationFilePath());
    return executable.resolved(QUrl(QStringLiteral("../Helpers/CorvexAgent.app")));
}

void AppDelegate::launchCorvexAgent()
{
    const QString agentPath = corvexAgentApplicationURL().toLocalFile();
    CorvexError error;
    if (launchBundle(agentPath, &error))
        DDLogInfo(QStringLiteral("Agent launch succeeded: %1").arg(agentPath));
    else
        DDLogError(QStringLiteral("Agent launch failed: %1").arg(error.localizedDescription()));
}

void AppDelegate::quitCorvexAgent()
{
    for (const RunningApplication &agent :
         RunningApplications::runningApplicationsWithBundleIdentifier(agentBundleIdentifier)) {
        if (RunningApplications::terminate(agent.pid))
            DDLogInfo(QStringLiteral("Agent app has been terminated"));
        else
            DDLogError(QStringLiteral("Agent app termination failure: %1").arg(agent.bundlePath));
    }
}

void AppDelegate::quitOtherCorvexs()
{
    const qint64 ownPid = QCoreApplication::applicationPid();
    for (const RunningApplication &copy :
         RunningApplications::runningApplicationsWithBundleIdentifier(applicationBundleIdentifier)) {
        if (copy.pid == ownPid)
            continue;
        if (RunningApplications::terminate(copy.pid))
            DDLogInfo(QStringLiteral("Another Corvex instance has been terminated"));
        else
            DDLogError(
                QStringLiteral("Another Corvex instance termination failure: %1").arg(copy.bundlePath));
    }
}

void AppDelegate::addAgentToLoginItems()
{
    LoginItems().addAgentToLoginItems(corvexAgentApplicationURL(), runningBundleVersion());
}

void AppDelegate::ensureAgentIsInLoginItems()
{
    LoginItems().ensureAgentIsInLoginItems(corvexAgentApplicationURL(), runningBundleVersion());
}

void AppDelegate::removeAgentFromLoginItems()
{
    LoginItems().removeAgentFromLoginItems();
}

void AppDelegate::logWindowAction()
{
    if (!mLogWindowController)
        mLogWindowController = new LogWindowController(this);
    mLogWindowController->showWindow();
}

void AppDelegate::revealLogInFinderAction()
{
    if (!mLogWindowController)
        mLogWindowController = new LogWindowController(this);
    FileManagerReveal::selectFile(LogWindowController::logFilePath(), QString());
}
