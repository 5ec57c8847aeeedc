// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

// The application's side of the agent: where it lies in the bundle, launching and quitting it, quitting other
// copies of the application, and keeping the agent among the login items.
class AgentControl
{
public:
    AgentControl() = delete;

    // "../Helpers/CorvexAgent.app" from the application's executable.
    static QUrl agentApplicationURL();
    // Starts the agent detached; logs whether it started.
    static void launchAgent();
    // Asks every running agent to quit; logs each outcome.
    static void quitAgent();
    // Asks every other running copy of the application to quit.
    static void quitOtherCopies();

    static void addAgentToLoginItems();
    static void ensureAgentIsInLoginItems();
    static void removeAgentFromLoginItems();
};
