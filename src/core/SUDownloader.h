// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/SUErrors.h"

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <QPointer>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

// One HTTP(S) download: into memory (a feed) or into a file (an archive), with progress, a size bound and
// Cancel. A body longer than the bound is stopped as soon as it passes it; a body shorter than the length
// the feed announced, or than the server's Content-Length, fails. finished() comes exactly once per start.
class SUDownloader : public QObject
{
    Q_OBJECT

public:
    explicit SUDownloader(QObject *parent = nullptr);
    ~SUDownloader() override;

    // Starts fetching the URL into memory; at most maximumLength bytes are accepted.
    void startToMemory(const QUrl &url, qint64 maximumLength);

    // Starts fetching the URL into the file (created or truncated). With expectedLength >= 0 the body must
    // have exactly that many bytes.
    void startToFile(const QUrl &url, const QString &filePath, qint64 expectedLength);

    // Stops the download; finished() reports the cancellation.
    void cancel();

    bool isRunning() const { return !mReply.isNull(); }

    // The body of a memory download, after finished(true).
    QByteArray data() const { return mData; }

    // The error of the last failed download.
    CorvexError error() const { return mError; }

    // The identification sent as User-Agent ("Corvex/2.0.5").
    static QString userAgent();

Q_SIGNALS:
    // Bytes received so far and the total expected (-1 when unknown).
    void progress(qint64 received, qint64 total);
    // The download ended: true when the whole body arrived.
    void finished(bool ok);

private:
    void start(const QUrl &url);
    void readAvailable();
    void replyFinished();
    void finishWithError(SUError code, const QString &text);
    void finish(bool ok);

    QNetworkAccessManager *mManager;
    QPointer<QNetworkReply> mReply;
    QFile mFile;
    bool mToFile = false;
    qint64 mExpectedLength = -1;
    qint64 mMaximumLength = -1;
    qint64 mReceived = 0;
    QByteArray mData;
    CorvexError mError;
    bool mCancelled = false;
};
