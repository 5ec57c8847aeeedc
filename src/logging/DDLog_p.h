// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "foundation/DispatchQueue.h"
#include "foundation/DispatchSemaphore.h"
#include "logging/DDLog.h"
#include "logging/DDLogDelivery.h"

#include <QPointer>
#include <atomic>
#include <mutex>

class QCoreApplication;

namespace ddlog_private {

// The dispatcher's class-level state, made once on first use and kept until the process ends.
struct DispatcherState
{
    DispatcherState();

    DispatchQueue loggingQueue{QStringLiteral("cocoa.vofungudip")};
    DDLogDelivery delivery; // with the host's processor count; used only on the logging queue
    DispatchSemaphore queueSizeSemaphore{1000};
    long unreleasedPlaces = 0;            // delivered messages whose places are not yet given back; ditto
    std::atomic<long> messagesWaiting{0}; // queued, not yet taken up for delivery
    std::atomic<long> flushesWaiting{0};  // flushLog calls that have not yet passed the queue
    // Held while a counter above goes up and its work joins the logging queue, so that the queue's order and
    // the counters agree: a message counted before a flush is queued before it.
    std::mutex enqueueMutex;

    std::mutex loggerQueuesMutex;
    QList<const DispatchQueue *> loggerQueues; // the queues of the added loggers

    std::mutex registryMutex;
    QList<DDLogRegisteredClass> registry;

    std::mutex terminationMutex;
    QPointer<QCoreApplication> observedApplication;
};

DispatcherState &state();

// Observes the application's about-to-quit signal once an application object exists.
void observeApplicationTermination();

// The number of messages queued on the logging queue and not yet taken up for delivery.
long messagesWaiting();

// True when another delivery follows the current one before anybody waits for the loggers' output: messages
// are waiting and no flushLog is. A logger may gather its output only then; the last delivery writes it.
bool moreDeliveriesFollow();

// True on the logging queue or on the queue of an added logger: code running there must not log through the
// dispatcher, which may be waiting for that very queue.
bool isOnLoggingQueues();

// The semaphore that bounds the number of waiting messages (1000).
DispatchSemaphore &queueSizeSemaphore();

} // namespace ddlog_private
