// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace cli {

// Adds a logger that writes error messages to standard error as "corvex: <text>"; warnings and information
// too when the environment variable CORVEX_VERBOSE is set.
void installStderrLogger();

// Returns once every message logged so far has reached every logger.
void flushLogs();

} // namespace cli
