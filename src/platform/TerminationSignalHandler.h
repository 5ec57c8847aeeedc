// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGTERM, SIGINT and SIGHUP into a Qt signal on the main thread, so that a request to terminate ends
// the agent in its orderly way instead of killing it mid-step. One per process.
class AgentSignalHandler : public QObject
{
    Q_OBJECT

public:
    explicit AgentSignalHandler(QObject *parent = nullptr);
    ~AgentSignalHandler() override;

    // Installs the handlers. Returns false when they could not be installed.
    bool install();

Q_SIGNALS:
    // A termination signal arrived (its number).
    void terminationRequested(int signalNumber);

private:
    void readSignal();

    QSocketNotifier *mNotifier = nullptr;
};
