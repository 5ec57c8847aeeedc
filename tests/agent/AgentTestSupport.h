// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Helpers for the tests that run the real agent as a process: starting and stopping it, standing in for the
// application (its bus name and the screenshot notifications it receives), a stand-in program started instead
// of the application, screenshot files, and the shared log file.

#include "TestSupport.h"
#include "foundation/Notifications.h"
#include "platform/DistributedNotificationCenter.h"

#include <QBuffer>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <csignal>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>

namespace corvex::test::agent {

inline QString agentExecutable()
{
    return QStringLiteral(CORVEX_BUNDLE_DIR "/Contents/Helpers/CorvexAgent.app/Contents/MacOS/CorvexAgent");
}

inline QString logFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/Corvex/Logs/Corvex log.txt");
}

inline QString logText()
{
    return QString::fromUtf8(readFile(logFilePath()));
}

// A PNG of the given size with some content.
inline QByteArray pngBytes(int width = 40, int height = 30)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(QColor(200, 40, 90));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// Stores a preference with `corvex defaults write`.
inline void writeDefault(const QString &domain, const QString &key, const QStringList &typeAndValue)
{
    const ProcessResult result =
        runCli(QStringList{QStringLiteral("defaults"), QStringLiteral("write"), domain, key} + typeAndValue);
    ASSERT_EQ(result.exitCode, 0) << result.err.toStdString();
}

// The running agent. Started in a test, stopped (SIGTERM) when destroyed.
class AgentProcess
{
public:
    // The agent of the build, or another copy of it (say, inside a stand-in application bundle).
    explicit AgentProcess(const QString &executable = agentExecutable()) : mExecutable(executable)
    {
        mProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    }
    ~AgentProcess() { terminate(); }

    // Starts the agent and waits until it watches the folder.
    bool start(const QString &watchedFolder)
    {
        mProcess.start(mExecutable, {});
        if (!mProcess.waitForStarted(10000))
            return false;
        const QString line = QStringLiteral("Watching the screenshot folder ") + watchedFolder;
        return waitUntil([&] { return logText().contains(line); }, std::chrono::seconds(15));
    }
    // SIGTERM, then waits for the end; returns the exit code (-1 when it did not end normally).
    int terminate()
    {
        if (mProcess.state() == QProcess::NotRunning)
            return mProcess.exitStatus() == QProcess::NormalExit ? mProcess.exitCode() : -1;
        ::kill(pid_t(mProcess.processId()), SIGTERM);
        if (!mProcess.waitForFinished(15000)) {
            mProcess.kill();
            mProcess.waitForFinished();
            return -1;
        }
        return mProcess.exitStatus() == QProcess::NormalExit ? mProcess.exitCode() : -1;
    }
    QProcess &process() { return mProcess; }

private:
    QString mExecutable;
    QProcess mProcess;
};

// Stands in for the running application: owns its bus name and collects "CorvexScreenshotMatched".
class ApplicationStandIn
{
public:
    ApplicationStandIn()
    {
        mObserver = DistributedNotificationCenter::defaultCenter().addObserver(
            CorvexScreenshotMatchedNotification, nullptr,
            [this](const QString &, const QVariantMap &userInfo) { mReceived.append(userInfo); });
    }
    ~ApplicationStandIn()
    {
        DistributedNotificationCenter::defaultCenter().removeObserver(mObserver);
        setRunning(false);
    }
    void setRunning(bool running)
    {
        QDBusConnectionInterface *bus = QDBusConnection::sessionBus().interface();
        if (running)
            bus->registerService(QStringLiteral("com.ostrel.Corvex"));
        else
            bus->unregisterService(QStringLiteral("com.ostrel.Corvex"));
    }
    const QList<QVariantMap> &received() const { return mReceived; }
    QStringList receivedPaths() const
    {
        QStringList paths;
        for (const QVariantMap &userInfo : mReceived)
            paths.append(userInfo.value(CorvexFilePathKey).toString());
        return paths;
    }

private:
    int mObserver = 0;
    QList<QVariantMap> mReceived;
};

// A folder of its own for each test.
inline QString freshFolder(const QString &name)
{
    static int counter = 0;
    const QString path = home() + QStringLiteral("/t%1-").arg(++counter) + name;
    QDir().mkpath(path);
    return QFileInfo(path).canonicalFilePath();
}

// A test whose screenshots are saved in a folder of its own, with Corvex's preferences cleared.
class ScreenshotFolderTest : public testing::Test
{
protected:
    void SetUp() override
    {
        runCli({QStringLiteral("defaults"), QStringLiteral("delete"), QStringLiteral("com.ostrel.Corvex")});
        mFolder = freshFolder(QStringLiteral("shots"));
        writeDefault(QStringLiteral("com.apple.screencapture"), QStringLiteral("location"), {mFolder});
    }
    QString shot(const QString &name) const { return mFolder + u'/' + name; }
    static void setBool(const char *key, bool value)
    {
        writeDefault(QStringLiteral("com.ostrel.Corvex"), QString::fromLatin1(key),
                     {QStringLiteral("-bool"), value ? QStringLiteral("YES") : QStringLiteral("NO")});
    }
    static void setString(const char *key, const QString &value)
    {
        writeDefault(QStringLiteral("com.ostrel.Corvex"), QString::fromLatin1(key),
                     {QStringLiteral("-string"), value});
    }

    QString mFolder;
};

} // namespace corvex::test::agent
