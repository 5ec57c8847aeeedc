// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_watch_latency [RENAMES]: how long a rename of a watched file takes to reach an observer of the shared
// watcher (median and 99th percentile), then a burst of 10,000 writes over 1,000 watched files, three times,
// with the resident memory before and after each burst.
#include "watching/NotificationCenter.h"
#include "watching/UKKQueue.h"

#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

long residentKilobytes()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLong();
    }
    return -1;
}

bool touchFile(const QByteArray &path, const char *bytes)
{
    const int descriptor = open(path.constData(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (descriptor < 0)
        return false;
    const bool written = write(descriptor, bytes, std::strlen(bytes)) >= 0;
    close(descriptor);
    return written;
}

// Waits (without burning the CPU the watcher needs) until the counter moves past the given value.
bool waitPast(std::atomic<int> &counter, int seen, std::chrono::seconds limit = std::chrono::seconds(10))
{
    const auto deadline = Clock::now() + limit;
    while (counter.load() <= seen) {
        if (Clock::now() > deadline)
            return false;
        counter.wait(seen);
    }
    return true;
}

double percentile(std::vector<double> values, double fraction)
{
    std::sort(values.begin(), values.end());
    const size_t index = std::min(values.size() - 1, size_t(fraction * double(values.size() - 1) + 0.5));
    return values[index];
}

} // namespace

int main(int argc, char **argv)
{
    const int renames = argc > 1 ? std::max(10, std::atoi(argv[1])) : 1000;
    QTemporaryDir folder;
    UKKQueue *watcher = UKKQueue::sharedFileWatcher();
    if (!folder.isValid() || !watcher) {
        std::fprintf(stderr, "bench_watch_latency: no temporary folder or no watcher\n");
        return 1;
    }

    // Latency of a rename.
    const QByteArray first = QFile::encodeName(folder.filePath(QStringLiteral("shot.png")));
    const QByteArray second = QFile::encodeName(folder.filePath(QStringLiteral("shot-renamed.png")));
    if (!touchFile(first, "png") || !watcher->addPathToQueueNotifyingAbout(QFile::decodeName(first), 33)) {
        std::fprintf(stderr, "bench_watch_latency: cannot watch %s\n", first.constData());
        return 1;
    }
    std::atomic<int> renamed{0};
    std::atomic<Clock::rep> arrival{0};
    const auto renameToken = NotificationCenter::workspaceCenter().addObserver(
        UKKQueueFileRenamedNotification, watcher, nullptr, [&](const NotificationCenter::Notification &) {
            arrival = Clock::now().time_since_epoch().count();
            ++renamed;
            renamed.notify_all();
        });
    std::vector<double> latencies;
    latencies.reserve(size_t(renames));
    for (int i = 0; i < renames; ++i) {
        const bool forth = i % 2 == 0;
        const int seen = renamed.load();
        const Clock::time_point start = Clock::now();
        if (::rename(forth ? first.constData() : second.constData(),
                     forth ? second.constData() : first.constData()))
            return 1;
        if (!waitPast(renamed, seen)) {
            std::fprintf(stderr, "bench_watch_latency: rename %d was not reported\n", i);
            return 1;
        }
        const auto end = Clock::time_point(Clock::duration(arrival.load()));
        latencies.push_back(std::chrono::duration<double, std::micro>(end - start).count());
    }
    NotificationCenter::workspaceCenter().removeObserver(renameToken);
    watcher->removePathFromQueue(QFile::decodeName(first));
    std::printf("rename -> observer over %d renames: median %.1f us, p99 %.1f us, max %.1f us\n", renames,
                percentile(latencies, 0.5), percentile(latencies, 0.99),
                *std::max_element(latencies.begin(), latencies.end()));

    // Bursts: 1,000 watched files, 10,000 writes spread over them at random.
    constexpr int Files = 1000;
    constexpr int Writes = 10000;
    std::vector<QByteArray> paths;
    for (int i = 0; i < Files; ++i) {
        paths.push_back(QFile::encodeName(folder.filePath(QStringLiteral("burst-%1.png").arg(i))));
        if (!touchFile(paths.back(), "") ||
            !watcher->addPathToQueueNotifyingAbout(QFile::decodeName(paths.back()), UKKQueue::NOTE_WRITE))
            return 1;
    }
    const QByteArray sentinel = QFile::encodeName(folder.filePath(QStringLiteral("sentinel")));
    touchFile(sentinel, "");
    watcher->addPathToQueueNotifyingAbout(QFile::decodeName(sentinel), UKKQueue::NOTE_WRITE);
    std::atomic<int> written{0};
    std::atomic<int> sentinelSeen{0};
    const auto writeToken = NotificationCenter::workspaceCenter().addObserver(
        UKKQueueFileWrittenToNotification, watcher, nullptr, [&](const NotificationCenter::Notification &n) {
            if (n.userInfo.value(UKFileWatcherPathKey).toString().endsWith(QLatin1String("sentinel"))) {
                ++sentinelSeen;
                sentinelSeen.notify_all();
            } else {
                ++written;
            }
        });
    std::mt19937 random(42);
    for (int round = 1; round <= 3; ++round) {
        const long before = residentKilobytes();
        const int notifiedBefore = written.load();
        const Clock::time_point start = Clock::now();
        for (int i = 0; i < Writes; ++i)
            touchFile(paths[random() % Files], "x");
        const int seen = sentinelSeen.load();
        touchFile(sentinel, "x"); // delivered after every earlier write
        if (!waitPast(sentinelSeen, seen, std::chrono::seconds(60)))
            return 1;
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        std::printf("burst %d: %d writes to %d files -> %d notifications (kernel merges repeats) in %.3f s; "
                    "RSS %ld kB -> %ld kB\n",
                    round, Writes, Files, written.load() - notifiedBefore, seconds, before,
                    residentKilobytes());
    }
    NotificationCenter::workspaceCenter().removeObserver(writeToken);
    watcher->removeAllPathsFromQueue();
    return 0;
}
