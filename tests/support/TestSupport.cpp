// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QThread>
#include <cmath>

void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << text.toStdString() << '"';
}

void PrintTo(const QStringList &list, std::ostream *stream)
{
    *stream << '[' << list.join(QStringLiteral(", ")).toStdString() << ']';
}

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

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList readLines(const QString &path)
{
    return QString::fromUtf8(readFile(path)).split(u'\n', Qt::SkipEmptyParts);
}

QString installRecordingOpener(const QString &desktopId, const QByteArray &mimeTypes)
{
    const QString record = home() + QStringLiteral("/opened-%1.txt").arg(desktopId);
    QFile::remove(record);
    const QString program = writeFile(home() + QStringLiteral("/bin/record-") + desktopId,
                                      "#!/bin/sh\nfor f in \"$@\"; do printf '%s\\n' \"$f\" >> \"" +
                                          record.toUtf8() + "\"; done\n");
    QFile::setPermissions(program, QFile::permissions(program) | QFile::ExeOwner);
    writeFile(home() + QStringLiteral("/.local/share/applications/%1.desktop").arg(desktopId),
              "[Desktop Entry]\nType=Application\nName=" + desktopId.toUtf8() + "\nExec=" + program.toUtf8() +
                  " %f\n" + (mimeTypes.isEmpty() ? QByteArray() : "MimeType=" + mimeTypes + "\n"));
    return record;
}

double psnr(const QImage &a, const QImage &b)
{
    double sum = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            const int dr = qRed(p) - qRed(q), dg = qGreen(p) - qGreen(q), db = qBlue(p) - qBlue(q);
            sum += dr * dr + dg * dg + db * db;
        }
    const double mse = sum / (3.0 * a.width() * a.height());
    return mse == 0 ? 99.0 : 10 * std::log10(255.0 * 255.0 / mse);
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
