// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Which files of the screenshot folder are screenshots: files directly in the folder, not hidden, whose
// extension is one of the six image formats, and either the folder holds nothing but screenshots (a dedicated
// folder) or the name starts with the screenshot name (compared without regard to case; an empty screenshot
// name, as a tool that names files by date alone has, lets every image through).
class ScreenshotMatcher
{
public:
    ScreenshotMatcher() = default;
    ScreenshotMatcher(const QString &folder, const QString &namePrefix, bool dedicated);

    // The absolute, clean folder path; empty when there is no screenshot folder.
    const QString &folder() const { return mFolder; }
    const QString &namePrefix() const { return mNamePrefix; }
    bool isDedicated() const { return mDedicated; }

    // Whether the file at the path is to be taken for a screenshot by its place and name.
    bool matches(const QString &path) const;

    // Whether the extension (without dot, any case) is one of the image formats.
    static bool isImageExtension(const QString &extension);

    bool operator==(const ScreenshotMatcher &other) const;
    bool operator!=(const ScreenshotMatcher &other) const { return !(*this == other); }

private:
    QString mFolder;
    QString mNamePrefix;
    bool mDedicated = false;
};
