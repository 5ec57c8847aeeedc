// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// CorvexAgent: the background agent. A second start in the same session finds the first and exits.
#include "agent/CorvexAgent.h"
#include "core/FactoryDefaults.h"
#include "core/UserDefaults.h"
#include "foundation/PreferenceKeys.h"
#include "foundation/Version.h"
#include "platform/Bundle.h"
#include "platform/TerminationSignalHandler.h"
#include "widgets/ApplicationResources.h"

#include <QApplication>
#include <QDir>
#include <cstdio>

int main(int argc, char **argv)
{
    QApplication::setApplicationName(QStringLiteral("CorvexAgent"));
    QApplication::setOrganizationDomain(QStringLiteral("ostrel.com"));
    QApplication::setApplicationVersion(QStringLiteral(CORVEX_MARKETING_VERSION));
    QApplication::setDesktopFileName(kCorvexAgentDomain);
    QApplication application(argc, argv);
    // The user's language from translations of the application bundle the agent lies in; the application icon
    // on every window.
    installApplicationResources(
        application, QDir::cleanPath(Bundle::mainBundle().bundlePath() + QStringLiteral("/../../Resources")));
    application.setQuitOnLastWindowClosed(false);
    // From here on a request to terminate waits for the event loop, which ends the agent in order.
    TerminationSignalHandler signals;
    if (!signals.install())
        std::fprintf(stderr, "CorvexAgent: could not install the termination handlers\n");

    bool busAvailable = false;
    if (!CorvexAgent::claimBusName(&busAvailable)) {
        std::fprintf(stderr, "CorvexAgent: another agent is already running in this session\n");
        return 0;
    }
    if (!busAvailable)
        std::fprintf(stderr, "CorvexAgent: no D-Bus session bus: running without talking to Corvex\n");

    // The log window reads its font from the standard preferences, which know the factory values.
    UserDefaults::standardUserDefaults().registerDefaults(factoryDefaults());

    CorvexAgent agent;
    QObject::connect(&signals, &TerminationSignalHandler::terminationRequested, &agent,
                     &CorvexAgent::terminate);
    agent.start();
    return application.exec();
}
