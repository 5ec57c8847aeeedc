// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUInstaller.h"

#include "core/SUErrors.h"
#include "foundation/CorvexError.h"
#include "foundation/QZSUStandardVersionComparator.h"
#include "platform/Bundle.h"
#include "platform/Trash.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace installer {

QString tr(const char *text)
{
    return QCoreApplication::translate("SUInstaller", text);
}

bool fail(CorvexError *error, SUError code, const QString &text)
{
    if (error)
        *error = suError(code, text);
    return false;
}

// The privileged swap, run by /bin/sh as root with the new bundle as $1 and the installed one as $2.
const char kPrivilegedSwapScript[] = R"(set -e
new="$2.new-$$"; old="$2.old-$$"
rm -rf -- "$new"
cp -pR -- "$1" "$new"
chown -R 0:0 -- "$new"
if [ -e "$2" ]; then mv -- "$2" "$old"; fi
if ! mv -- "$new" "$2"; then
  if [ -e "$old" ]; then mv -- "$old" "$2"; fi
  rm -rf -- "$new"; exit 1
fi
rm -rf -- "$old"
)";

} // namespace installer

QString SUInstaller::owningPackage(const QString &bundlePath)
{
    const QString dpkgQuery = QStandardPaths::findExecutable(QStringLiteral("dpkg-query"));
    if (dpkgQuery.isEmpty())
        return {};
    QProcess process;
    process.start(dpkgQuery,
                  {QStringLiteral("-S"), QDir::cleanPath(QFileInfo(bundlePath).absoluteFilePath())});
    if (!process.waitForFinished(10000) || process.exitStatus() != QProcess::NormalExit ||
        process.exitCode() != 0)
        return {};
    // "package: /path" (a path shared by several packages lists them with ", ").
    const QString line =
        QString::fromLocal8Bit(process.readAllStandardOutput()).section(QLatin1Char('\n'), 0, 0);
    return line.section(QLatin1Char(':'), 0, 0).trimmed();
}

bool SUInstaller::canReplaceBundle(const QString &bundlePath)
{
    const QFileInfo info(bundlePath);
    const QByteArray parent = QFile::encodeName(info.absolutePath());
    const QByteArray self = QFile::encodeName(info.absoluteFilePath());
    return ::access(parent.constData(), W_OK | X_OK) == 0 && ::access(self.constData(), W_OK | X_OK) == 0;
}

bool SUInstaller::validateBundle(const Bundle &newBundle, const Bundle &installedBundle,
                                 const QString &expectedVersion, CorvexError *error)
{
    using installer::tr;
    if (!newBundle.isValid())
        return installer::fail(error, SUError::BadBundleError,
                               tr("The update holds no application bundle with an Info.plist."));
    if (newBundle.bundleIdentifier() != installedBundle.bundleIdentifier())
        return installer::fail(error, SUError::BadBundleError,
                               tr("The update is for \"%1\", not for \"%2\".")
                                   .arg(newBundle.bundleIdentifier(), installedBundle.bundleIdentifier()));
    const auto &comparator = QZSUStandardVersionComparator::defaultComparator();
    if (!expectedVersion.isEmpty() && comparator.compareVersion(newBundle.bundleVersion(), expectedVersion) !=
                                          QZSUStandardVersionComparator::OrderedSame)
        return installer::fail(error, SUError::BadBundleError,
                               tr("The update holds version %1, but the feed announced version %2.")
                                   .arg(newBundle.bundleVersion(), expectedVersion));
    if (comparator.compareVersion(newBundle.bundleVersion(), installedBundle.bundleVersion()) !=
        QZSUStandardVersionComparator::OrderedDescending)
        return installer::fail(
            error, SUError::DowngradeError,
            tr("The update's version %1 is not newer than the installed version %2; it is not "
               "installed.")
                .arg(newBundle.bundleVersion(), installedBundle.bundleVersion()));
    if (!QFileInfo(newBundle.executablePath()).isExecutable())
        return installer::fail(
            error, SUError::BadBundleError,
            tr("The update's bundle has no program at %1.").arg(newBundle.executablePath()));
    return true;
}

bool SUInstaller::swapBundles(const QString &newBundlePath, const QString &installedBundlePath,
                              QString *trashedPath, CorvexError *error)
{
    using installer::tr;
    QString inTrash;
    if (QFileInfo::exists(installedBundlePath)) {
        CorvexError trashError;
        if (!Trash::moveItemToTrash(installedBundlePath, &inTrash, &trashError))
            return installer::fail(error, SUError::InstallationError,
                                   tr("The installed copy at %1 cannot be moved to the Trash: %2")
                                       .arg(installedBundlePath, trashError.localizedDescription()));
    }
    const QByteArray from = QFile::encodeName(newBundlePath), to = QFile::encodeName(installedBundlePath);
    if (std::rename(from.constData(), to.constData()) != 0) {
        const QString reason = QString::fromLocal8Bit(std::strerror(errno));
        // Put the installed copy back where it was.
        if (!inTrash.isEmpty())
            std::rename(QFile::encodeName(inTrash).constData(), to.constData());
        return installer::fail(
            error, SUError::InstallationError,
            tr("The new version cannot be put at %1: %2").arg(installedBundlePath, reason));
    }
    if (trashedPath)
        *trashedPath = inTrash;
    return true;
}

bool SUInstaller::swapBundlesWithPrivileges(const QString &newBundlePath, const QString &installedBundlePath,
                                            CorvexError *error)
{
    using installer::tr;
    const QString pkexec = pkexecProgram();
    if (QStandardPaths::findExecutable(pkexec).isEmpty() && !QFileInfo(pkexec).isExecutable())
        return installer::fail(error, SUError::InstallationError,
                               tr("%1 needs administrator rights to be updated, but pkexec is not installed.")
                                   .arg(installedBundlePath));
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(pkexec, {QStringLiteral("/bin/sh"), QStringLiteral("-c"),
                           QString::fromLatin1(installer::kPrivilegedSwapScript), QStringLiteral("sh"),
                           newBundlePath, installedBundlePath});
    if (!process.waitForStarted(10000))
        return installer::fail(error, SUError::InstallationError,
                               tr("pkexec cannot be started: %1").arg(process.errorString()));
    process.waitForFinished(-1);
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0)
        return true;
    // pkexec answers 126 when the password dialog was dismissed, 127 when the user is not authorised.
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 126)
        return installer::fail(
            error, SUError::AuthorizationCancelled,
            tr("The update was not installed: administrator authorisation was cancelled."));
    if (process.exitStatus() == QProcess::NormalExit && process.exitCode() == 127)
        return installer::fail(
            error, SUError::InstallationError,
            tr("The update was not installed: you are not allowed to change %1.").arg(installedBundlePath));
    return installer::fail(
        error, SUError::InstallationError,
        tr("Could not copy the new version to %1 with administrator rights.").arg(installedBundlePath));
}

bool SUInstaller::relaunch(const QString &bundlePath, qint64 waitForPid)
{
    const Bundle bundle(bundlePath);
    if (!bundle.isValid())
        return false;
    // The new copy starts only after this one has gone, so that it does not hand over to this process.
    return QProcess::startDetached(
        QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"),
         QStringLiteral("while kill -0 \"$1\" 2>/dev/null; do sleep 0.1; done; exec \"$2\""),
         QStringLiteral("sh"), QString::number(waitForPid), bundle.executablePath()});
}

QString SUInstaller::pkexecProgram()
{
    const QString configured = qEnvironmentVariable("CORVEX_PKEXEC");
    return configured.isEmpty() ? QStringLiteral("pkexec") : configured;
}
