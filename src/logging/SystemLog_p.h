// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/CorvexError.h"

#include <QByteArray>
#include <QString>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace logging_private {

// Writes one line to the plain system log (standard error, which the journal collects), in one write.
inline void systemLog(const QString &text)
{
    QByteArray line = text.toUtf8();
    line.append('\n');
    const char *data = line.constData();
    qsizetype left = line.size();
    while (left > 0) {
        const ssize_t written = ::write(STDERR_FILENO, data, size_t(left));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        data += written;
        left -= written;
    }
}

// An error as the system log shows it: domain, code, description and the system's reason.
inline QString describeError(const CorvexError &error)
{
    QString text = QStringLiteral("Error Domain=%1 Code=%2 \"%3\"")
                       .arg(error.domain())
                       .arg(error.code())
                       .arg(error.localizedDescription());
    const QVariant posix = error.userInfo().value(CorvexError::UnderlyingPOSIXErrorKey);
    if (posix.isValid())
        text += QStringLiteral(" (%1)").arg(QString::fromLocal8Bit(std::strerror(posix.toInt())));
    return text;
}

} // namespace logging_private
