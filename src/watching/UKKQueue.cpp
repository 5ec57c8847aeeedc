// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "watching/UKKQueue.h"

#include "watching/Inotify.h"
#include "watching/UKKQueue_p.h"
#include "watching/UKMainThreadProxy.h"

#include <QDir>
#include <QFile>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace {

// Every kernel watch asks for the same events (so sharing a watch between entries never narrows it); each
// entry's own mask filters what it is told.
constexpr quint32 KernelMask = IN_MODIFY | IN_ATTRIB | IN_MOVE_SELF | IN_DELETE_SELF | IN_CREATE | IN_DELETE |
                               IN_MOVED_FROM | IN_MOVED_TO;

// Failures that mean "this path cannot be opened": ignored without a word.
bool isQuietFailure(int errorNumber)
{
    switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
    case EACCES:
    case EPERM:
    case ELOOP:
    case ENAMETOOLONG:
        return true;
    default:
        return false;
    }
}

void logLine(const QString &line)
{
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
    std::fflush(stderr);
}

} // namespace

UKKQueue::UKKQueue() : d(std::make_shared<UKKQueuePrivate>()) {}

std::unique_ptr<UKKQueue> UKKQueue::create(CorvexError *error)
{
    std::unique_ptr<UKKQueue> queue(new UKKQueue);
    auto inotify = std::make_unique<Inotify>();
    const int wakeFD = inotify->isValid() ? eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC) : -1;
    if (wakeFD < 0) {
        const int errorNumber = inotify->isValid() ? errno : inotify->error();
        logLine(QStringLiteral("UKKQueue: Couldn't create the kernel event queue (%1)")
                    .arg(QString::fromLocal8Bit(std::strerror(errorNumber))));
        if (error)
            *error = CorvexError(CorvexError::POSIXErrorDomain, errorNumber);
        return nullptr;
    }
    queue->d->inotify = std::move(inotify);
    queue->d->wakeFD = wakeFD;
    queue->d->q = queue.get();
    // The thread keeps the watcher's state alive while it runs.
    queue->d->thread = std::thread([state = queue->d] { state->watcherThread(); });
    pthread_setname_np(queue->d->thread.native_handle(), "UKKQueue");
    return queue;
}

UKKQueue *UKKQueue::sharedFileWatcher()
{
    // Made once (the initialisation is serialised) and never destroyed.
    static UKKQueue *shared = create().release();
    return shared;
}

UKKQueue::~UKKQueue()
{
    {
        std::lock_guard lock(d->mutex);
        d->delegate = nullptr;
        if (d->delegateProxy)
            d->delegateProxy->setTarget(nullptr);
        d->delegateProxy.reset();
    }
    d->keepThreadRunning = false;
    if (!d->thread.joinable())
        return;
    const quint64 one = 1;
    if (write(d->wakeFD, &one, sizeof one) < 0 && errno != EAGAIN)
        logLine(QStringLiteral("UKKQueue: Couldn't wake the watcher thread (%1)").arg(errno));
    if (std::this_thread::get_id() == d->thread.get_id()) {
        // Destroyed by an observer on the watcher thread: the thread ends once that delivery returns.
        std::lock_guard lock(d->mutex);
        d->q = nullptr;
        d->thread.detach();
        return;
    }
    // A delivery may be waiting for the main thread: keep serving it while waiting for the thread to end.
    UKMainThreadProxy::waitUntil([this] { return d->threadFinished.load(); });
    d->thread.join();
    std::lock_guard lock(d->mutex);
    d->q = nullptr;
}

bool UKKQueue::addPathToQueueNotifyingAbout(const QString &path, quint32 fflags, CorvexError *error)
{
    if (path.isEmpty()) {
        if (error)
            *error = CorvexError::fromErrno(ENOENT, path, false);
        return false;
    }
    const QByteArray nativePath = QFile::encodeName(QDir::current().absoluteFilePath(path));
    // The kernel watch is made under the lock, so that a concurrent removal of the last entry sharing it
    // cannot drop it between its making and its registration.
    std::unique_lock lock(d->mutex);
    const int wd = d->inotify->addWatch(QFile::decodeName(nativePath), KernelMask);
    if (wd < 0) {
        const int errorNumber = errno;
        lock.unlock();
        if (!isQuietFailure(errorNumber))
            logLine(QStringLiteral("UKKQueue: Couldn't watch %1 (%2)")
                        .arg(path, QString::fromLocal8Bit(std::strerror(errorNumber))));
        if (error)
            *error = CorvexError::fromErrno(errorNumber, path, false);
        return false;
    }
    struct stat status
    {
    };
    const bool haveStatus = stat(nativePath.constData(), &status) == 0;

    UKKQueueEntry entry;
    entry.path = path;
    entry.nativePath = nativePath;
    entry.mask = fflags;
    entry.wd = wd;
    d->addEntryLocked(std::move(entry), haveStatus ? &status : nullptr);
    return true;
}

bool UKKQueue::addPathToQueue(const QString &path)
{
    return addPathToQueueNotifyingAbout(path, DefaultMask);
}

void UKKQueue::addPath(const QString &path)
{
    addPathToQueueNotifyingAbout(path, DefaultMask);
}

void UKKQueue::removePathFromQueue(const QString &path)
{
    int unwatch = -1;
    {
        std::lock_guard lock(d->mutex);
        const auto found = std::find_if(d->entries.cbegin(), d->entries.cend(),
                                        [&](const UKKQueueEntry &entry) { return entry.path == path; });
        if (found == d->entries.cend())
            return;
        unwatch = d->releaseWatchLocked(*found);
        d->entries.erase(found);
    }
    if (unwatch >= 0 && !d->inotify->removeWatch(unwatch))
        logLine(QStringLiteral("removePathFromQueue: Couldn't close file descriptor (%1)").arg(errno));
}

void UKKQueue::removePath(const QString &path)
{
    removePathFromQueue(path);
}

void UKKQueue::removeAllPathsFromQueue()
{
    std::lock_guard lock(d->mutex);
    for (const UKKQueueEntry &entry : std::as_const(d->entries)) {
        const int unwatch = d->releaseWatchLocked(entry);
        d->inotify->removeWatch(unwatch);
    }
    d->entries.clear();
}

int UKKQueue::queueFD() const
{
    return d->inotify ? d->inotify->descriptor() : -1;
}

QStringList UKKQueue::watchedPaths() const
{
    std::lock_guard lock(d->mutex);
    QStringList paths;
    paths.reserve(d->entries.size());
    for (const UKKQueueEntry &entry : std::as_const(d->entries))
        paths.append(entry.path);
    return paths;
}

UKFileWatcherDelegate *UKKQueue::delegate() const
{
    std::lock_guard lock(d->mutex);
    return d->delegate;
}

void UKKQueue::setDelegate(UKFileWatcherDelegate *delegate)
{
    std::lock_guard lock(d->mutex);
    if (d->delegateProxy)
        d->delegateProxy->setTarget(nullptr);
    d->delegate = delegate;
    d->delegateProxy = delegate ? std::make_shared<UKKQueuePrivate::DelegateProxy>(delegate) : nullptr;
}

bool UKKQueue::alwaysNotify() const
{
    std::lock_guard lock(d->mutex);
    return d->alwaysNotify;
}

void UKKQueue::setAlwaysNotify(bool alwaysNotify)
{
    std::lock_guard lock(d->mutex);
    d->alwaysNotify = alwaysNotify;
}

void UKKQueue::postNotification(const QString &name, const QString &path)
{
    d->postNotification(name, path);
}

QString UKKQueue::description() const
{
    std::lock_guard lock(d->mutex);
    QString paths = QStringLiteral("(\n");
    for (qsizetype i = 0; i < d->entries.size(); ++i) {
        QString quoted = d->entries.at(i).path;
        quoted.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
            .replace(QLatin1Char('"'), QLatin1String("\\\""));
        paths += QLatin1String("    \"") + quoted + QLatin1Char('"') +
                 (i + 1 < d->entries.size() ? QLatin1String(",\n") : QLatin1String("\n"));
    }
    paths += QLatin1Char(')');
    return QStringLiteral("UKKQueue { watchedPaths = %1, alwaysNotify = %2 }")
        .arg(paths, d->alwaysNotify ? QStringLiteral("YES") : QStringLiteral("NO"));
}
