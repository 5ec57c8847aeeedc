// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class ImageRowWriter;

// Converts a PNG file by handing its rows to an encoder as they are decoded: the decoder runs on a thread of
// its own while the encoder works on the caller's, and only a few bands of rows are held between them,
// never the whole image.
class ImageIORowPipeline
{
public:
    ImageIORowPipeline() = delete;

    // Which side a conversion failed on.
    enum class Failure { None, Source, Destination };

    // Decodes the PNG file into the writer, from begin() to finish(). Refuses images whose decoded size would
    // pass maximumBytes before anything is written. On failure, failure says whether the file could not be
    // read (missing, corrupt, truncated, too large) or the writer failed, and reason says why.
    static bool convertPNG(const QString &path, qint64 maximumBytes, ImageRowWriter &writer, Failure *failure,
                           QString *reason);
};
