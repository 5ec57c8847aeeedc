// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "agent/AgentSignalHandler.h"

#include <QSocketNotifier>
#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int gSignalSockets[2] = {-1, -1};

void onSignal(int signalNumber)
{
    const int savedErrno = errno;
    const unsigned char number = static_cast<unsigned char>(signalNumber);
    [[maybe_unused]] const ssize_t written = ::write(gSignalSockets[0], &number, 1);
    errno = savedErrno;
}

} // namespace

AgentSignalHandler::AgentSignalHandler(QObject *parent) : QObject(parent) {}

AgentSignalHandler::~AgentSignalHandler()
{
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP})
        std::signal(signalNumber, SIG_DFL);
}

bool AgentSignalHandler::install()
{
    if (gSignalSockets[0] < 0 &&
        ::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, gSignalSockets) != 0)
        return false;
    mNotifier = new QSocketNotifier(gSignalSockets[1], QSocketNotifier::Read, this);
    connect(mNotifier, &QSocketNotifier::activated, this, &AgentSignalHandler::readSignal);
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP})
        if (::sigaction(signalNumber, &action, nullptr) != 0)
            return false;
    return true;
}

void AgentSignalHandler::readSignal()
{
    unsigned char number = 0;
    while (::read(gSignalSockets[1], &number, 1) == 1)
        Q_EMIT terminationRequested(number);
}
