// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <csignal>

class QSocketNotifier;

// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal on the main thread, so that a request to terminate ends a
// program in its orderly way instead of killing it mid-step. One at a time per process; destroying it puts
// back the handlers that were there before.
class TerminationSignalHandler : public QObject
{
    Q_OBJECT

public:
    explicit TerminationSignalHandler(QObject *parent = nullptr);
    ~TerminationSignalHandler() override;

    // Installs the handlers. Returns false when they could not be installed.
    bool install();

Q_SIGNALS:
    // A termination signal arrived (its number).
    void terminationRequested(int signalNumber);

private:
    void readSignal();

    QSocketNotifier *mNotifier = nullptr;
    struct sigaction mPrevious[3] = {};
    bool mInstalled = false;
};
