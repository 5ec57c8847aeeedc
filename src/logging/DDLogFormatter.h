// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class DDLogMessage;

// Turns a message into the text a logger writes.
class DDLogFormatter
{
public:
    virtual ~DDLogFormatter() = default;

    // The text to write for the message, or a null string to drop it. Called on the logger's queue.
    virtual QString formatLogMessage(const DDLogMessage &logMessage) = 0;
};
