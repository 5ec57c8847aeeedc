// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// The delegate's outside interfaces: the screenshot on the command line, the "qzcv" URLs, the events of the
// D-Bus interface, and the strings that name the build and the system.

#include "app/AppDelegate.h"

#include "app/URLDispatch.h"

#include "core/AppUserDefaults.h"
#include "core/UserDefaults.h"
#include "foundation/Notifications.h"
#include "foundation/Version.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/FileAttributes.h"

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
    if (URLDispatch::isCorvexURL(urlString))
        handleCorvexURL(urlString);
}

void AppDelegate::handleCorvexURL(const QString &url)
{
    // The command is named after the scheme's colon; only the text after it matters here.
    const QString specifier = url.mid(url.indexOf(u':') + 1);
    if (const std::optional<Action> action = URLDispatch::actionForURL(QStringLiteral("qzcv:") + specifier))
        perform(*action);
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
