// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What every fuzz target shares: a GUI application on the offscreen platform, a home folder of its own (so
// that nothing reads or writes the real user's files), silence from the diagnostics, and the input written to
// a file when the code under test reads files.

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>

namespace fuzz {

// Called once from LLVMFuzzerInitialize.
void initialize(int *argc, char ***argv);

// The fuzz target's private folder (inside its temporary home).
QString folder();

// Writes the bytes to a file of the given name in folder() and returns its path.
QString writeInput(const QString &name, const uint8_t *data, size_t size);

inline QByteArray bytes(const uint8_t *data, size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), qsizetype(size));
}

} // namespace fuzz

#define CORVEX_FUZZ_INITIALIZE                                                                               \
    extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)                                             \
    {                                                                                                        \
        fuzz::initialize(argc, argv);                                                                        \
        return 0;                                                                                            \
    }
