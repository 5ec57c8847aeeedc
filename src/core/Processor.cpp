// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The Processor's decisions, opening a file with another application, and automatic names.
#include "Processor.h"

#include "AppUserDefaults.h"
#include "DesktopApplications.h"
#include "FileFormat.h"
#include "Log.h"
#include "RenamePattern.h"
#include "ScreenshotInfo.h"

#include <QSet>
#include <limits>

namespace {

const QString AutoRenameKey = QStringLiteral("autoRename");
const QString AutoRenameFormatKey = QStringLiteral("autoRenameFormat");
const QString AutoRenameCountKey = QStringLiteral("autoRenameCount");
const QString AutoReformatKey = QStringLiteral("autoReformat");
const QString AutoMoveKey = QStringLiteral("autoMove");
const QString OpenWithKey = QStringLiteral("openWith");
const QString OpenWithBundleIdentifierKey = QStringLiteral("openWithBundleIdentifier");
const QString ShowCorvexWindowKey = QStringLiteral("showCorvexWindow");

// The applications for which the agent never performs the opening step itself: Corvex and TextEdit. Exactly
// these two, on purpose.
const QSet<QString> &identifiersNotOpenedByTheAgent()
{
    static const QSet<QString> identifiers{QStringLiteral("com.ostrel.Corvex"),
                                           QStringLiteral("com.apple.TextEdit")};
    return identifiers;
}

AppUserDefaults &defaults()
{
    return AppUserDefaults::sharedCorvexDefaults();
}

// Reads the counter, advances it (a stored value below 0 restarts at 1), stores and synchronises at once.
qint64 nextAutoRenameCount()
{
    AppUserDefaults &store = defaults();
    store.synchronize();
    const qint64 stored = store.integerForKey(AutoRenameCountKey);
    qint64 next = stored == std::numeric_limits<qint64>::max() ? stored : stored + 1;
    if (next < 1)
        next = 1;
    store.setInteger(next, AutoRenameCountKey);
    store.synchronize();
    return next;
}

} // namespace

Processor::Processor() = default;

Processor &Processor::sharedProcessor()
{
    // A function-local static is made exactly once, also when first asked from two threads at once.
    static Processor processor;
    return processor;
}

void Processor::processScreenshotInfo(const ScreenshotInfo &info)
{
    // Automatic processing runs in the agent (AutomaticSteps); the application only shows the window.
    Q_UNUSED(info);
}

bool Processor::needsAutomaticProcessing()
{
    AppUserDefaults &store = defaults();
    // Another process may just have changed a switch.
    store.synchronize();
    if (store.boolForKey(AutoRenameKey) || store.boolForKey(AutoReformatKey) || store.boolForKey(AutoMoveKey))
        return true;
    return agentHandlesOpenWith();
}

bool Processor::shouldShowCorvexWindow()
{
    AppUserDefaults &store = defaults();
    if (store.boolForKey(ShowCorvexWindowKey))
        return true;
    for (const QString &key : {AutoRenameKey, AutoReformatKey, AutoMoveKey, OpenWithKey}) {
        if (store.boolForKey(key))
            return false;
    }
    DDLogInfo(QStringLiteral("Will present screenshot in Corvex window because no other options are on"));
    return true;
}

bool Processor::appHandlesOpenWith()
{
    return defaults().boolForKey(OpenWithKey) && defaults().boolForKey(ShowCorvexWindowKey);
}

bool Processor::agentHandlesOpenWith()
{
    AppUserDefaults &store = defaults();
    if (!store.boolForKey(OpenWithKey) || store.boolForKey(ShowCorvexWindowKey))
        return false;
    // An absent identifier is not in the set.
    const QString identifier = store.stringForKey(OpenWithBundleIdentifierKey);
    return identifier.isNull() || !identifiersNotOpenedByTheAgent().contains(identifier);
}

bool Processor::openURL(const QUrl &url, const QString &bundleIdentifier)
{
    QString reason;
    if (url.isLocalFile() && DesktopApplications::openFile(url.toLocalFile(), bundleIdentifier, &reason)) {
        DDLogInfo(QStringLiteral("Opened %1 with app identifier %2").arg(url.path(), bundleIdentifier));
        return true;
    }
    DDLogError(QStringLiteral("Could not find app for %1 or launch it with the file").arg(bundleIdentifier));
    return false;
}

QString Processor::fileNameByAutomaticRenamingFromInfo(const ScreenshotInfo &info,
                                                       const FileFormat *fileFormat)
{
    const QUrl url = QUrl::fromLocalFile(info.filePath());
    // Without a creation date the modification date stands in, and without either the current time.
    const QDateTime date = RenamePattern::dateFromFileAttributes(info.fileAttributes());
    const bool isPDF = fileFormat && fileFormat->uti() == FileFormat::PDFType;

    RenamePattern::Sources sources;
    sources.nextCounterValue = &nextAutoRenameCount;
    sources.dimensions = [this, &url, isPDF] { return imageDimensionsOfURL(url, isPDF); };
    return RenamePattern::fileName(defaults().stringForKey(AutoRenameFormatKey), date, sources);
}
