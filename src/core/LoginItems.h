// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/PreferenceKeys.h"
#include <QList>
#include <QString>
#include <QUrl>

// One login item: an autostart entry of the user's autostart folder.
struct LoginItem
{
    QString entryPath;   // the desktop entry file
    QString displayName; // its "Name"
    QString program;     // the program its "Exec" line starts (may be a bare command name)
    bool enabled = true; // the desktop runs it (not hidden, not switched off)
};

// The user's login items: the XDG autostart entries in `$XDG_CONFIG_HOME/autostart` (or another folder, for
// tests). The list is ordered by the entries' modification times (oldest first, then by file name), so an
// item added last is the last of the list. An item resolves to the bundle its program lies in; its bundle
// identifier and "CFBundleVersion" are that bundle's.
//
// The three operations that keep the agent a login item report every failure to the log and go on:
// addAgentToLoginItems removes every agent entry (and older copies of the application) before appending a
// fresh one; removeAgentFromLoginItems removes only the first agent entry.
class LoginItems
{
public:
    // The autostart folder of the user: `$XDG_CONFIG_HOME/autostart`, `~/.config/autostart` without it.
    static QString defaultAutostartFolder();

    explicit LoginItems(const QString &autostartFolder = defaultAutostartFolder());

    QString autostartFolder() const { return mAutostartFolder; }

    // The items as they are now, in list order. Files that are not desktop entries are not items.
    QList<LoginItem> snapshot() const;

    // Resolves an item to the URL of the bundle its program lies in (or of the program itself when it lies
    // in none). Returns false and sets *status to an errno value when the program cannot be found.
    static bool resolveItem(const LoginItem &item, QUrl *url, int *status = nullptr);

    // The bundle identifier and "CFBundleVersion" of the bundle at a resolved URL; null strings when it is
    // not a bundle.
    static QString bundleIdentifierAtURL(const QUrl &url);
    static QString bundleVersionAtURL(const QUrl &url);

    // Removes an item's entry. Returns false and sets *status to an errno value when it cannot.
    bool removeItem(const LoginItem &item, int *status = nullptr);

    // Appends an entry that starts the bundle at the URL (its executable), named after the bundle. Returns
    // false when there is nothing to start at the URL or no entry could be written.
    bool insertItemLast(const QUrl &bundleURL, LoginItem *inserted = nullptr);

    // Removes every agent entry, unresolvable entries named "CorvexAgent", and application entries whose
    // "CFBundleVersion" is older than the running one; then appends the agent at the URL.
    void addAgentToLoginItems(const QUrl &agentURL, const QString &runningBundleVersion);

    // Whether the user switched the agent off in the desktop's autostart settings: there are agent entries
    // and the desktop runs none of them ("Hidden=true", "X-GNOME-Autostart-enabled=false"). That is their
    // "no" to starting at login.
    bool agentSwitchedOffByDesktop() const;

    // Adds the agent (as above) unless an enabled entry already starts the agent at exactly this URL, or the
    // desktop switched the agent off (never re-enabled behind the user's back).
    void ensureAgentIsInLoginItems(const QUrl &agentURL, const QString &runningBundleVersion);

    // Removes the first agent entry only.
    void removeAgentFromLoginItems();

    // The form two bundle URLs are compared in: an absolute, clean path with symbolic links resolved where
    // the item exists.
    static QUrl standardizedURL(const QUrl &url);

private:
    QString mAutostartFolder;
};
