// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>
#include <functional>

// Where the desktop's own screenshot tool saves, in which format and under which name: the values that stand
// in for the screenshot service's "location", "type" and "name" when that domain holds none.
//
//   GNOME      the translated "Screenshots" folder inside the Pictures folder of user-dirs.dirs, png,
//              "Screenshot" (the name's prefix in both "Screenshot From ..." and "Screenshot from ...")
//   Spectacle  the save location, image format and the literal start of the file-name template of spectaclerc
//   Flameshot  savePath, saveAsFileExtension and the literal start of filenamePattern of flameshot.ini
//
// The tool is chosen by XDG_CURRENT_DESKTOP, else by which of the tools' configuration files exists.
class DesktopScreenshotSettings
{
public:
    enum class Tool { None, Gnome, Spectacle, Flameshot };

    // What detection looks at.
    struct Environment
    {
        QString home;           // HOME
        QString configHome;     // XDG_CONFIG_HOME (HOME/.config when unset)
        QString currentDesktop; // XDG_CURRENT_DESKTOP
        // GNOME Shell's translation of one of its messages ("Screenshots", "Screenshot From %s"); the message
        // itself when there is none. Unset: no translation.
        std::function<QString(const char *message)> translate;

        // This process's environment, translating through GNOME Shell's installed message catalogue.
        static Environment fromProcess();
    };

    DesktopScreenshotSettings() = default;

    // Reads the configuration files the environment points at. Nothing else is consulted.
    static DesktopScreenshotSettings detect(const Environment &environment);

    // The settings of this process's environment; detected again only when one of the files changed.
    static DesktopScreenshotSettings current();

    Tool tool() const { return mTool; }
    // The save folder (absolute, without trailing slash); empty when unknown.
    const QString &location() const { return mLocation; }
    // The extension of new screenshots, lower case ("png"); empty when unknown.
    const QString &type() const { return mType; }
    // The base name new screenshots start with; empty when the tool's pattern starts with a date or counter.
    const QString &name() const { return mName; }

    // The value for the screenshot service's key "location", "type" or "name"; invalid when unknown.
    QVariant valueForKey(const QString &key) const;

    // The folder that holds nothing but screenshots: the save folder, unless it is the home folder or one of
    // the user's general folders (Desktop, Pictures, Documents, Downloads, ...). Empty when there is none.
    const QString &dedicatedFolder() const { return mDedicatedFolder; }

    // True when the folder is the dedicated screenshots folder.
    bool isDedicatedScreenshotFolder(const QString &folder) const;

private:
    Tool mTool = Tool::None;
    QString mLocation;
    QString mType;
    QString mName;
    QString mDedicatedFolder;
};
