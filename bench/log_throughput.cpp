// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// Messages per second through the log dispatcher into the rolling file logger, from one producer thread and
// from four, in a temporary data folder of its own; then the process's resident memory around bursts of
// 10,000 messages, which must not keep growing.
//
//   bench_log_throughput [messages per run, default 400000]
#include "logging/DDFileLogger.h"
#include "logging/DDLog.h"
#include "logging/DDLogFileInfo.h"
#include "logging/DDLogFileManagerDefault.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

long residentKiB()
{
    long pages = 0;
    long resident = 0;
    if (FILE *statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2)
            resident = 0;
        std::fclose(statm);
    }
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

// Logs `count` messages from `threads` threads (asynchronously, or synchronously as errors are) and waits
// until every one is in the file. Returns messages per second.
double run(int threads, long count, bool synchronous)
{
    const long each = count / threads;
    const Clock::time_point start = Clock::now();
    std::vector<std::thread> producers;
    for (int t = 0; t < threads; ++t) {
        producers.emplace_back([t, each, synchronous] {
            for (long i = 0; i < each; ++i) {
                DDLog::log(synchronous, 7, synchronous ? DDLogFlagError : DDLogFlagInfo, 1, __FILE__,
                           Q_FUNC_INFO, __LINE__,
                           QStringLiteral("Renamed /home/user/Pictures/Screenshot %1-%2.png to Desk %2.png")
                               .arg(t)
                               .arg(i));
            }
        });
    }
    for (std::thread &producer : producers)
        producer.join();
    DDLog::flushLog();
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    return double(each * threads) / seconds;
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir data;
    if (!data.isValid()) {
        std::fprintf(stderr, "bench_log_throughput: cannot make a temporary folder\n");
        return 1;
    }
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("CorvexLogBench"));
    const long count = argc > 1 ? std::atol(argv[1]) : 400000;
    if (count < 4) {
        std::fprintf(stderr, "usage: bench_log_throughput [messages per run, at least 4]\n");
        return 2;
    }

    auto manager = std::make_shared<DDLogFileManagerDefault>();
    auto logger = std::make_shared<DDFileLogger>(manager);
    DDLog::addLogger(logger);
    DDLog::flushLog();

    std::printf("log directory: %s\n", qPrintable(manager->logsDirectory()));
    std::printf("%-34s %10s %14s %14s\n", "run (3 rounds)", "messages", "median msg/s", "best msg/s");
    const struct
    {
        const char *name;
        int threads;
        bool synchronous;
    } runs[] = {{"1 producer, asynchronous", 1, false},
                {"4 producers, asynchronous", 4, false},
                {"1 producer, synchronous (errors)", 1, true},
                {"4 producers, synchronous (errors)", 4, true}};
    run(1, count / 10, false); // warm-up
    for (const auto &r : runs) {
        const long n = r.synchronous ? count / 4 : count;
        std::vector<double> rates;
        for (int round = 0; round < 3; ++round)
            rates.push_back(run(r.threads, n, r.synchronous));
        std::sort(rates.begin(), rates.end());
        std::printf("%-34s %10ld %14.0f %14.0f\n", r.name, n, rates[1], rates[2]);
    }

    std::printf("\nmemory: resident KiB around bursts of 10,000 messages\n");
    long first = 0;
    long last = 0;
    for (int burst = 1; burst <= 10; ++burst) {
        const long before = residentKiB();
        run(1, 10000, false);
        const long after = residentKiB();
        if (burst == 1)
            first = after;
        last = after;
        if (burst <= 3 || burst == 10)
            std::printf("burst %2d: before %8ld  after %8ld\n", burst, before, after);
    }
    std::printf("growth from burst 1 to burst 10: %ld KiB\n", last - first);

    long bytes = 0;
    const QStringList files = manager->sortedLogFilePaths();
    for (const QString &path : files)
        bytes += QFileInfo(path).size();
    std::printf("\nlog files kept: %lld (%ld bytes)\n", qlonglong(files.size()), bytes);
    DDLog::removeAllLoggers();
    DDLog::flushLog();
    return 0;
}
