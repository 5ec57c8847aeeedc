// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The delegate's outside interfaces: the screenshot on the command line, the "qzcv" URLs, the events of the
// D-Bus interface, and the strings that name the build and the system.

#include "AppDelegate.h"

#include "AppUserDefaults.h"
#include "DistributedNotificationCenter.h"
#include "FileAttributes.h"
#include "Notifications.h"
#include "UserDefaults.h"

#include <QSysInfo>

void AppDelegate::processCommandLineArguments()
{
    UserDefaults &defaults = UserDefaults::standardUserDefaults();
    const QString filePath = defaults.stringForKey(CorvexFilePathKey);
    const QString newFilePath = defaults.stringForKey(CorvexNewFilePathKey);
    const qint64 screenNumber = defaults.integerForKey(CorvexScreenNumberKey);
    const QString bookmarkKey = defaults.stringForKey(CorvexBookmarkDataKey);
    if (filePath.isNull() || screenNumber < 1)
        return;

    CorvexError error;
    const QVariantMap attributes = FileAttributes::attributesOfItemAtPath(filePath, &error);
    QVariantMap dictionary{{CorvexFilePathKey, filePath}, {CorvexScreenNumberKey, screenNumber}};
    if (!attributes.isEmpty())
        dictionary.insert(CorvexFileAttributesKey, attributes);
    if (!newFilePath.isNull())
        dictionary.insert(CorvexNewFilePathKey, newFilePath);
    if (!bookmarkKey.isNull()) {
        // A bookmark handed over this way is used once: its entry is cleared at once.
        AppUserDefaults &shared = AppUserDefaults::sharedCorvexDefaults();
        const QByteArray bookmark = shared.screenshotBookmarkDataForKey(bookmarkKey);
        if (!bookmark.isNull()) {
            dictionary.insert(CorvexBookmarkDataKey, bookmark);
            shared.setScreenshotBookmarkData(QByteArray(), bookmarkKey);
        }
    }
    DistributedNotificationCenter::defaultCenter().postNotificationName(CorvexScreenshotMatchedNotification,
                                                                        dictionary);
}

void AppDelegate::handleAboutEvent()
{
    perform(Action::About);
}

void AppDelegate::handlePreferencesEvent()
{
    perform(Action::Preferences);
}

void AppDelegate::handleCheckForUpdatesEvent()
{
    perform(Action::CheckForUpdates);
}

void AppDelegate::handleGetURLEvent(const QString &urlString)
{
    // The scheme is the text before the first colon, compared exactly ("QZCV:" is another scheme).
    const qsizetype colon = urlString.indexOf(u':');
    if (colon <= 0 || urlString.left(colon) != u"qzcv")
        return;
    handleCorvexURL(urlString);
}

void AppDelegate::handleCorvexURL(const QString &url)
{
    const QString specifier = url.mid(url.indexOf(u':') + 1);
    if (specifier == u"//about")
        perform(Action::About);
    else if (specifier == u"//prefs")
        perform(Action::Preferences);
    else if (specifier == u"//prefs/reset")
        perform(Action::ResetPreferences);
    else if (specifier == u"//feedback")
        perform(Action::SendFeedback);
    else if (specifier == u"//checkForUpdate")
        perform(Action::CheckForUpdates);
}

QString AppDelegate::appVersionString()
{
    return QStringLiteral("%1 (%2)").arg(QStringLiteral(CORVEX_MARKETING_VERSION),
                                         QStringLiteral(CORVEX_SOURCE_REVISION));
}

QString AppDelegate::osVersionString()
{
    return QStringLiteral("%1 (%2 %3)")
        .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion());
}
