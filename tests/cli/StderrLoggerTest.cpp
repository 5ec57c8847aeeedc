// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/StderrLogger.h"
#include "logging/DDLog.h"
#include "logging/DDLogMessage.h"

#include <QByteArrayList>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

// A pipe whose read end is drained into a byte array.
class Pipe
{
public:
    Pipe() { EXPECT_EQ(::pipe2(mEnds, O_CLOEXEC), 0); }
    ~Pipe()
    {
        closeWriteEnd();
        ::close(mEnds[0]);
    }
    int writeEnd() const { return mEnds[1]; }
    void closeWriteEnd()
    {
        if (mEnds[1] >= 0)
            ::close(mEnds[1]);
        mEnds[1] = -1;
    }
    // Everything written: closes the write end first.
    QByteArray readAll()
    {
        closeWriteEnd();
        return readToEnd();
    }
    // Everything written until every write end is closed.
    QByteArray readToEnd()
    {
        QByteArray bytes;
        char buffer[4096];
        ssize_t got = 0;
        while ((got = ::read(mEnds[0], buffer, sizeof buffer)) > 0)
            bytes.append(buffer, got);
        return bytes;
    }

private:
    int mEnds[2] = {-1, -1};
};

DDLogMessage message(const QString &text, quint32 flag)
{
    return DDLogMessage(text, 7, qint32(flag), 1, "StderrLoggerTest.cpp", "message", 1);
}

TEST(StderrLoggerTest, ErrorsArePrintedOneLineEachAndOthersOnlyWhenVerbose)
{
    Pipe quietPipe;
    cli::StderrLogger quiet(quietPipe.writeEnd(), false);
    quiet.logMessage(message(u"Could not read x.png"_s, DDLogFlagError));
    quiet.logMessage(message(u"Renamed x.png"_s, DDLogFlagInfo));
    quiet.logMessage(message(u"Almost full\n"_s, DDLogFlagWarning));
    quiet.logMessage(message(u"Two\nlines"_s, DDLogFlagError));
    EXPECT_EQ(quietPipe.readAll(), QByteArray("corvex: Could not read x.png\ncorvex: Two\nlines\n"));

    Pipe verbosePipe;
    cli::StderrLogger verbose(verbosePipe.writeEnd(), true);
    verbose.logMessage(message(u"Renamed x.png"_s, DDLogFlagInfo));
    verbose.logMessage(message(u"Ends with a newline\n"_s, DDLogFlagWarning));
    EXPECT_EQ(verbosePipe.readAll(), QByteArray("corvex: Renamed x.png\ncorvex: Ends with a newline\n"));
}

TEST(StderrLoggerTest, LinesOfConcurrentWritersNeverInterleave)
{
    Pipe pipe;
    cli::StderrLogger logger(pipe.writeEnd(), true);
    const QString longText(2000, QLatin1Char('x'));
    std::vector<std::thread> writers;
    for (int t = 0; t < 4; ++t)
        writers.emplace_back([&logger, &longText, t] {
            for (int i = 0; i < 25; ++i)
                logger.logMessage(message(u"%1 %2"_s.arg(t).arg(longText), DDLogFlagInfo));
        });
    QByteArray all;
    std::thread reader([&] { all = pipe.readToEnd(); });
    for (std::thread &writer : writers)
        writer.join();
    pipe.closeWriteEnd();
    reader.join();
    const QByteArrayList lines = all.split('\n');
    ASSERT_EQ(lines.size(), 101); // 100 lines and the empty piece after the last newline
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(lines.at(i).size(), qsizetype(8 + 2 + 2000)) << "line " << i;
        EXPECT_TRUE(lines.at(i).startsWith("corvex: ")) << "line " << i;
    }
}

TEST(StderrLoggerTest, ALoggerWhoseDescriptorIsClosedStaysQuiet)
{
    Pipe pipe;
    const int descriptor = ::dup(pipe.writeEnd());
    cli::StderrLogger logger(descriptor, false);
    ::close(descriptor);
    logger.logMessage(message(u"Nowhere to go"_s, DDLogFlagError));
    EXPECT_TRUE(pipe.readAll().isEmpty());
}

} // namespace
