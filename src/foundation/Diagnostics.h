// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Messages of the platform services, which sit below the log dispatcher. The dispatcher receives them once a
// logger has been added to it; before that, and in a program without loggers, they go to stderr.
//
//   CorvexReportError(QStringLiteral("Preferences: cannot read %1").arg(path));

#include <QString>

namespace Diagnostics {

enum class Level { Error, Warning, Info };

// Takes one message with the place it was reported from; a synchronous one is delivered before it returns.
using Receiver = void (*)(Level level, bool synchronous, const char *file, const char *function, int line,
                          const QString &message);

// Makes `receiver` the one receiver of every later message; nullptr restores stderr.
void setReceiver(Receiver receiver);

// Hands one message to the receiver. Errors are synchronous unless the caller is on a logger's own queue.
void report(Level level, bool synchronous, const char *file, const char *function, int line,
            const QString &message);

} // namespace Diagnostics

#define CorvexReportError(message)                                                                           \
    ::Diagnostics::report(::Diagnostics::Level::Error, true, __FILE__, Q_FUNC_INFO, __LINE__, (message))
#define CorvexReportWarning(message)                                                                         \
    ::Diagnostics::report(::Diagnostics::Level::Warning, false, __FILE__, Q_FUNC_INFO, __LINE__, (message))
