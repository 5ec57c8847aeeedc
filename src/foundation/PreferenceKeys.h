// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

// Every preference domain and preference key of Corvex, spelled once. Code reads and writes settings only
// through these names; a key's constant is named after the key itself.

// Preference domains (each is one $XDG_CONFIG_HOME/corvex/<domain>.plist).
inline const QString kCorvexDomain = QStringLiteral("com.ostrel.Corvex"); // shared by app, agent, CLI
inline const QString kCorvexAgentDomain = QStringLiteral("com.ostrel.CorvexAgent"); // the agent's own
inline const QString kScreencaptureDomain =
    QStringLiteral("com.apple.screencapture"); // the screenshot service

// Keys of the Corvex domain, with their factory defaults where they have one.
inline const QString kFirstRunVers2Key = QStringLiteral("firstRunVers2");                   // bool, true
inline const QString kHasAskedToStartAtLogInKey = QStringLiteral("hasAskedToStartAtLogIn"); // bool, false
inline const QString kStartAtLogInKey = QStringLiteral("startAtLogIn");                     // bool, true
inline const QString kAllowAgentToRunInBackgroundKey =
    QStringLiteral("allowAgentToRunInBackground");                                      // bool, true
inline const QString kShowMenuIconKey = QStringLiteral("showMenuIcon");                 // bool, true
inline const QString kGrayscaleMenuIconKey = QStringLiteral("grayscaleMenuIcon");       // bool, false
inline const QString kUseLenientTimeParserKey = QStringLiteral("useLenientTimeParser"); // bool, false
inline const QString kUseLastDirectoryAndExtensionValuesKey =
    QStringLiteral("useLastDirectoryAndExtensionValues"); // bool, false
inline const QString kQuitAppAfterLastWindowClosedKey =
    QStringLiteral("quitAppAfterLastWindowClosed");                                       // bool, true
inline const QString kHideExtensionKey = QStringLiteral("hideExtension");                 // bool, true
inline const QString kAutoRenameKey = QStringLiteral("autoRename");                       // bool, false
inline const QString kAutoRenameFormatKey = QStringLiteral("autoRenameFormat");           // string, none
inline const QString kAutoRenameCountKey = QStringLiteral("autoRenameCount");             // integer, 0
inline const QString kAutoReformatKey = QStringLiteral("autoReformat");                   // bool, false
inline const QString kAutoReformatExtensionKey = QStringLiteral("autoReformatExtension"); // string, "jpg"
inline const QString kAutoMoveKey = QStringLiteral("autoMove");                           // bool, false
inline const QString kAutoMoveFolderKey = QStringLiteral("autoMoveFolder");               // string, none
inline const QString kOpenWithKey = QStringLiteral("openWith");                           // bool, false
inline const QString kOpenWithBundleIdentifierKey = QStringLiteral("openWithBundleIdentifier"); // string
inline const QString kShowCorvexWindowKey = QStringLiteral("showCorvexWindow");                 // bool, true
inline const QString kCheckForUpdatesKey = QStringLiteral("checkForUpdates");                   // bool, none
inline const QString kLogFontNameKey = QStringLiteral("logFontName");             // string, "Monaco"
inline const QString kLogFontSizeKey = QStringLiteral("logFontSize");             // integer, 9
inline const QString kLastSaveDirectoryKey = QStringLiteral("lastSaveDirectory"); // string, none
inline const QString kLastFileFormatExtensionKey = QStringLiteral("lastFileFormatExtension"); // string, none
inline const QString kFavoriteFolderBookmarksKey = QStringLiteral("favoriteFolderBookmarks"); // array of data
inline const QString kScreenshotBookmarksKey = QStringLiteral("screenshotBookmarks"); // string -> data
inline const QString kMoveToApplicationsFolderAlertSuppressKey =
    QStringLiteral("moveToApplicationsFolderAlertSuppress"); // bool, none

// The updater's own keys: never read by Corvex, removed by "Reset Preferences".
inline const QString kSUEnableAutomaticChecksKey = QStringLiteral("SUEnableAutomaticChecks");
inline const QString kSUEnableSystemProfilingKey = QStringLiteral("SUEnableSystemProfiling");
inline const QString kSUHasLaunchedBeforeKey = QStringLiteral("SUHasLaunchedBefore");
inline const QString kSUSendProfileInfoKey = QStringLiteral("SUSendProfileInfo");
// More of the updater's keys: the feed (overrides Info.plist's), the check interval in seconds, the time of
// the last check and the version the user chose to skip.
inline const QString kSUFeedURLKey = QStringLiteral("SUFeedURL");
inline const QString kSUScheduledCheckIntervalKey = QStringLiteral("SUScheduledCheckInterval");
inline const QString kSULastCheckTimeKey = QStringLiteral("SULastCheckTime");
inline const QString kSUSkippedVersionKey = QStringLiteral("SUSkippedVersion");

// Keys of the screenshot service's domain (read only).
inline const QString kScreencaptureLocationKey = QStringLiteral("location"); // folder of new screenshots
inline const QString kScreencaptureTypeKey = QStringLiteral("type");         // extension of new screenshots
inline const QString kScreencaptureNameKey = QStringLiteral("name");         // base name of new screenshots

// The keys whose change the application forwards to the agent, in the order they are observed.
inline const QStringList kObservedPreferenceKeys{
    kStartAtLogInKey,     kShowMenuIconKey,    kCheckForUpdatesKey, kAutoRenameKey,
    kAutoRenameFormatKey, kAutoRenameCountKey, kAutoReformatKey,    kAutoReformatExtensionKey,
    kAutoMoveKey,         kAutoMoveFolderKey,  kOpenWithKey,        kOpenWithBundleIdentifierKey,
    kShowCorvexWindowKey,
};

// The updater's keys, in the order "Reset Preferences" removes them.
inline const QStringList kUpdaterPreferenceKeys{kSUEnableAutomaticChecksKey, kSUEnableSystemProfilingKey,
                                                kSUHasLaunchedBeforeKey, kSUSendProfileInfoKey};
