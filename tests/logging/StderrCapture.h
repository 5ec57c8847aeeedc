// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

// Sends standard error (the plain system log) to a temporary file while an instance lives.
class StderrCapture
{
public:
    StderrCapture()
    {
        std::fflush(stderr);
        char pattern[] = "/tmp/corvex-stderr-XXXXXX";
        mFile = ::mkstemp(pattern);
        ::unlink(pattern);
        mSaved = ::dup(STDERR_FILENO);
        ::dup2(mFile, STDERR_FILENO);
    }
    ~StderrCapture()
    {
        restore();
        ::close(mFile);
    }
    StderrCapture(const StderrCapture &) = delete;
    StderrCapture &operator=(const StderrCapture &) = delete;

    // Everything written so far.
    QString text() const
    {
        QByteArray bytes;
        char buffer[4096];
        ssize_t got = 0;
        off_t offset = 0;
        while ((got = ::pread(mFile, buffer, sizeof buffer, offset)) > 0) {
            bytes.append(buffer, got);
            offset += got;
        }
        return QString::fromUtf8(bytes);
    }

    void restore()
    {
        if (mSaved >= 0) {
            std::fflush(stderr);
            ::dup2(mSaved, STDERR_FILENO);
            ::close(mSaved);
            mSaved = -1;
        }
    }

private:
    int mFile = -1;
    int mSaved = -1;
};
