// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/LoginItems.h"

#include "foundation/QZSUStandardVersionComparator.h"
#include "logging/Log.h"
#include "platform/AutostartEntry.h"
#include "platform/Bundle.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace {

const QString agentDisplayName = QStringLiteral("CorvexAgent");

void logCouldNotResolve(const LoginItem &item, int status)
{
    DDLogError(
        QStringLiteral("Login item %1 could not be resolved.  Error: %2").arg(item.displayName).arg(status));
}

void logCouldNotRemove(const LoginItem &item, int status)
{
    DDLogError(QStringLiteral("Login item %1 could not be removed from the list.  Error: %2")
                   .arg(item.displayName)
                   .arg(status));
}

// A file name for a new entry in the folder that no entry has yet.
QString freshEntryPath(const QDir &folder, const QString &baseName)
{
    QString path = folder.filePath(baseName + QStringLiteral(".desktop"));
    for (int n = 2; QFileInfo::exists(path); ++n)
        path = folder.filePath(QStringLiteral("%1-%2.desktop").arg(baseName).arg(n));
    return path;
}

} // namespace

QString LoginItems::defaultAutostartFolder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
        .filePath(QStringLiteral("autostart"));
}

LoginItems::LoginItems(const QString &autostartFolder) : mAutostartFolder(autostartFolder) {}

QList<LoginItem> LoginItems::snapshot() const
{
    QFileInfoList files =
        QDir(mAutostartFolder).entryInfoList({QStringLiteral("*.desktop")}, QDir::Files | QDir::Readable);
    std::stable_sort(files.begin(), files.end(), [](const QFileInfo &a, const QFileInfo &b) {
        const qint64 aTime = a.lastModified().toMSecsSinceEpoch();
        const qint64 bTime = b.lastModified().toMSecsSinceEpoch();
        return aTime != bTime ? aTime < bTime : a.fileName() < b.fileName();
    });
    QList<LoginItem> items;
    for (const QFileInfo &file : std::as_const(files)) {
        AutostartEntry entry;
        if (!entry.read(file.absoluteFilePath()))
            continue;
        items.append(LoginItem{file.absoluteFilePath(), entry.name(), entry.program(), entry.isEnabled()});
    }
    return items;
}

bool LoginItems::resolveItem(const LoginItem &item, QUrl *url, int *status)
{
    QString program = item.program;
    if (program.isEmpty()) {
        if (status)
            *status = ENOEXEC;
        return false;
    }
    if (!program.contains(u'/')) {
        program = QStandardPaths::findExecutable(program);
    } else {
        const QFileInfo info(program);
        program = info.exists() && !info.isDir() ? info.absoluteFilePath() : QString();
    }
    if (program.isEmpty()) {
        if (status)
            *status = ENOENT;
        return false;
    }
    const QString bundlePath = Bundle::bundlePathContainingPath(program);
    if (url)
        *url = QUrl::fromLocalFile(bundlePath.isEmpty() ? program : bundlePath);
    if (status)
        *status = 0;
    return true;
}

QString LoginItems::bundleIdentifierAtURL(const QUrl &url)
{
    return Bundle(url.toLocalFile()).bundleIdentifier();
}

QString LoginItems::bundleVersionAtURL(const QUrl &url)
{
    return Bundle(url.toLocalFile()).bundleVersion();
}

bool LoginItems::removeItem(const LoginItem &item, int *status)
{
    if (::unlink(QFile::encodeName(item.entryPath).constData()) == 0)
        return true;
    if (status)
        *status = errno;
    return false;
}

bool LoginItems::insertItemLast(const QUrl &bundleURL, LoginItem *inserted)
{
    const QString target = bundleURL.toLocalFile();
    const Bundle bundle(target);
    const QString program = bundle.isValid() ? bundle.executablePath() : target;
    if (program.isEmpty() || !QFileInfo(program).isFile())
        return false; // nothing there to start at log-in
    QString name = bundle.isValid() ? bundle.bundleName() : QString();
    if (name.isEmpty())
        name = QFileInfo(target).completeBaseName();
    const QString identifier = bundle.isValid() ? bundle.bundleIdentifier() : QString();

    QDir folder(mAutostartFolder);
    if (!folder.exists() && !QDir().mkpath(mAutostartFolder))
        return false;
    // The new entry must come last: newer than every entry already there.
    QDateTime newest = QDateTime::currentDateTimeUtc();
    for (const LoginItem &item : snapshot())
        newest = std::max(newest, QFileInfo(item.entryPath).lastModified().toUTC().addMSecs(1));

    AutostartEntry entry;
    entry.setName(name);
    entry.setProgram(program);
    const QString path = freshEntryPath(folder, identifier.isEmpty() ? name : identifier);
    if (!entry.write(path))
        return false;
    QFile written(path);
    if (written.open(QIODevice::ReadWrite))
        written.setFileTime(newest, QFileDevice::FileModificationTime);
    if (inserted)
        *inserted = LoginItem{path, entry.name(), entry.program(), entry.isEnabled()};
    return true;
}

QUrl LoginItems::standardizedURL(const QUrl &url)
{
    const QString path = QDir::cleanPath(QFileInfo(url.toLocalFile()).absoluteFilePath());
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return QUrl::fromLocalFile(canonical.isEmpty() ? path : canonical);
}

void LoginItems::addAgentToLoginItems(const QUrl &agentURL, const QString &runningBundleVersion)
{
    const QList<LoginItem> items = snapshot();
    for (const LoginItem &item : items) {
        QUrl url;
        int status = 0;
        if (!resolveItem(item, &url, &status) || url.isEmpty()) {
            logCouldNotResolve(item, status);
            if (item.displayName == agentDisplayName && !removeItem(item, &status))
                logCouldNotRemove(item, status);
            continue;
        }
        const QString identifier = bundleIdentifierAtURL(url);
        bool remove = false;
        if (identifier == kCorvexAgentDomain) {
            remove = true;
        } else if (identifier == kCorvexDomain) {
            // Only an older copy of the application goes; an equal or newer one stays.
            remove = QZSUStandardVersionComparator::defaultComparator().compareVersion(
                         runningBundleVersion, bundleVersionAtURL(url)) ==
                     QZSUStandardVersionComparator::OrderedDescending;
        }
        if (remove && !removeItem(item, &status))
            logCouldNotRemove(item, status);
    }
    if (!insertItemLast(agentURL))
        DDLogError(QStringLiteral("Item %1 could not be added to the login item list for an unknown reason.")
                       .arg(agentURL.toString()));
}

bool LoginItems::agentSwitchedOffByDesktop() const
{
    bool switchedOff = false;
    for (const LoginItem &item : snapshot()) {
        QUrl url;
        if (!resolveItem(item, &url) || url.isEmpty() || bundleIdentifierAtURL(url) != kCorvexAgentDomain)
            continue;
        if (item.enabled)
            return false;
        switchedOff = true;
    }
    return switchedOff;
}

void LoginItems::ensureAgentIsInLoginItems(const QUrl &agentURL, const QString &runningBundleVersion)
{
    if (agentSwitchedOffByDesktop()) {
        DDLogInfo(QStringLiteral("The agent's login item is switched off in the desktop; leaving it off."));
        return;
    }
    const QUrl wanted = standardizedURL(agentURL);
    bool found = false;
    for (const LoginItem &item : snapshot()) {
        QUrl url;
        if (!resolveItem(item, &url) || url.isEmpty())
            continue;
        if (item.enabled && bundleIdentifierAtURL(url) == kCorvexAgentDomain &&
            standardizedURL(url) == wanted) {
            found = true;
            break;
        }
    }
    if (found)
        return;
    DDLogInfo(QStringLiteral("Agent wasn't found in login items so we'll add it."));
    addAgentToLoginItems(agentURL, runningBundleVersion);
}

void LoginItems::removeAgentFromLoginItems()
{
    for (const LoginItem &item : snapshot()) {
        QUrl url;
        int status = 0;
        if (!resolveItem(item, &url, &status) || url.isEmpty()) {
            logCouldNotResolve(item, status);
            continue;
        }
        if (bundleIdentifierAtURL(url) != kCorvexAgentDomain)
            continue;
        if (!removeItem(item, &status))
            logCouldNotRemove(item, status);
        break;
    }
}
