// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// How long a renaming window takes from the screenshot notification to being on screen with its picture:
// a screenshot-like PNG is written (5120 x 2880 by default, by a process of its own), the process starts as
// the application does (its resources, the set-up for its windows), "CorvexScreenshotMatched" is posted on
// the session bus at once and then after each window, and the observer opens the window as the application
// does (the first one waits for that set-up). The first window is therefore that of a fresh process. Prints
// the median, the 90th percentile and the worst of the runs, plus the time the main thread was busy for the
// longest stretch and the process's peak resident memory. For reference, the same file is then loaded with a
// plain QImage.
//
// The slowest main-thread events are named by kind, with the median and the worst over the runs of each run's
// slowest of that kind; CORVEX_BENCH_TRACE_MS=N also lists, run by run, every event that took N ms or more
// and the longest stall with the time it began (a stall with no long event in it is a wait outside the
// events, for the display server say).
//
//   bench_app_window_open [RUNS] [WIDTH HEIGHT]     (needs a session bus and a display, or
//   QT_QPA_PLATFORM=offscreen)

#include "app/CorvexWindowController.h"
#include "app/ImageView.h"
#include "app/RenamingWindowPreparation.h"
#include "core/ScreenshotInfo.h"
#include "foundation/Notifications.h"
#include "platform/DistributedNotificationCenter.h"
#include "widgets/ApplicationResources.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QLinearGradient>
#include <QMetaEnum>
#include <QPainter>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

namespace {

QImage screenshotLike(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, width, height);
    gradient.setColorAt(0, QColor(40, 60, 120));
    gradient.setColorAt(1, QColor(200, 140, 60));
    painter.fillRect(image.rect(), gradient);
    painter.fillRect(QRect(width / 10, height / 10, width / 2, height / 2), QColor(250, 250, 250));
    QFont font = painter.font();
    font.setPixelSize(height / 60);
    painter.setFont(font);
    painter.setPen(Qt::black);
    for (int line = 0; line < 25; ++line)
        painter.drawText(
            width / 10 + 20, height / 10 + 40 + line * height / 50,
            QStringLiteral("%1 The quick brown fox jumps over the lazy dog, 0123456789.").arg(line));
    for (int y = height * 2 / 3; y < height; y += 3)
        for (int x = width * 2 / 3; x < width; x += 3)
            image.setPixel(x, y, qRgb((x * 7 + y) % 256, (x + y * 3) % 256, (x ^ y) % 256));
    return image;
}

double percentile(std::vector<double> values, double fraction)
{
    std::sort(values.begin(), values.end());
    const size_t index = std::min(values.size() - 1, size_t(fraction * double(values.size() - 1) + 0.5));
    return values.at(index);
}

// A "VmHWM" (peak) or "VmRSS" (now) line of /proc/self/status, in megabytes.
double residentMegabytes(const char *key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(int(qstrlen(key)) + 1).trimmed().split(' ').value(0).toDouble() / 1024.0;
    return 0;
}

// Starts measuring the peak resident memory afresh (the picture written beforehand does not count).
void resetPeakResident()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    if (clear.open(QIODevice::WriteOnly))
        clear.write("5");
}

// Times every event the main thread handles: where a stall goes (the window's construction arrives as a
// queued call, its first painting as an expose, later repaints as update requests).
class TimingApplication : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (!recording)
            return QApplication::notify(receiver, event);
        const char *type = QMetaEnum::fromType<QEvent::Type>().valueToKey(event->type());
        const QString kind = QStringLiteral("%1 to %2")
                                 .arg(QLatin1String(type ? type : "event"),
                                      QLatin1String(receiver->metaObject()->className()));
        QElapsedTimer timer;
        timer.start();
        const bool result = QApplication::notify(receiver, event);
        const double milliseconds = double(timer.nsecsElapsed()) / 1e6;
        double &slowest = slowestThisRun[kind];
        slowest = std::max(slowest, milliseconds);
        if (traceAbove > 0 && milliseconds >= traceAbove)
            std::printf("  %9.3f s  %6.1f ms  %s\n", double(timer.msecsSinceReference()) / 1e3, milliseconds,
                        qPrintable(kind));
        return result;
    }

    bool recording = false;
    // Events that took at least this long are listed as they end (CORVEX_BENCH_TRACE_MS), with the monotonic
    // clock at their start, so that a profile of the same run can be cut to them.
    double traceAbove = qEnvironmentVariable("CORVEX_BENCH_TRACE_MS").toDouble();
    std::map<QString, double> slowestThisRun;
    // For each kind of event, the slowest of each run (runs without that kind count 0).
    std::map<QString, std::vector<double>> slowestByRun;

    void endRun(int runsBefore)
    {
        for (const auto &[kind, milliseconds] : slowestThisRun) {
            std::vector<double> &runs = slowestByRun[kind];
            runs.resize(size_t(runsBefore), 0.0);
            runs.push_back(milliseconds);
        }
        slowestThisRun.clear();
    }
};

// The picture is drawn by a process of its own, so that the fonts it is drawn with are not loaded yet when
// the first window opens.
bool writePicture(const QString &path, int width, int height)
{
    const pid_t child = fork();
    if (child == 0) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        int argc = 1;
        char name[] = "bench_app_window_open";
        char *argv[] = {name, nullptr};
        QGuiApplication application(argc, argv);
        _exit(screenshotLike(width, height).save(path) ? 0 : 1);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 10;
    const int width = argc > 3 ? atoi(argv[2]) : 5120;
    const int height = argc > 3 ? atoi(argv[3]) : 2880;
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Screenshot.png"));
    if (!writePicture(path, width, height)) {
        std::fprintf(stderr, "could not write %s\n", qPrintable(path));
        return 1;
    }

    TimingApplication application(argc, argv);
    // As the application starts: its translations and window icon, and the set-up for its windows. The first
    // window is asked for at once, as when the application is started for a screenshot.
    installApplicationResources(application, QCoreApplication::applicationDirPath() +
                                                 QStringLiteral("/../Corvex.app/Contents/Resources"));
    RenamingWindowPreparation::start();
    std::printf("picture: %dx%d PNG, %lld bytes\n", width, height, QFileInfo(path).size());

    DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    if (!center.isConnected()) {
        std::fprintf(stderr, "no session bus\n");
        return 1;
    }
    std::unique_ptr<CorvexWindowController> controller;
    QElapsedTimer clock;
    std::vector<double> shown, pictured, painted, longestStall;
    QSize shownSize, viewSize;
    qint64 lastTick = 0;
    double stall = 0;
    qint64 stallStart = 0;
    // A timer that fires as often as it can measures how long the main thread was kept from its events.
    QTimer ticker;
    ticker.setInterval(0);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        const qint64 now = clock.nsecsElapsed();
        if (double(now - lastTick) / 1e6 > stall) {
            stall = double(now - lastTick) / 1e6;
            stallStart = lastTick;
        }
        lastTick = now;
    });
    std::function<void(const QVariantMap &)> screenshotTaken = [&](const QVariantMap &info) {
        // As the application does: a window asked for while it starts waits for the set-up begun then.
        if (RenamingWindowPreparation::callWhenDone(&application, [&, info] { screenshotTaken(info); }))
            return;
        controller =
            std::make_unique<CorvexWindowController>(ScreenshotInfo::initWithNotificationDictionary(info));
        QWidget *window = controller->window();
        window->show();
        shown.push_back(double(clock.nsecsElapsed()) / 1e6);
        QObject::connect(controller.get(), &CorvexWindowController::imageLoaded, [&] {
            const qint64 before = clock.nsecsElapsed();
            controller->imageView()->repaint();
            painted.push_back(double(clock.nsecsElapsed() - before) / 1e6);
            pictured.push_back(double(clock.nsecsElapsed()) / 1e6);
            shownSize = controller->image().size();
            viewSize = controller->imageView()->size();
        });
    };
    center.addObserver(CorvexScreenshotMatchedNotification, nullptr,
                       [&](const QString &, const QVariantMap &info) { screenshotTaken(info); });

    resetPeakResident();
    application.recording = true;
    const double residentBefore = residentMegabytes("VmRSS:");
    for (int run = 0; run < runs; ++run) {
        stall = 0;
        const size_t before = pictured.size();
        if (application.traceAbove > 0)
            std::printf("run %d\n", run + 1);
        // Measured from the moment the screenshot is announced.
        ticker.start();
        clock.start();
        lastTick = 0;
        center.postNotificationName(CorvexScreenshotMatchedNotification,
                                    ScreenshotInfo(path, 1).notificationDictionary());
        while (pictured.size() == before && clock.elapsed() < 20000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        ticker.stop();
        application.endRun(run);
        longestStall.push_back(stall);
        if (application.traceAbove > 0)
            std::printf("  longest stall %.1f ms, from %.3f s\n", stall,
                        double(clock.msecsSinceReference()) / 1e3 + double(stallStart) / 1e9);
        controller.reset();
        QCoreApplication::processEvents();
    }
    if (pictured.size() != size_t(runs)) {
        std::fprintf(stderr, "only %zu of %d windows showed their picture\n", pictured.size(), runs);
        return 1;
    }
    std::printf("window on screen:       median %7.1f ms   p90 %7.1f ms   max %7.1f ms\n",
                percentile(shown, 0.5), percentile(shown, 0.9), percentile(shown, 1.0));
    std::printf("window with picture:    median %7.1f ms   p90 %7.1f ms   max %7.1f ms\n",
                percentile(pictured, 0.5), percentile(pictured, 0.9), percentile(pictured, 1.0));
    std::printf("painting the picture:   median %7.1f ms   p90 %7.1f ms   max %7.1f ms\n",
                percentile(painted, 0.5), percentile(painted, 0.9), percentile(painted, 1.0));
    std::printf("longest main-thread stall: median %7.1f ms   max %7.1f ms   first window %7.1f ms\n",
                percentile(longestStall, 0.5), percentile(longestStall, 1.0), longestStall.front());
    application.recording = false;
    std::vector<std::pair<double, QString>> slowest;
    for (auto &[kind, byRun] : application.slowestByRun) {
        byRun.resize(size_t(runs), 0.0);
        slowest.emplace_back(percentile(byRun, 1.0), kind);
    }
    std::sort(slowest.rbegin(), slowest.rend());
    std::printf("slowest main-thread events, median and worst of the runs' slowest:\n");
    for (size_t i = 0; i < std::min<size_t>(5, slowest.size()); ++i)
        std::printf("  %-48s median %6.1f ms   max %6.1f ms\n", qPrintable(slowest[i].second),
                    percentile(application.slowestByRun[slowest[i].second], 0.5), slowest[i].first);
    std::printf("picture shown: %dx%d pixels in a %dx%d view\n", shownSize.width(), shownSize.height(),
                viewSize.width(), viewSize.height());
    std::printf("resident memory: %.0f MB before the windows, peak %.0f MB while they opened\n",
                residentBefore, residentMegabytes("VmHWM:"));

    // The reference: the file decoded whole by Qt's own reader, nothing else.
    std::vector<double> plain;
    for (int run = 0; run < runs; ++run) {
        clock.start();
        const QImage image(path);
        plain.push_back(double(clock.nsecsElapsed()) / 1e6);
        if (image.isNull()) {
            std::fprintf(stderr, "Qt could not read %s\n", qPrintable(path));
            return 1;
        }
    }
    std::printf("plain QImage load:      median %7.1f ms   p90 %7.1f ms   max %7.1f ms\n",
                percentile(plain, 0.5), percentile(plain, 0.9), percentile(plain, 1.0));
    return 0;
}
