// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QtGlobal>
#include <deque>
#include <optional>
#include <set>
#include <tuple>

// What makes a file the same file across renames and moves within its file system: its device and inode
// numbers and its birth time (the modification time where the file system records no birth), so that a new
// file that happens to reuse an inode number is a different file.
struct FileIdentity
{
    quint64 device = 0;
    quint64 inode = 0;
    qint64 bornNSecs = 0;

    // The identity of the file at the path (symbolic links followed); nothing when it cannot be examined.
    static std::optional<FileIdentity> ofPath(const QString &path);

    auto key() const { return std::tie(device, inode, bornNSecs); }
    bool operator==(const FileIdentity &other) const { return key() == other.key(); }
    bool operator<(const FileIdentity &other) const { return key() < other.key(); }
};

// The identities of the files seen most recently, at most a fixed number of them (the oldest is forgotten
// first). Not thread-safe: one owner.
class RecentFileIdentities
{
public:
    explicit RecentFileIdentities(std::size_t capacity = 4096) : mCapacity(capacity) {}

    // Remembers the identity; returns false when it was already known.
    bool insert(const FileIdentity &identity);
    bool contains(const FileIdentity &identity) const { return mSet.count(identity) > 0; }
    std::size_t size() const { return mSet.size(); }

private:
    std::size_t mCapacity;
    std::set<FileIdentity> mSet;
    std::deque<FileIdentity> mOrder;
};
