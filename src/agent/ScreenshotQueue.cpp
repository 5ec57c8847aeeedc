// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/ScreenshotQueue.h"

#include "agent/ApplicationHandOff.h"
#include "core/AutomaticSteps.h"
#include "core/Processor.h"
#include "core/ScreenshotInfo.h"
#include "foundation/DispatchQueue.h"
#include "logging/Log.h"
#include "platform/CreatedFiles.h"

#include <QFileInfo>

namespace {

// Screenshots are taken on the screen Corvex cannot know here: the first one.
constexpr qint64 screenNumber = 1;

} // namespace

ScreenshotQueue::ScreenshotQueue(ApplicationHandOff *handOff)
    : mHandOff(handOff),
      mQueue(std::make_unique<DispatchQueue>(QStringLiteral("com.ostrel.CorvexAgent.screenshots")))
{
}

ScreenshotQueue::~ScreenshotQueue()
{
    finish();
}

void ScreenshotQueue::enqueue(const QString &path)
{
    if (mFinishing)
        return;
    mQueue->async([this, path] { process(path); });
}

void ScreenshotQueue::finish()
{
    if (mFinishing.exchange(true))
        return;
    mQueue->sync([] {});
}

void ScreenshotQueue::waitUntilIdle()
{
    mQueue->sync([] {});
}

void ScreenshotQueue::process(const QString &path)
{
    if (mFinishing) {
        DDLogInfo(QStringLiteral("Left %1 as it is: the agent is quitting").arg(path));
        return;
    }
    const std::optional<FileIdentity> identity = FileIdentity::ofPath(path);
    if (!identity)
        return; // gone before its turn (renamed or deleted)
    if (mTaken.contains(*identity))
        return; // taken before, under this or another name
    const QFileInfo file(path);
    if (!file.isFile() || file.size() == 0)
        return; // not written yet: its writer will close it again
    mTaken.insert(*identity);
    if (CreatedFiles().wasCreated(path))
        return;
    ++mTakenCount;

    DDLogInfo(QStringLiteral("New screenshot: %1").arg(path));
    const ScreenshotInfo info(path, screenNumber);
    Processor &processor = Processor::sharedProcessor();
    QString finalPath = path;
    if (processor.needsAutomaticProcessing()) {
        if (mPaused)
            DDLogInfo(QStringLiteral("Automatic steps are paused: %1 is left as it is").arg(path));
        else
            finalPath = applyAutomaticSteps(info);
        if (const std::optional<FileIdentity> made = FileIdentity::ofPath(finalPath))
            mTaken.insert(*made);
    }
    if (!processor.shouldShowCorvexWindow())
        return;
    if (finalPath == path)
        mHandOff->handOffScreenshot(info);
    else
        mHandOff->handOffScreenshot(ScreenshotInfo(finalPath, screenNumber));
}

QString ScreenshotQueue::applyAutomaticSteps(const ScreenshotInfo &info)
{
    ScreenshotInfo processed = info;
    const AutomaticStepsReport report = AutomaticSteps::applyToScreenshotInfo(processed);
    if (!report.failedSteps.isEmpty())
        DDLogWarn(QStringLiteral("Automatic steps that failed for %1: %2")
                      .arg(info.filePath(), report.failedSteps.join(QStringLiteral(", "))));
    return report.filePath.isNull() ? info.filePath() : report.filePath;
}
