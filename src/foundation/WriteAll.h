// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

// Writes every byte to the descriptor, going on after interruptions and short writes. Returns how many bytes
// were written: all of them, or fewer when a write failed (errno says why; ENOSPC when a write took nothing).
qsizetype writeAll(int fd, const char *data, qsizetype size);

inline bool writeAll(int fd, const QByteArray &bytes)
{
    return writeAll(fd, bytes.constData(), bytes.size()) == bytes.size();
}
