// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/CorvexError.h"

#include <QUrl>

class FileFormat;

// The errors of image loading and conversion. Their user-visible text is the failure reason; the file name
// shown is the file's display name (its last path component).

// "Corvex" 1: the file could not be loaded as an image.
CorvexError corvexErrorCGImageSourceCreateWithURL(const QUrl &url);

// "Corvex" 2: writing the converted file failed part-way.
CorvexError corvexErrorCGImageDestinationFinalizeWithURL(const QUrl &url, const FileFormat *fileFormat);

// "Corvex" 3: the converted file could not be created.
CorvexError corvexErrorCGImageDestinationCreateWithURL(const QUrl &url, const FileFormat *fileFormat);

// The Cocoa no-such-file error (code 4) with the URL under the URL key and no text of its own.
CorvexError corvexErrorNoSuchFile(const QUrl &url);

// True for the Cocoa domain's no-such-file errors (codes 4 and 260).
bool qz_isCocoaFileNoSuchFileError(const CorvexError &error);

// A copy of the error whose recovery suggestion asks the user to turn Dropbox's screenshot sharing off.
CorvexError corvexErrorByAddingDropboxIncompatibilityInformation(const CorvexError &error);
