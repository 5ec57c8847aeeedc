// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TerminationSignalHandler.h"

#include <QSocketNotifier>
#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr int TerminationSignals[3] = {SIGTERM, SIGINT, SIGHUP};

int gSignalSockets[2] = {-1, -1};

void onSignal(int signalNumber)
{
    const int savedErrno = errno;
    const unsigned char number = static_cast<unsigned char>(signalNumber);
    [[maybe_unused]] const ssize_t written = ::write(gSignalSockets[0], &number, 1);
    errno = savedErrno;
}

} // namespace

TerminationSignalHandler::TerminationSignalHandler(QObject *parent) : QObject(parent) {}

TerminationSignalHandler::~TerminationSignalHandler()
{
    if (!mInstalled)
        return;
    for (int i = 0; i < 3; ++i)
        ::sigaction(TerminationSignals[i], &mPrevious[i], nullptr);
}

bool TerminationSignalHandler::install()
{
    if (mInstalled)
        return true;
    if (gSignalSockets[0] < 0 &&
        ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, gSignalSockets) != 0)
        return false;
    mNotifier = new QSocketNotifier(gSignalSockets[1], QSocketNotifier::Read, this);
    connect(mNotifier, &QSocketNotifier::activated, this, &TerminationSignalHandler::readSignal);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (int i = 0; i < 3; ++i) {
        if (::sigaction(TerminationSignals[i], &action, &mPrevious[i]) != 0) {
            while (--i >= 0)
                ::sigaction(TerminationSignals[i], &mPrevious[i], nullptr);
            return false;
        }
    }
    mInstalled = true;
    return true;
}

void TerminationSignalHandler::readSignal()
{
    unsigned char number = 0;
    while (::read(gSignalSockets[1], &number, 1) == 1)
        Q_EMIT terminationRequested(number);
}

// The meta-object code goes with this file, not with the layer's other classes: a program then links only
// the libraries of the classes it uses.
#include "moc_TerminationSignalHandler.cpp"
