// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/CorvexError.h"
#include "foundation/WriteAll.h"

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
    writeAll(STDERR_FILENO, line);
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
