// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "foundation/WriteAll.h"

#include <cerrno>
#include <unistd.h>

qsizetype writeAll(int fd, const char *data, qsizetype size)
{
    qsizetype done = 0;
    while (done < size) {
        const ssize_t written = ::write(fd, data + done, size_t(size - done));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            if (written == 0)
                errno = ENOSPC;
            break;
        }
        done += written;
    }
    return done;
}
