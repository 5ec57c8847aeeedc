// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

// One XDG autostart entry: a desktop entry file in the user's autostart folder that the desktop runs at
// log-in. Only the keys a login item needs are read ("Name", "Exec", "Hidden", "X-GNOME-Autostart-enabled",
// of the
// "[Desktop Entry]" group); writing makes a complete, minimal entry of type Application.
class AutostartEntry
{
public:
    AutostartEntry() = default;

    // Reads the entry file. Returns false and sets *status to an errno value when the file cannot be read
    // (ENOENT, EACCES, ...) or is not a desktop entry (ENOEXEC: no "[Desktop Entry]" group).
    bool read(const QString &path, int *status = nullptr);

    // Writes the entry atomically (a temporary file renamed into place). Returns false and sets *status to an
    // errno value when it cannot.
    bool write(const QString &path, int *status = nullptr) const;

    // The display name ("Name", unlocalised).
    QString name() const { return mName; }
    void setName(const QString &name) { mName = name; }

    // The command line as stored in "Exec", string escapes already undone.
    QString exec() const { return mExec; }
    void setExec(const QString &exec) { mExec = exec; }

    // Sets "Exec" to start exactly this program with no arguments (quoted where needed).
    void setProgram(const QString &program);

    // The program the command line starts: its first word with quotes and escapes undone, leading "env"
    // and VAR=value words skipped. A null string when the line is empty or its quoting is broken.
    QString program() const;

    // Whether the desktop runs the entry: "Hidden" is not true and "X-GNOME-Autostart-enabled" not false.
    bool isEnabled() const { return !mHidden && mAutostartEnabled; }

    // Splits a command line into its words by the desktop entry quoting rules. Returns false on an
    // unterminated quote or a stray quote inside a word.
    static bool splitCommandLine(const QString &commandLine, QStringList *words);

    // One command-line word, quoted when it holds a space or a reserved character.
    static QString quoteArgument(const QString &word);

private:
    QString mName;
    QString mExec;
    bool mHidden = false;
    bool mAutostartEnabled = true;
};
