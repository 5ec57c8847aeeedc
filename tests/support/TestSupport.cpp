// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

namespace corvex::test {

QString home()
{
    return QDir::homePath();
}

bool waitUntil(const std::function<bool()> &predicate, std::chrono::milliseconds timeout)
{
    QDeadlineTimer deadline(timeout);
    while (!predicate()) {
        if (deadline.hasExpired())
            return predicate();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
    return true;
}

void spin(std::chrono::milliseconds duration)
{
    QDeadlineTimer deadline(duration);
    while (!deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
}

QString writeFile(const QString &path, const QByteArray &bytes)
{
    const QFileInfo info(path);
    QDir().mkpath(info.absolutePath());
    QFile file(info.absoluteFilePath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return {};
    file.write(bytes);
    return info.absoluteFilePath();
}

ProcessResult run(const QString &program, const QStringList &arguments, const QByteArray &input,
                  std::chrono::milliseconds timeout)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.start(program, arguments);
    ProcessResult result;
    if (!process.waitForStarted(10000)) {
        result.err = process.errorString().toUtf8();
        return result;
    }
    if (!input.isEmpty())
        process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(int(timeout.count()))) {
        process.kill();
        process.waitForFinished();
    }
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return result;
}

ProcessResult runCli(const QStringList &arguments, const QByteArray &input)
{
    return run(QStringLiteral(CORVEX_CLI_PATH), arguments, input);
}

} // namespace corvex::test
