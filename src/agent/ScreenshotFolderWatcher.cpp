// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/ScreenshotFolderWatcher.h"
#include "watching/Inotify.h"

#include "logging/Log.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>

namespace {

constexpr uint32_t folderMask = IN_CLOSE_WRITE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
constexpr uint32_t ancestorMask = IN_CREATE | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

QString errnoText(int error)
{
    return QString::fromLocal8Bit(std::strerror(error));
}

} // namespace

ScreenshotFolderWatcher::ScreenshotFolderWatcher(QObject *parent) : QObject(parent) {}

ScreenshotFolderWatcher::~ScreenshotFolderWatcher()
{
    stop();
}

bool ScreenshotFolderWatcher::ensureInotify()
{
    if (mInotify)
        return true;
    auto inotify = std::make_unique<Inotify>([this] { readEvents(); });
    if (!inotify->isValid()) {
        DDLogError(QStringLiteral("Could not watch the screenshot folder: inotify is not available.  %1")
                       .arg(errnoText(inotify->error())));
        return false;
    }
    mInotify = std::move(inotify);
    return true;
}

bool ScreenshotFolderWatcher::setFolder(const QString &folder)
{
    const QString cleaned = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    if (cleaned == mFolder && mInotify)
        return true;
    if (!ensureInotify())
        return false;
    removeWatches();
    mMissingSince = QDateTime();
    mFolder = cleaned;
    watchFolderOrAncestor();
    return true;
}

void ScreenshotFolderWatcher::stop()
{
    removeWatches();
    mInotify.reset();
}

void ScreenshotFolderWatcher::removeWatches()
{
    const bool wasWatching = mFolderWatch >= 0;
    if (mInotify) {
        mInotify->removeWatch(mFolderWatch);
        mInotify->removeWatch(mAncestorWatch);
    }
    mFolderWatch = -1;
    mAncestorWatch = -1;
    mAncestor.clear();
    if (wasWatching)
        Q_EMIT folderWatchChanged(false);
}

void ScreenshotFolderWatcher::watchFolderOrAncestor()
{
    if (mFolder.isEmpty() || !mInotify)
        return;
    const int folderWatch = mInotify->addWatch(mFolder, folderMask);
    if (folderWatch >= 0) {
        if (mAncestorWatch != folderWatch)
            mInotify->removeWatch(mAncestorWatch);
        mAncestorWatch = -1;
        mAncestor.clear();
        const bool changed = mFolderWatch < 0;
        mFolderWatch = folderWatch;
        if (changed) {
            DDLogInfo(QStringLiteral("Watching the screenshot folder %1").arg(mFolder));
            Q_EMIT folderWatchChanged(true);
            if (mMissingSince.isValid())
                reportFilesSince(std::exchange(mMissingSince, QDateTime()));
        }
        return;
    }
    const int error = errno;
    if (error != ENOENT && error != ENOTDIR) {
        DDLogError(
            QStringLiteral("Could not watch the screenshot folder %1.  %2").arg(mFolder, errnoText(error)));
        return;
    }
    // Wait for the folder: watch the nearest ancestor that exists.
    if (!mMissingSince.isValid())
        mMissingSince = QDateTime::currentDateTimeUtc();
    QString ancestor = QFileInfo(mFolder).absolutePath();
    while (!QFileInfo(ancestor).isDir() && ancestor != QLatin1String("/"))
        ancestor = QFileInfo(ancestor).absolutePath();
    if (ancestor == mAncestor && mAncestorWatch >= 0)
        return;
    mInotify->removeWatch(mAncestorWatch);
    mAncestorWatch = mInotify->addWatch(ancestor, ancestorMask);
    mAncestor = mAncestorWatch >= 0 ? ancestor : QString();
    if (mAncestorWatch < 0)
        DDLogError(QStringLiteral("Could not wait for the screenshot folder %1 to appear.  %2")
                       .arg(mFolder, errnoText(errno)));
    else
        DDLogInfo(
            QStringLiteral("The screenshot folder %1 does not exist; waiting for it to appear").arg(mFolder));
    // The folder may have appeared between the two calls.
    if (QFileInfo(mFolder).isDir())
        watchFolderOrAncestor();
}

void ScreenshotFolderWatcher::readEvents()
{
    bool rewatch = false;
    bool folderGone = false;
    mInotify->readAll([&](const inotify_event &event) {
        if (event.mask & IN_Q_OVERFLOW) {
            DDLogWarn(QStringLiteral("Too many changes in the screenshot folder at once: some were missed"));
            return;
        }
        if (event.wd == mFolderWatch && mFolderWatch >= 0) {
            if (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED)) {
                rewatch = true;
                folderGone = true;
                return;
            }
            if ((event.mask & (IN_CLOSE_WRITE | IN_MOVED_TO)) && !(event.mask & IN_ISDIR) && event.len > 0)
                Q_EMIT fileCompleted(mFolder + u'/' + QFile::decodeName(event.name));
        } else if (event.wd == mAncestorWatch && mAncestorWatch >= 0) {
            rewatch = true;
        }
    });
    if (!rewatch)
        return;
    if (folderGone && mFolderWatch >= 0) {
        // The watched folder was deleted or moved away (another may already stand in its place).
        mInotify->removeWatch(mFolderWatch);
        mFolderWatch = -1;
        mMissingSince = QDateTime::currentDateTimeUtc();
        DDLogInfo(QStringLiteral("The screenshot folder %1 went away").arg(mFolder));
        Q_EMIT folderWatchChanged(false);
    }
    if (mFolderWatch < 0)
        watchFolderOrAncestor();
}

void ScreenshotFolderWatcher::reportFilesSince(const QDateTime &since)
{
    // Files written into a folder that appeared a moment ago, before it could be watched.
    const QFileInfoList files = QDir(mFolder).entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo &file : files) {
        if (file.lastModified().toUTC() >= since.addSecs(-1))
            Q_EMIT fileCompleted(file.absoluteFilePath());
    }
}
