// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later

// From a screenshot closed in the watched folder to the renaming window on screen with its picture, the
// application not running: the real agent of this build notices the file and starts the application cold,
// as it does for every screenshot that arrives after the last window was closed. The picture (5120 x 2880
// by default) carries a band of one colour across its middle; the screen's middle row is read from the X
// server every millisecond until that colour is on it. Then the application is ended and the next
// screenshot follows. Prints the median, the 90th percentile and the worst.
//
//   bench_app_agent_to_window [RUNS] [WIDTH HEIGHT]   (run it through bench/agent-to-window-bench.sh, which
//                                                       gives it Xvfb, a home and a session bus of its own)

#include <QBuffer>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

constexpr quint32 BandColour = 0xff00ff;

QString buildDir()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/.."));
}

void runCli(const QStringList &arguments)
{
    QProcess::execute(buildDir() + QStringLiteral("/bin/corvex"), arguments);
}

bool waitFor(const std::function<bool()> &predicate, int milliseconds)
{
    QDeadlineTimer deadline(milliseconds);
    while (!predicate()) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(1);
    }
    return true;
}

// A screenshot-like picture: a gradient with text and noise, and a flat band across its middle third.
QByteArray picturePNG(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient gradient(0, 0, width, height);
    gradient.setColorAt(0, QColor(40, 60, 120));
    gradient.setColorAt(1, QColor(200, 140, 60));
    painter.fillRect(image.rect(), gradient);
    QFont font = painter.font();
    font.setPixelSize(height / 60);
    painter.setFont(font);
    painter.setPen(Qt::white);
    for (int line = 0; line < 12; ++line)
        painter.drawText(width / 10, height / 20 + line * height / 50,
                         QStringLiteral("%1 The quick brown fox jumps over the lazy dog.").arg(line));
    painter.fillRect(QRect(0, height / 3, width, height / 3), QColor::fromRgb(BandColour));
    painter.end();
    for (int y = height * 3 / 4; y < height; y += 3)
        for (int x = 0; x < width; x += 3)
            image.setPixel(x, y, qRgb((x * 7 + y) % 256, (x + y * 3) % 256, (x ^ y) % 256));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// The X server's screen, read one row at a time.
class Screen
{
public:
    Screen() : mConnection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(mConnection))
            return;
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(mConnection)).data;
        mRoot = screen->root;
        mWidth = screen->width_in_pixels;
        mHeight = screen->height_in_pixels;
    }
    ~Screen() { xcb_disconnect(mConnection); }

    bool isOpen() const { return mWidth > 0; }

    // Whether the colour is anywhere on the screen's middle row.
    bool middleRowShows(quint32 colour) const
    {
        xcb_get_image_reply_t *reply =
            xcb_get_image_reply(mConnection,
                                xcb_get_image(mConnection, XCB_IMAGE_FORMAT_Z_PIXMAP, mRoot, 0,
                                              qint16(mHeight / 2), mWidth, 1, ~0u),
                                nullptr);
        if (!reply)
            return false;
        const auto *pixels = reinterpret_cast<const quint32 *>(xcb_get_image_data(reply));
        const int count = xcb_get_image_data_length(reply) / 4;
        const bool shown =
            std::any_of(pixels, pixels + count, [&](quint32 p) { return (p & 0xffffff) == colour; });
        free(reply);
        return shown;
    }

private:
    xcb_connection_t *mConnection;
    xcb_window_t mRoot = 0;
    quint16 mWidth = 0, mHeight = 0;
};

bool applicationRuns()
{
    for (const QString &pid : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        QFile name(QStringLiteral("/proc/%1/comm").arg(pid));
        if (name.open(QIODevice::ReadOnly) && name.readAll() == "Corvex\n")
            return true;
    }
    return false;
}

double percentile(std::vector<double> values, double fraction)
{
    std::sort(values.begin(), values.end());
    return values.at(std::min(values.size() - 1, size_t(fraction * double(values.size() - 1) + 0.5)));
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const int runs = argc > 1 ? std::max(1, atoi(argv[1])) : 10;
    const int width = argc > 3 ? atoi(argv[2]) : 5120;
    const int height = argc > 3 ? atoi(argv[3]) : 2880;
    const Screen screen;
    if (!screen.isOpen()) {
        std::fprintf(stderr, "bench_app_agent_to_window: no X display\n");
        return 1;
    }

    const QString folder = QDir::homePath() + QStringLiteral("/bench-shots");
    QDir().mkpath(folder);
    runCli({QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("com.apple.screencapture"),
            QStringLiteral("location"), folder});
    // A user who has used Corvex before: no first-run questions, no update checks.
    for (const char *key : {"firstRunVers2", "startAtLogIn", "SUEnableAutomaticChecks"})
        runCli({QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("com.ostrel.Corvex"),
                QLatin1String(key), QStringLiteral("-bool"), QStringLiteral("NO")});
    for (const char *key : {"hasAskedToStartAtLogIn", "SUHasLaunchedBefore", "showCorvexWindow",
                            "moveToApplicationsFolderAlertSuppress"})
        runCli({QStringLiteral("defaults"), QStringLiteral("write"), QStringLiteral("com.ostrel.Corvex"),
                QLatin1String(key), QStringLiteral("-bool"), QStringLiteral("YES")});

    const QByteArray png = picturePNG(width, height);
    std::printf("picture: %dx%d PNG, %lld bytes\n", width, height, qint64(png.size()));

    QProcess agent;
    agent.setProcessChannelMode(QProcess::ForwardedChannels);
    agent.start(buildDir() +
                    QStringLiteral("/Corvex.app/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent"),
                {});
    const QString log = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                        QStringLiteral("/Corvex/Logs/Corvex log.txt");
    const auto agentWatches = [&] {
        QFile file(log);
        return file.open(QIODevice::ReadOnly) &&
               file.readAll().contains(("Watching the screenshot folder " + folder).toUtf8());
    };
    if (!agent.waitForStarted(10000) || !waitFor(agentWatches, 15000)) {
        std::fprintf(stderr, "bench_app_agent_to_window: the agent did not start\n");
        return 1;
    }

    std::vector<double> latencies;
    for (int run = 0; run < runs; ++run) {
        QFile file(folder + QStringLiteral("/Screenshot %1.png").arg(run));
        if (!file.open(QIODevice::WriteOnly) || file.write(png) != png.size())
            return 1;
        file.close();
        QElapsedTimer clock;
        clock.start();
        if (!waitFor([&] { return screen.middleRowShows(BandColour); }, 20000)) {
            std::fprintf(stderr, "bench_app_agent_to_window: screenshot %d was not shown\n", run);
            return 1;
        }
        latencies.push_back(double(clock.nsecsElapsed()) / 1e6);
        QProcess::execute(QStringLiteral("pkill"), {QStringLiteral("-x"), QStringLiteral("Corvex")});
        if (!waitFor([] { return !applicationRuns(); }, 10000) ||
            !waitFor([&] { return !screen.middleRowShows(BandColour); }, 10000)) {
            std::fprintf(stderr, "bench_app_agent_to_window: the application did not end\n");
            return 1;
        }
    }
    std::printf("screenshot closed -> window with its picture (application not running, %d runs):\n", runs);
    std::printf("  median %.0f ms   p90 %.0f ms   max %.0f ms\n", percentile(latencies, 0.5),
                percentile(latencies, 0.9), percentile(latencies, 1.0));
    agent.terminate();
    agent.waitForFinished(10000);
    return 0;
}
