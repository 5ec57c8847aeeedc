// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// bench_preference_store [FOLDER]: the cost of the preference store's operations on a domain the size of
// Corvex's own (30 keys): a cached read, a synchronisation with nothing new, one with another process's
// change to adopt, and a write (temporary file, flush, rename under the lock). FOLDER defaults to a temporary
// folder; give one on the disk you care about, since the write's flush depends on it.
#include "platform/PreferenceStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

namespace {

const QString kDomain = QStringLiteral("com.example.Bench");

// Runs the operation n times; returns microseconds per run.
double measure(int n, const std::function<void(int)> &operation)
{
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < n; ++i)
        operation(i);
    return double(timer.nsecsElapsed()) / 1000.0 / n;
}

void report(const char *what, double microseconds)
{
    std::printf("%-48s %10.2f us\n", what, microseconds);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    QTemporaryDir temporary;
    const QString folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : temporary.path();
    PreferenceStore store(folder);
    PreferenceStore other(folder); // stands for another process
    for (int i = 0; i < 30; ++i)
        store.setValue(kDomain, QStringLiteral("key%1").arg(i),
                       QStringLiteral("a value of moderate length %1").arg(i));
    store.synchronize(kDomain);

    report("value() of a cached key",
           measure(200000, [&](int i) { store.value(kDomain, QStringLiteral("key%1").arg(i % 30)); }));
    report("synchronize() with nothing new (stat only)",
           measure(20000, [&](int) { store.synchronize(kDomain); }));
    report("setValue() + synchronize() (a write)", measure(500, [&](int i) {
               store.setValue(kDomain, QStringLiteral("counter"), qint64(i));
               store.synchronize(kDomain);
           }));
    // Only the adopting synchronisation is timed; the other process's write is not.
    QElapsedTimer timer;
    qint64 adopting = 0;
    constexpr int kAdoptions = 500;
    for (int i = 0; i < kAdoptions; ++i) {
        other.setValue(kDomain, QStringLiteral("theirs"), qint64(i));
        other.synchronize(kDomain);
        timer.start();
        store.synchronize(kDomain);
        adopting += timer.nsecsElapsed();
    }
    report("synchronize() adopting another process's write", double(adopting) / 1000.0 / kAdoptions);
    return 0;
}
