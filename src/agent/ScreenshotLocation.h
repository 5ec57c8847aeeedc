// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "agent/ScreenshotMatcher.h"

#include <QObject>
#include <QStringList>
#include <memory>

class Inotify;

// Where new screenshots arrive and how they are named: "location" and "name" of the screenshot service's
// domain, which fall back to the desktop's own screenshot tool, and whether that folder is a dedicated
// screenshots folder. Follows changes: reload() is called when the application reports changed preferences,
// and the configuration files the answer depends on are watched (inotify, no polling).
class ScreenshotLocation : public QObject
{
    Q_OBJECT

public:
    explicit ScreenshotLocation(QObject *parent = nullptr);
    ~ScreenshotLocation() override;

    // Reads the settings and starts watching the configuration files.
    void start();

    // The settings as last read.
    const ScreenshotMatcher &matcher() const { return mMatcher; }

    // Reads the settings again; emits changed() when they differ.
    void reload();

    // The settings as they are stored now: the folder (a leading "~" standing for the home folder), the
    // name, dedicated or not. Without any folder setting: the desktop folder.
    static ScreenshotMatcher readSettings();

Q_SIGNALS:
    void changed(const ScreenshotMatcher &matcher);

private:
    void watchConfiguration();
    void readEvents();

    ScreenshotMatcher mMatcher;
    std::unique_ptr<Inotify> mInotify;
    QStringList mWatchedFolders;
};
