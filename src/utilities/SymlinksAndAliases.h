// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <optional>

// Turning paths into paths free of symbolic links, component by component. Alias files (the other desktop
// platform's link files) do not exist here: the alias steps find none, and only symbolic links are resolved.
// No operation reports an error; a failure gives nothing.

// The whole path resolved component by component: after standardising it (stringByStandardizingPath()), each
// component in turn is appended to the resolved prefix and the result resolved iteratively. Nothing when the
// path is not absolute (after "~" expansion) or any component cannot be resolved (a missing component, an
// unreadable link, or a chain of more than 40 links, the kernel's own limit). "/" gives "/".
std::optional<QString> mg_stringByResolvingSymlinksAndAliases(const QString &path);

// The path's last component resolved again and again until it is neither a symbolic link nor an alias file.
// A directory or any other entry that is not a link ends the chase. Nothing when an entry on the way does not
// exist or a link cannot be read, and after 40 links in a row (a cycle of links).
std::optional<QString> mg_stringByIterativelyResolvingSymlinkOrAlias(const QString &path);

// The alias file's target; the path unchanged when it is not an alias file (always, here).
QString mg_stringByResolvingAlias(const QString &path);

// The symbolic link's target; the path unchanged when it is not a readable symbolic link.
QString mg_stringByResolvingSymlink(const QString &path);

// The symbolic link's target: an absolute target as it stands, a relative one joined to the folder holding
// the link and standardised. Nothing when the path is not a readable symbolic link.
std::optional<QString> mg_stringByConditionallyResolvingSymlink(const QString &path);

// The alias file's target; nothing when the path is not an alias file (always, here: there are none).
std::optional<QString> mg_stringByConditionallyResolvingAlias(const QString &path);

// The path standardised: a leading "~" or "~user" expanded to the home folder, empty and "." components and
// a trailing "/" removed, and, in an absolute path, each ".." taken to the real parent of what precedes it
// (through symbolic links, as the kernel would) or, where that does not exist, the component before it
// dropped. A relative path keeps its ".." components.
QString stringByStandardizingPath(const QString &path);
