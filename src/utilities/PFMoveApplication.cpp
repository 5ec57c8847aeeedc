// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "utilities/PFMoveApplication.h"

#include "foundation/QZSUStandardVersionComparator.h"
#include "platform/Bundle.h"
#include "utilities/PFMoveApplicationEnvironment.h"
#include "utilities/PFMoveApplicationLaunchers.h"
#include "utilities/SymlinksAndAliases.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

namespace {

// A path as one word of a shell command, inside single quotes.
QString shellQuoted(const QString &path)
{
    QString quoted = path;
    quoted.replace(u'\'', QStringLiteral("'\\''"));
    return u'\'' + quoted + u'\'';
}

bool isInside(const QString &path, const QString &folder)
{
    if (folder.isEmpty())
        return false;
    const QString prefix = folder.endsWith(u'/') ? folder : folder + u'/';
    return path == folder || path.startsWith(prefix);
}

bool isInsideAny(const QString &path, const QStringList &folders)
{
    return std::any_of(folders.begin(), folders.end(), [&](const QString &f) { return isInside(path, f); });
}

QString resolved(const QString &path)
{
    return mg_stringByResolvingSymlinksAndAliases(path).value_or(path);
}

bool holdsAnApplication(const QString &folder)
{
    const QFileInfo info(folder);
    if (!info.isDir())
        return false;
    return !QDir(folder)
                .entryList({QStringLiteral("*.app")}, QDir::AllEntries | QDir::NoDotAndDotDot)
                .isEmpty();
}

// Copies the bundle as "cp -pR" does: links as links, modes and times kept. On failure a partial copy goes;
// whatever stood at the destination before is left alone.
bool copyBundle(const QString &source, const QString &destination, QString *errorText)
{
    const bool existedBefore = QFileInfo::exists(destination) || QFileInfo(destination).isSymLink();
    QProcess copy;
    copy.start(QStringLiteral("/bin/cp"), {QStringLiteral("-pR"), QStringLiteral("--"), source, destination});
    const bool finished = copy.waitForFinished(-1);
    if (finished && copy.exitStatus() == QProcess::NormalExit && copy.exitCode() == 0)
        return true;
    *errorText = QString::fromLocal8Bit(copy.readAllStandardError()).trimmed();
    if (errorText->isEmpty())
        *errorText = copy.errorString();
    if (!existedBefore)
        QDir(destination).removeRecursively(); // only what this copy made
    return false;
}

enum class PrivilegedResult { Copied, Cancelled, Failed };

// The administrator's copy through pkexec: one authorisation for removing the old destination and copying.
PrivilegedResult copyWithPrivileges(const PFMoveApplicationEnvironment &env, const QString &source,
                                    const QString &destination)
{
    if (!destination.endsWith(QStringLiteral(".app")) || destination.trimmed().isEmpty() ||
        source.trimmed().isEmpty())
        return PrivilegedResult::Failed;
    const QString script = QStringLiteral("/bin/mkdir -p -- \"$3\" && { /bin/rm -rf -- \"$1\"; "
                                          "exec /bin/cp -pR -- \"$2\" \"$1\"; }");
    QProcess process;
    process.start(env.privilegeProgram, {env.shell, QStringLiteral("-c"), script, QStringLiteral("sh"),
                                         destination, source, QFileInfo(destination).path()});
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit)
        return PrivilegedResult::Failed;
    // pkexec ends with 126 when the dialog was dismissed and 127 when authorisation was refused.
    if (process.exitCode() == 126 || process.exitCode() == 127)
        return PrivilegedResult::Cancelled;
    return process.exitCode() == 0 ? PrivilegedResult::Copied : PrivilegedResult::Failed;
}

bool trash(const PFMoveApplicationEnvironment &env, const QString &path)
{
    if (env.moveToTrash(path))
        return true;
    env.log(QStringLiteral("ERROR -- Could not trash '%1'").arg(path));
    return false;
}

// The copy of this application running from the destination, if any.
std::optional<RunningApplication> runningCopyAt(const PFMoveApplicationEnvironment &env,
                                                const QString &destination)
{
    const QString executable = QFileInfo(Bundle(destination).executablePath()).fileName();
    for (const RunningApplication &running : env.runningApplications()) {
        if (running.pid != env.processId && isInside(running.executablePath, destination) &&
            running.bundlePath == destination && QFileInfo(running.executablePath).fileName() == executable)
            return running;
    }
    return std::nullopt;
}

void finish(const PFMoveApplicationEnvironment &env, const QString &source, const QString &destination,
            bool fromDiskImage)
{
    if (!fromDiskImage && !trash(env, source))
        env.log(
            QStringLiteral("WARNING -- Could not delete application after moving it to Applications folder"));
    PFMoveApplicationLaunchers::updateEntries(source, destination, env.launcherDirectory,
                                              env.autostartDirectory);

    // There is no quarantine mark to remove here; the new copy starts once this process has ended.
    const QString program = Bundle(destination).executablePath();
    const QString relaunch = QStringLiteral("(while [ `ps -p %1 | wc -l` -gt 1 ]; do sleep 0.1; done; %2) &")
                                 .arg(env.processId)
                                 .arg(shellQuoted(program));
    env.startDetached(env.shell, {QStringLiteral("-c"), relaunch});
    if (fromDiskImage) {
        const QString volume = QFileInfo(source).path();
        env.startDetached(env.shell,
                          {QStringLiteral("-c"),
                           QStringLiteral("(sleep 5 && gio mount -u %1) &").arg(shellQuoted(volume))});
    }
    env.exitProcess(0);
}

void failed(const PFMoveApplicationEnvironment &env)
{
    env.runFailureAlert(
        QCoreApplication::translate("MoveApplication", "Could not move to Applications folder"));
}

} // namespace

void PFMoveToApplicationsFolderIfNecessary()
{
    PFMoveToApplicationsFolderIfNecessary(PFMoveApplicationEnvironment::systemEnvironment());
}

void PFMoveToApplicationsFolderIfNecessary(const PFMoveApplicationEnvironment &env)
{
    if (env.isAlertSuppressed())
        return;
    const QString source = env.bundlePath;
    if (source.isEmpty())
        return; // not running from a bundle
    const QStringList applicationsFolders = QStringList{env.userApplicationsDirectory} +
                                            env.localApplicationsDirectories +
                                            env.otherApplicationsDirectories;
    if (isInsideAny(source, applicationsFolders) ||
        source.split(u'/', Qt::SkipEmptyParts).contains(QStringLiteral("Applications")))
        return;

    const bool fromDiskImage = std::any_of(env.diskImageMountRoots.begin(), env.diskImageMountRoots.end(),
                                           [&](const QString &root) { return source.startsWith(root); }) &&
                               !QFileInfo(source).isWritable();

    const bool homeTarget = holdsAnApplication(env.userApplicationsDirectory);
    if (!homeTarget && env.localApplicationsDirectories.isEmpty())
        return;
    const QString target =
        resolved(homeTarget ? env.userApplicationsDirectory : env.localApplicationsDirectories.last());
    const QString destination = QDir(target).filePath(QFileInfo(source).fileName());
    const bool needsPassword = !QFileInfo(target).isWritable();

    PFMoveApplicationAlertRequest request;
    request.title = homeTarget
                        ? QCoreApplication::translate("MoveApplication",
                                                      "Move to Applications folder in your Home folder?")
                        : QCoreApplication::translate("MoveApplication", "Move to Applications folder?");
    request.informativeText = QCoreApplication::translate(
        "MoveApplication", "I can move myself to the Applications folder if you'd like.");
    if (needsPassword)
        request.informativeText +=
            u' ' + QCoreApplication::translate("MoveApplication",
                                               "Note that this will require an administrator password.");
    else if (isInsideAny(source, env.downloadsDirectories))
        request.informativeText +=
            u' ' + QCoreApplication::translate("MoveApplication",
                                               "This will keep your Downloads folder uncluttered.");
    request.showsSuppressionButton = true;

    const PFMoveApplicationAlertAnswer answer = env.runAlert(request);
    if (!answer.move) {
        if (answer.suppressionChecked)
            env.suppressAlert();
        return;
    }
    env.log(QStringLiteral("INFO -- Moving myself to the Applications folder"));
    env.quitCorvexAgent();

    if (needsPassword) {
        switch (copyWithPrivileges(env, source, destination)) {
        case PrivilegedResult::Cancelled:
            env.log(QStringLiteral("INFO -- Not moving because user canceled authorization"));
            return;
        case PrivilegedResult::Failed:
            env.log(QStringLiteral("ERROR -- Could not copy myself to /Applications with authorization"));
            failed(env);
            return;
        case PrivilegedResult::Copied:
            break;
        }
    } else {
        const bool destinationExists = QFileInfo(destination).exists() || QFileInfo(destination).isSymLink();
        if (destinationExists) {
            if (const std::optional<RunningApplication> running = runningCopyAt(env, destination)) {
                const QString ownVersion = Bundle(source).bundleVersion();
                const QString runningVersion = Bundle(running->bundlePath).bundleVersion();
                if (QZSUStandardVersionComparator::defaultComparator().compareVersion(
                        ownVersion, runningVersion) != QZSUStandardVersionComparator::OrderedDescending) {
                    env.log(QStringLiteral("INFO -- Switching to an already running version"));
                    env.startDetached(Bundle(destination).executablePath(), {});
                    env.exitProcess(0);
                    return;
                }
                env.quitOtherCorvexs();
            }
            if (!trash(env, destination)) {
                failed(env);
                return;
            }
        }
        QString errorText;
        if (!copyBundle(source, destination, &errorText)) {
            env.log(QStringLiteral("ERROR -- Could not copy '%1' to '%2' (%3)")
                        .arg(source, destination, errorText));
            env.log(QStringLiteral("ERROR -- Could not copy myself to %1").arg(destination));
            failed(env);
            return;
        }
    }
    finish(env, source, destination, fromDiskImage);
}
