// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/AgentControl.h"

#include "core/LoginItems.h"
#include "foundation/CorvexError.h"
#include "foundation/PreferenceKeys.h"
#include "foundation/Version.h"
#include "logging/Log.h"
#include "platform/Bundle.h"
#include "platform/RunningApplications.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <cerrno>

namespace {

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

QUrl AgentControl::agentApplicationURL()
{
    const QUrl executable = QUrl::fromLocalFile(QCoreApplication::applicationFilePath());
    return executable.resolved(QUrl(QStringLiteral("../Helpers/CorvexAgent.app")));
}

void AgentControl::launchAgent()
{
    // An agent that already runs in this session is found, as a launch of a running application finds it,
    // rather than started again only to find it and end.
    const QList<RunningApplication> running =
        RunningApplications::runningApplicationsWithBundleIdentifier(kCorvexAgentDomain);
    if (!running.isEmpty()) {
        DDLogInfo(QStringLiteral("Agent launch succeeded: %1").arg(running.first().bundlePath));
        return;
    }
    const QString agentPath = agentApplicationURL().toLocalFile();
    CorvexError error;
    if (launchBundle(agentPath, &error))
        DDLogInfo(QStringLiteral("Agent launch succeeded: %1").arg(agentPath));
    else
        DDLogError(QStringLiteral("Agent launch failed: %1").arg(error.localizedDescription()));
}

void AgentControl::quitAgent()
{
    for (const RunningApplication &agent :
         RunningApplications::runningApplicationsWithBundleIdentifier(kCorvexAgentDomain)) {
        if (RunningApplications::terminate(agent.pid))
            DDLogInfo(QStringLiteral("Agent app has been terminated"));
        else
            DDLogError(QStringLiteral("Agent app termination failure: %1").arg(agent.bundlePath));
    }
}

void AgentControl::quitOtherCopies()
{
    const qint64 ownPid = QCoreApplication::applicationPid();
    for (const RunningApplication &copy :
         RunningApplications::runningApplicationsWithBundleIdentifier(kCorvexDomain)) {
        if (copy.pid == ownPid)
            continue;
        if (RunningApplications::terminate(copy.pid))
            DDLogInfo(QStringLiteral("Another Corvex instance has been terminated"));
        else
            DDLogError(
                QStringLiteral("Another Corvex instance termination failure: %1").arg(copy.bundlePath));
    }
}

void AgentControl::addAgentToLoginItems()
{
    LoginItems().addAgentToLoginItems(agentApplicationURL(), runningBundleVersion());
}

void AgentControl::ensureAgentIsInLoginItems()
{
    LoginItems().ensureAgentIsInLoginItems(agentApplicationURL(), runningBundleVersion());
}

void AgentControl::removeAgentFromLoginItems()
{
    LoginItems().removeAgentFromLoginItems();
}
