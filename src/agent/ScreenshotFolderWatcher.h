// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>
#include <memory>

class Inotify;

// Tells when a file in the screenshot folder is complete: written and closed, or moved in whole. Built on
// inotify and the event loop, so it costs nothing while nothing happens (no polling, no timer).
//
// A folder that does not exist yet is waited for: its nearest existing ancestor is watched until the folder
// appears, and a folder that is deleted or moved away is waited for again in the same way. Files written into
// such a folder between its appearance and the start of the watch are reported once it is watched.
class ScreenshotFolderWatcher : public QObject
{
    Q_OBJECT

public:
    explicit ScreenshotFolderWatcher(QObject *parent = nullptr);
    ~ScreenshotFolderWatcher() override;

    // Watches this folder from now on, instead of the previous one. Returns false when inotify is not
    // available (the reason is logged); a missing folder is not a failure.
    bool setFolder(const QString &folder);
    QString folder() const { return mFolder; }

    // Whether the folder itself is being watched (false while it is missing).
    bool isWatchingFolder() const { return mFolderWatch >= 0; }

    // Stops watching; no signal is emitted afterwards.
    void stop();

Q_SIGNALS:
    // A file of the folder was closed after writing, or moved into the folder. The path is absolute.
    void fileCompleted(const QString &path);
    // The folder started or stopped being watched (it appeared or went away).
    void folderWatchChanged(bool watching);

private:
    void readEvents();
    void watchFolderOrAncestor();
    void removeWatches();
    bool ensureInotify();
    void reportFilesSince(const QDateTime &since);

    QString mFolder;
    std::unique_ptr<Inotify> mInotify;
    int mFolderWatch = -1;
    int mAncestorWatch = -1;
    QString mAncestor;
    QDateTime mMissingSince; // when the folder was found missing; invalid while it is watched
};
