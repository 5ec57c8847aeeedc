// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/ExtendedAttributes.h"

#include "agent/FileIdentity.h"

#include <QString>
#include <atomic>
#include <memory>

class ApplicationHandOff;
class DispatchQueue;
class ScreenshotInfo;

// Processes new screenshots one at a time, in order of arrival, on a thread of its own: makes the record of
// each, applies the automatic steps the preferences switch on (rename by pattern, convert, move, open) unless
// they are paused, then hands the screenshot to the application when its renaming window is wanted.
//
// A file is taken once: the files already taken, and the files the automatic steps made of them, are known by
// their identity, so that renames and conversions in the watched folder (the agent's own, and the
// application's, which CreatedFiles marks) never count as new screenshots. An
// empty file is not taken yet: its writer will close it again once it has written it.
class ScreenshotQueue
{
public:
    // Marks files that Corvex made (conversions, renamed copies): such a file is never a new screenshot.
    static inline const QString CreatedByCorvexAttribute = ExtendedAttributes::CreatedByCorvex;

    explicit ScreenshotQueue(ApplicationHandOff *handOff);
    ~ScreenshotQueue();

    // Queues the file for processing; returns at once. Ignored once finish() has been called.
    void enqueue(const QString &path);

    // Paused: the automatic steps are skipped (screenshots are still handed to the application when its
    // window is wanted).
    void setPaused(bool paused) { mPaused = paused; }
    bool isPaused() const { return mPaused; }

    // Finishes the screenshot in hand and leaves the waiting ones as they are (each logged); returns when
    // the queue has come to rest. Nothing is processed afterwards.
    void finish();

    // Returns once every screenshot queued before the call has been processed.
    void waitUntilIdle();

    // How many screenshots have been taken so far.
    int takenCount() const { return mTakenCount; }

private:
    void process(const QString &path);
    QString applyAutomaticSteps(const ScreenshotInfo &info);

    ApplicationHandOff *mHandOff;
    std::unique_ptr<DispatchQueue> mQueue;
    RecentFileIdentities mTaken; // used on the queue only
    std::atomic_bool mPaused{false};
    std::atomic_bool mFinishing{false};
    std::atomic_int mTakenCount{0};
};
