// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/ScreenshotLocation.h"
#include "foundation/PreferenceKeys.h"
#include "watching/Inotify.h"

#include "core/AppUserDefaults.h"
#include "logging/Log.h"
#include "platform/DesktopScreenshotSettings.h"
#include "platform/HomeFolder.h"
#include "platform/PreferenceStore.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

// The configuration files (by name) whose change can move the screenshot folder or rename screenshots.
const QStringList &relevantNames()
{
    static const QStringList names{
        QStringLiteral("user-dirs.dirs"), QStringLiteral("spectaclerc"),
        QStringLiteral("flameshot.ini"),  QStringLiteral("flameshot"),
        QStringLiteral("corvex"),         kScreencaptureDomain + QStringLiteral(".plist")};
    return names;
}

} // namespace

ScreenshotLocation::ScreenshotLocation(QObject *parent) : QObject(parent) {}

ScreenshotLocation::~ScreenshotLocation() = default;

ScreenshotMatcher ScreenshotLocation::readSettings()
{
    AppUserDefaults &screencapture = AppUserDefaults::sharedScreencaptureDefaults();
    screencapture.synchronize();
    QString folder = expandTildeInPath(screencapture.stringForKey(kScreencaptureLocationKey).trimmed());
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    const DesktopScreenshotSettings desktop = DesktopScreenshotSettings::current();
    QString name = screencapture.stringForKey(kScreencaptureNameKey);
    if (name.isNull()) {
        // A tool that names by date alone has no name: every image of its folder is a screenshot. Without any
        // known tool, the usual name of screenshots is looked for.
        name = desktop.tool() == DesktopScreenshotSettings::Tool::None ? QStringLiteral("Screenshot")
                                                                       : desktop.name();
    }
    const bool dedicated = desktop.isDedicatedScreenshotFolder(folder);
    return ScreenshotMatcher(folder, name, dedicated);
}

void ScreenshotLocation::start()
{
    mMatcher = readSettings();
    watchConfiguration();
}

void ScreenshotLocation::reload()
{
    const ScreenshotMatcher fresh = readSettings();
    if (fresh == mMatcher)
        return;
    mMatcher = fresh;
    DDLogInfo(QStringLiteral("Screenshot folder is now %1 (%2)")
                  .arg(mMatcher.folder(),
                       mMatcher.isDedicated()
                           ? QStringLiteral("dedicated to screenshots")
                           : QStringLiteral("names starting with \"%1\"").arg(mMatcher.namePrefix())));
    Q_EMIT changed(mMatcher);
}

void ScreenshotLocation::watchConfiguration()
{
    if (!mInotify) {
        mInotify = std::make_unique<Inotify>([this] { readEvents(); });
        if (!mInotify->isValid())
            DDLogWarn(QStringLiteral(
                "Changes of the desktop's screenshot settings are not followed: inotify is not "
                "available"));
    }
    if (!mInotify->isValid())
        return;
    const QString configHome = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    const QStringList folders{configHome, configHome + QStringLiteral("/flameshot"),
                              PreferenceStore::defaultDirectory()};
    constexpr uint32_t mask =
        IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_CREATE | IN_DELETE | IN_ONLYDIR;
    for (const QString &folder : folders) {
        // Adding a watch again only refreshes it; a missing folder is added once it appears.
        if (mInotify->addWatch(folder, mask) >= 0 && !mWatchedFolders.contains(folder))
            mWatchedFolders.append(folder);
    }
}

void ScreenshotLocation::readEvents()
{
    bool relevant = false;
    bool folderAppeared = false;
    mInotify->readAll([&](const inotify_event &event) {
        if (event.mask & IN_Q_OVERFLOW) {
            relevant = true;
            return;
        }
        if (event.len == 0 || !relevantNames().contains(QFile::decodeName(event.name)))
            return;
        relevant = true;
        folderAppeared = folderAppeared || (event.mask & IN_ISDIR);
    });
    if (folderAppeared)
        watchConfiguration();
    if (relevant)
        reload();
}
