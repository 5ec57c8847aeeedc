// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>
#include <ostream>

class QImage;

// Strings and string lists as text in assertion messages.
void PrintTo(const QString &text, std::ostream *stream);
void PrintTo(const QStringList &list, std::ostream *stream);

// Every test process runs in a home of its own (HOME and the XDG folders below a fresh temporary folder),
// on a private D-Bus session bus and on Qt's offscreen platform. See TestMain.cpp.
namespace corvex::test {

// The temporary HOME of this test process.
QString home();

// Runs the event loop until the predicate holds or the time is up; returns the predicate's last value.
bool waitUntil(const std::function<bool()> &predicate,
               std::chrono::milliseconds timeout = std::chrono::milliseconds(5000));

// Runs the event loop for the given time.
void spin(std::chrono::milliseconds duration);

// Writes bytes to a file (creating its folder); returns the absolute path.
QString writeFile(const QString &path, const QByteArray &bytes);

// The whole contents of a file; empty when it cannot be read.
QByteArray readFile(const QString &path);

// The lines of a text file, without empty ones.
QStringList readLines(const QString &path);

// Installs a desktop application with the id (the entry's file name without ".desktop") that records each
// file it is asked to open, one line each, in the file it returns; it handles the MIME types given (e.g.
// "image/png;image/jpeg;"). Applications are best installed before GIO first reads the folders.
QString installRecordingOpener(const QString &desktopId, const QByteArray &mimeTypes = {});

// The peak signal-to-noise ratio of b against a (same size) over red, green and blue, in dB; 99 when equal.
double psnr(const QImage &a, const QImage &b);

struct ProcessResult
{
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// Runs a program to its end with this test's environment (same HOME, XDG folders and session bus).
ProcessResult run(const QString &program, const QStringList &arguments, const QByteArray &input = {},
                  std::chrono::milliseconds timeout = std::chrono::milliseconds(60000));

// Runs the `corvex` command-line tool.
ProcessResult runCli(const QStringList &arguments, const QByteArray &input = {});

} // namespace corvex::test
