// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/FileIdentity.h"

#include <QFile>
#include <fcntl.h>
#include <sys/stat.h>

std::optional<FileIdentity> FileIdentity::ofPath(const QString &path)
{
    struct statx info = {};
    if (::statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_INO | STATX_BTIME | STATX_MTIME,
                &info) != 0)
        return std::nullopt;
    FileIdentity identity;
    identity.device = (quint64(info.stx_dev_major) << 32) | info.stx_dev_minor;
    identity.inode = info.stx_ino;
    const statx_timestamp &born = (info.stx_mask & STATX_BTIME) ? info.stx_btime : info.stx_mtime;
    identity.bornNSecs = qint64(born.tv_sec) * 1000000000 + born.tv_nsec;
    return identity;
}

bool RecentFileIdentities::insert(const FileIdentity &identity)
{
    if (!mSet.insert(identity).second)
        return false;
    mOrder.push_back(identity);
    while (mOrder.size() > mCapacity) {
        mSet.erase(mOrder.front());
        mOrder.pop_front();
    }
    return true;
}
