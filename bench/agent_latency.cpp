// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// The agent's speed and cost, measured on the real CorvexAgent of this build:
//   - latency: from a screenshot file closed in the watched folder to "CorvexScreenshotMatched" received
//     (no automatic steps; this program stands in for the running application);
//   - idle: over a quiet period, the agent's CPU time, its wake-ups (context switches of all its threads)
//     and its resident memory.
// Run it through bench/agent_bench.sh, which gives it a home and a session bus of its own.
//
//   bench_agent_latency [--shots N] [--idle SECONDS]
#include "foundation/Notifications.h"
#include "platform/DistributedNotificationCenter.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

QString buildDir()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/.."));
}

bool waitFor(const std::function<bool()> &predicate, int milliseconds)
{
    QDeadlineTimer deadline(milliseconds);
    while (!predicate()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    }
    return true;
}

int runCli(const QStringList &arguments)
{
    return QProcess::execute(buildDir() + QStringLiteral("/bin/corvex"), arguments);
}

QString logText()
{
    QFile file(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
               QStringLiteral("/Corvex/Logs/Corvex log.txt"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

struct ProcessCost
{
    double cpuMilliseconds = 0;
    qint64 contextSwitches = 0;
    qint64 rssKiB = 0;
};

qint64 statusValue(const QString &path, const QByteArray &key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(key.size()).trimmed().split(' ').first().toLongLong();
    return 0;
}

ProcessCost costOf(qint64 pid)
{
    ProcessCost cost;
    const QString base = QStringLiteral("/proc/%1").arg(pid);
    QFile stat(base + QStringLiteral("/stat"));
    if (stat.open(QIODevice::ReadOnly)) {
        const QByteArray text = stat.readAll();
        const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
        // Fields 14 and 15 of the whole line (utime, stime) are 11 and 12 after the name.
        cost.cpuMilliseconds =
            (fields.value(11).toDouble() + fields.value(12).toDouble()) * 1000.0 / sysconf(_SC_CLK_TCK);
    }
    for (const QString &task :
         QDir(base + QStringLiteral("/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString status = base + QStringLiteral("/task/") + task + QStringLiteral("/status");
        cost.contextSwitches += statusValue(status, "voluntary_ctxt_switches:") +
                                statusValue(status, "nonvoluntary_ctxt_switches:");
    }
    cost.rssKiB = statusValue(base + QStringLiteral("/status"), "VmRSS:");
    return cost;
}

double percentile(std::vector<double> values, double p)
{
    std::sort(values.begin(), values.end());
    return values.at(std::min(values.size() - 1, size_t(p * double(values.size() - 1) + 0.5)));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    int shots = 200;
    int idleSeconds = 60;
    const QStringList arguments = app.arguments();
    for (int i = 1; i + 1 < arguments.size(); ++i) {
        if (arguments.at(i) == QLatin1String("--shots"))
            shots = arguments.at(i + 1).toInt();
        else if (arguments.at(i) == QLatin1String("--idle"))
            idleSeconds = arguments.at(i + 1).toInt();
    }
    if (!QDBusConnection::sessionBus().isConnected()) {
        std::fprintf(stderr, "bench_agent_latency: no session bus (run it through bench/agent_bench.sh)\n");
        return 1;
    }
    const QString folder = QDir::homePath() + QStringLiteral("/bench-shots");
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
    runCli({QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("com.apple.screencapture"),
            QStringLiteral("location"), folder});
    runCli({QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("com.ostrel.Corvex"),
            QStringLiteral("showCorvexWindow"), QStringLiteral("-bool"), QStringLiteral("YES")});

    // This program is the running application.
    QDBusConnection::sessionBus().interface()->registerService(QStringLiteral("com.ostrel.Corvex"));
    Clock::time_point received;
    int receivedCount = 0;
    DistributedNotificationCenter::defaultCenter().addObserver(CorvexScreenshotMatchedNotification, nullptr,
                                                               [&](const QString &, const QVariantMap &) {
                                                                   received = Clock::now();
                                                                   ++receivedCount;
                                                               });

    QProcess agent;
    agent.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    agent.start(buildDir() +
                    QStringLiteral("/Corvex.app/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent"),
                {});
    if (!agent.waitForStarted(10000) ||
        !waitFor(
            [&] { return logText().contains(QStringLiteral("Watching the screenshot folder ") + folder); },
            15000)) {
        std::fprintf(stderr, "bench_agent_latency: the agent did not start\n");
        return 1;
    }

    const QByteArray bytes(64 * 1024, 'p'); // the agent does not decode the image on this path
    std::vector<double> latencies;
    for (int i = 0; i < shots; ++i) {
        QFile file(folder + QStringLiteral("/Screenshot %1.png").arg(i));
        file.open(QIODevice::WriteOnly);
        file.write(bytes);
        const int before = receivedCount;
        file.close();
        const Clock::time_point closed = Clock::now();
        if (!waitFor([&] { return receivedCount > before; }, 5000)) {
            std::fprintf(stderr, "bench_agent_latency: screenshot %d was not handed over\n", i);
            return 1;
        }
        latencies.push_back(std::chrono::duration<double, std::milli>(received - closed).count());
        QThread::msleep(5);
    }
    std::printf(
        "Screenshot closed -> CorvexScreenshotMatched received (%d screenshots, no automatic steps)\n",
        shots);
    std::printf("  median %.2f ms   p95 %.2f ms   p99 %.2f ms   max %.2f ms   (goal: <= 20 ms)\n",
                percentile(latencies, 0.5), percentile(latencies, 0.95), percentile(latencies, 0.99),
                percentile(latencies, 1.0));

    // Quiet period: nothing happens in the folder, no notification is posted.
    QThread::sleep(2);
    const ProcessCost start = costOf(agent.processId());
    QThread::sleep(unsigned(idleSeconds));
    const ProcessCost end = costOf(agent.processId());
    std::printf("Agent idle for %d s\n", idleSeconds);
    std::printf(
        "  CPU time %.1f ms (goal: < 10 ms)   wake-ups (context switches, all threads) %lld   RSS %.1f MiB "
        "(goal: < 40 MiB)\n",
        end.cpuMilliseconds - start.cpuMilliseconds, end.contextSwitches - start.contextSwitches,
        end.rssKiB / 1024.0);

    agent.terminate();
    agent.waitForFinished(10000);
    return 0;
}
