// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// Corvex, the application: one renaming window per screenshot. One instance per session: a second launch
// hands its "qzcv:" URLs and its command-line screenshot to the running one and exits.

#include "app/AppDelegate.h"
#include "app/AppEventHandler.h"
#include "app/RenamingWindowPreparation.h"
#include "foundation/Version.h"
#include "logging/DDLog.h"
#include "platform/Bundle.h"
#include "platform/TerminationSignalHandler.h"
#include "widgets/ApplicationResources.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

namespace {

QStringList corvexURLArguments(const QStringList &arguments)
{
    QStringList urls;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments.at(i).startsWith(QStringLiteral("qzcv:")))
            urls.append(arguments.at(i));
    }
    return urls;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    // The user's language from the bundle's translations; the application icon on every window.
    installApplicationResources(application, Bundle::mainBundle().resourcePath());
    QApplication::setApplicationName(QStringLiteral("Corvex"));
    QApplication::setApplicationVersion(QStringLiteral(CORVEX_MARKETING_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("com.ostrel.Corvex"));
    const QStringList urls = corvexURLArguments(QApplication::arguments());

    AppDelegate delegate;
    delegate.keepScreenshotsUntilLaunched();
    if (!AppEventHandler::claimServiceName() && AppEventHandler::isAnotherInstanceRunning()) {
        for (const QString &url : urls) {
            if (!AppEventHandler::sendURLToRunningInstance(url))
                std::fprintf(stderr, "Corvex: the running instance did not take %s\n", qPrintable(url));
        }
        // A screenshot named on the command line reaches the running instance's observer.
        delegate.processCommandLineArguments();
        AppEventHandler::isAnotherInstanceRunning(); // a round trip: everything sent has left
        DDLog::flushLog();
        return 0;
    }

    // What the first renaming window would set up on the main thread is set up while the application starts.
    RenamingWindowPreparation::start();
    // SIGTERM, SIGINT and SIGHUP end the application in order, as Quit does.
    TerminationSignalHandler signals;
    if (!signals.install())
        std::fprintf(stderr, "Corvex: could not install the termination handlers\n");
    QObject::connect(&signals, &TerminationSignalHandler::terminationRequested, &delegate,
                     [&delegate] { delegate.quit(); });
    delegate.applicationWillFinishLaunching();
    // A launch from the launcher names neither a screenshot nor a URL: it shows the preferences window.
    const bool bareLaunch =
        urls.isEmpty() && !QApplication::arguments().contains(QStringLiteral("-filePath"));
    QTimer::singleShot(0, &delegate, [&delegate, urls, bareLaunch] {
        delegate.applicationDidFinishLaunching();
        for (const QString &url : urls)
            delegate.handleGetURLEvent(url);
        if (bareLaunch)
            delegate.showPreferencesForBareLaunch();
    });
    const int code = QApplication::exec();
    delegate.applicationWillTerminate();
    DDLog::flushLog();
    return code;
}
