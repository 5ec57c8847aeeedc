// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Opening a file with a desktop application, through GIO. An application identifier is a desktop-file id,
// with or without ".desktop" ("org.gnome.Loupe", "gimp.desktop"), or the path of a ".desktop" file; the two
// platform identifiers "com.apple.Preview" and "com.apple.TextEdit" stand for the desktop's default image
// viewer and default text editor.
class DesktopApplications
{
public:
    DesktopApplications() = delete;

    static inline const QString PreviewIdentifier = QStringLiteral("com.apple.Preview");
    static inline const QString TextEditIdentifier = QStringLiteral("com.apple.TextEdit");

    // The desktop-file id (or ".desktop" path) that opens the file for this identifier: for
    // "com.apple.Preview" the default application of the file's type, else of PNG images; for
    // "com.apple.TextEdit" the default application of plain text; otherwise the identifier itself, with
    // ".desktop" added when missing. A null string when there is no such application.
    static QString desktopFileIdForApplicationIdentifier(const QString &applicationIdentifier,
                                                         const QString &filePath);

    // The platform identifier an application identifier stands for: "com.apple.TextEdit" for the desktop's
    // default text editor and "com.apple.Preview" for its default image viewer, named by their desktop-file
    // id with or without ".desktop"; any other identifier unchanged.
    static QString platformIdentifier(const QString &applicationIdentifier);

    // The desktop-file id of the default application for a MIME type; a null string when there is none.
    static QString defaultApplicationForMimeType(const QString &mimeType);

    // The MIME type of a file, from its name and contents.
    static QString mimeTypeOfFile(const QString &filePath);

    // Launches the application with the one file and returns without waiting for the application. False, with
    // the reason in *errorText, when the file or the application is missing or the launch fails.
    static bool openFile(const QString &filePath, const QString &applicationIdentifier,
                         QString *errorText = nullptr);
};
