// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex watch PATH...: prints one line per change of the watched paths ("<notification>\t<path>") until
// interrupted.
#include "cli/CommandModule.h"
#include "platform/TerminationSignalHandler.h"
#include "watching/NotificationCenter.h"
#include "watching/UKKQueue.h"

#include <QCoreApplication>
#include <cerrno>
#include <cstring>

namespace {

// Failures the watcher reports itself on stderr; the others it leaves to its caller.
bool reportedByWatcher(const CorvexError &error)
{
    switch (error.userInfo().value(CorvexError::UnderlyingPOSIXErrorKey).toInt()) {
    case ENOENT:
    case ENOTDIR:
    case EACCES:
    case EPERM:
    case ELOOP:
    case ENAMETOOLONG:
        return false;
    default:
        return true;
    }
}

int runWatch(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return cli::fail(QStringLiteral("watch needs at least one path (usage: corvex watch PATH...)"));
    UKKQueue *watcher = UKKQueue::sharedFileWatcher();
    if (!watcher)
        return cli::fail(QStringLiteral("cannot watch files: the kernel refused an event queue"));

    // Observers run on the watcher's thread, the only one printing.
    const auto token = NotificationCenter::workspaceCenter().addObserver(
        QString(), watcher, nullptr, [](const NotificationCenter::Notification &notification) {
            cli::out(notification.name + QLatin1Char('\t') +
                     notification.userInfo.value(UKFileWatcherPathKey).toString() + QLatin1Char('\n'));
        });

    int watched = 0;
    for (const QString &path : arguments) {
        CorvexError error;
        if (watcher->addPathToQueueNotifyingAbout(path, UKKQueue::DefaultMask, &error)) {
            ++watched;
            continue;
        }
        const int errorNumber = error.userInfo().value(CorvexError::UnderlyingPOSIXErrorKey).toInt();
        if (!reportedByWatcher(error))
            cli::err(QStringLiteral("corvex: cannot watch %1: %2\n")
                         .arg(path, QString::fromLocal8Bit(std::strerror(errorNumber))));
    }
    if (watched == 0) {
        NotificationCenter::workspaceCenter().removeObserver(token);
        return 1;
    }

    TerminationSignalHandler signals;
    if (!signals.install())
        return cli::fail(
            QStringLiteral("cannot watch files: the termination handlers could not be installed"));
    QObject::connect(&signals, &TerminationSignalHandler::terminationRequested,
                     [] { QCoreApplication::quit(); });
    QCoreApplication::exec();

    for (const QString &path : arguments)
        watcher->removePathFromQueue(path);
    NotificationCenter::workspaceCenter().removeObserver(token);
    return 0;
}

} // namespace

extern "C" Q_DECL_EXPORT int corvex_command_main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    return cli::runModuleCommand(&runWatch);
}
