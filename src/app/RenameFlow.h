// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>

class CorvexError;
class QWidget;

// The questions and messages of the renaming window's rename-and-save flow, each shown as a sheet on the
// window. Every answer goes to a callback with the button's result code.
class RenameFlow
{
public:
    RenameFlow() = delete;

    using Answer = std::function<void(qint64 returnCode)>;

    // The name carries another format's extension: "Use .required" (first), "Cancel" (second), "Use both"
    // (third).
    static void askAboutExtensionMismatch(QWidget *window, const QString &extension, const QString &required,
                                          Answer answer);
    // The destination exists: "Replace" (first; Ctrl+R) or "Cancel" (second; also Return, Escape, Ctrl+.).
    // A warning: replacing is asked for, nothing has failed.
    static void confirmReplace(QWidget *window, const QString &name, const QString &destinationFolder,
                               bool onDesktop, Answer answer);
    // The name could not be taken.
    static void showNameTaken(QWidget *window, const QString &name);
    // The log line of an error: its domain, code, user information and description.
    static QString errorLogText(const CorvexError &error);
};
