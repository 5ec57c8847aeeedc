// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The Processor's decisions, opening a file with another application, and automatic names.
#include "core/Processor.h"
#include "foundation/PreferenceKeys.h"

#include "core/AppUserDefaults.h"
#include "core/FileFormat.h"
#include "core/RenamePattern.h"
#include "core/ScreenshotInfo.h"
#include "logging/Log.h"
#include "platform/DesktopApplications.h"

#include <QSet>
#include <limits>

namespace {

// The applications for which the agent never performs the opening step itself: Corvex and TextEdit. Exactly
// these two, on purpose.
const QSet<QString> &identifiersNotOpenedByTheAgent()
{
    static const QSet<QString> identifiers{kCorvexDomain, QStringLiteral("com.apple.TextEdit")};
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
    const qint64 stored = store.integerForKey(kAutoRenameCountKey);
    qint64 next = stored == std::numeric_limits<qint64>::max() ? stored : stored + 1;
    if (next < 1)
        next = 1;
    store.setInteger(next, kAutoRenameCountKey);
    store.synchronize();
    return next;
}

} // namespace

Processor::Processor() : Processor(DropboxCheck()) {}

Processor::Processor(DropboxCheck dropboxCheck) : mDropboxCheck(std::move(dropboxCheck)) {}

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
    if (store.boolForKey(kAutoRenameKey) || store.boolForKey(kAutoReformatKey) ||
        store.boolForKey(kAutoMoveKey))
        return true;
    return agentHandlesOpenWith();
}

bool Processor::shouldShowCorvexWindow()
{
    AppUserDefaults &store = defaults();
    if (store.boolForKey(kShowCorvexWindowKey))
        return true;
    for (const QString &key : {kAutoRenameKey, kAutoReformatKey, kAutoMoveKey, kOpenWithKey}) {
        if (store.boolForKey(key))
            return false;
    }
    DDLogInfo(QStringLiteral("Will present screenshot in Corvex window because no other options are on"));
    return true;
}

bool Processor::appHandlesOpenWith()
{
    return defaults().boolForKey(kOpenWithKey) && defaults().boolForKey(kShowCorvexWindowKey);
}

bool Processor::agentHandlesOpenWith()
{
    AppUserDefaults &store = defaults();
    if (!store.boolForKey(kOpenWithKey) || store.boolForKey(kShowCorvexWindowKey))
        return false;
    // An absent identifier is not in the set.
    const QString identifier = store.stringForKey(kOpenWithBundleIdentifierKey);
    return identifier.isNull() ||
           !identifiersNotOpenedByTheAgent().contains(DesktopApplications::platformIdentifier(identifier));
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
    return RenamePattern::fileName(defaults().stringForKey(kAutoRenameFormatKey), date, sources);
}
