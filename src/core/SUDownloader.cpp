// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUDownloader.h"

#include "foundation/Version.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

namespace downloader {

QString tr(const char *text)
{
    return QCoreApplication::translate("SUDownloader", text);
}

// A transfer that receives nothing for this long fails.
constexpr int kTransferTimeoutMs = 30000;

} // namespace downloader

SUDownloader::SUDownloader(QObject *parent) : QObject(parent), mManager(new QNetworkAccessManager(this)) {}

SUDownloader::~SUDownloader()
{
    if (mReply) {
        mReply->disconnect(this);
        mReply->abort();
        mReply->deleteLater();
    }
}

QString SUDownloader::userAgent()
{
    return QStringLiteral("Corvex/%1").arg(QLatin1String(CORVEX_BUNDLE_VERSION));
}

void SUDownloader::startToMemory(const QUrl &url, qint64 maximumLength)
{
    mToFile = false;
    mExpectedLength = -1;
    mMaximumLength = maximumLength;
    start(url);
}

void SUDownloader::startToFile(const QUrl &url, const QString &filePath, qint64 expectedLength)
{
    mToFile = true;
    mExpectedLength = expectedLength;
    mMaximumLength = expectedLength;
    mFile.setFileName(filePath);
    if (!mFile.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        mError = suError(
            SUError::DownloadError,
            downloader::tr("The update cannot be saved to %1: %2").arg(filePath, mFile.errorString()));
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT finished(false); }, Qt::QueuedConnection);
        return;
    }
    start(url);
}

void SUDownloader::start(const QUrl &url)
{
    mReceived = 0;
    mData.clear();
    mError = CorvexError();
    mCancelled = false;
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::UserAgentHeader, userAgent());
    request.setTransferTimeout(downloader::kTransferTimeoutMs);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    mReply = mManager->get(request);
    connect(mReply, &QNetworkReply::readyRead, this, &SUDownloader::readAvailable);
    connect(mReply, &QNetworkReply::finished, this, &SUDownloader::replyFinished);
}

void SUDownloader::cancel()
{
    if (!mReply)
        return;
    mCancelled = true;
    mReply->abort();
}

void SUDownloader::readAvailable()
{
    if (!mReply)
        return;
    const QByteArray chunk = mReply->readAll();
    if (chunk.isEmpty())
        return;
    if (mMaximumLength >= 0 && mReceived + chunk.size() > mMaximumLength) {
        mReceived += chunk.size();
        finishWithError(SUError::DownloadLengthError,
                        mToFile
                            ? downloader::tr("The update download is larger than the %1 bytes the feed "
                                             "announced; it was stopped.")
                                  .arg(mMaximumLength)
                            : downloader::tr("The server sent more than %1 bytes; the download was stopped.")
                                  .arg(mMaximumLength));
        return;
    }
    mReceived += chunk.size();
    if (mToFile) {
        if (mFile.write(chunk) != chunk.size()) {
            finishWithError(SUError::DownloadError, downloader::tr("The update cannot be saved to %1: %2")
                                                        .arg(mFile.fileName(), mFile.errorString()));
            return;
        }
    } else {
        mData += chunk;
    }
    qint64 total = mExpectedLength;
    if (total < 0)
        total = mReply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    Q_EMIT progress(mReceived, total > 0 ? total : -1);
}

void SUDownloader::replyFinished()
{
    if (!mReply)
        return;
    readAvailable();
    if (!mReply)
        return; // readAvailable() failed the download
    const int status = mReply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QString host =
        mReply->url().host().isEmpty() ? mReply->url().toDisplayString() : mReply->url().host();
    if (mCancelled) {
        finishWithError(SUError::CancelledError, downloader::tr("The download was cancelled."));
    } else if (status >= 400) {
        finishWithError(mToFile ? SUError::DownloadError : SUError::FeedDownloadError,
                        downloader::tr("The server %1 answered %2 %3 for %4.")
                            .arg(host)
                            .arg(status)
                            .arg(mReply->attribute(QNetworkRequest::HttpReasonPhraseAttribute).toString(),
                                 mReply->url().toDisplayString()));
    } else if (mReply->error() == QNetworkReply::RemoteHostClosedError && mExpectedLength > mReceived) {
        // The server closed the connection before the whole archive had arrived.
        finishWithError(
            SUError::DownloadLengthError,
            downloader::tr("The update download ended after %1 of the %2 bytes the feed announced.")
                .arg(mReceived)
                .arg(mExpectedLength));
    } else if (mReply->error() != QNetworkReply::NoError) {
        finishWithError(mToFile ? SUError::DownloadError : SUError::FeedDownloadError,
                        downloader::tr("%1 cannot be reached: %2")
                            .arg(mReply->url().toDisplayString(), mReply->errorString()));
    } else if (mExpectedLength >= 0 && mReceived != mExpectedLength) {
        finishWithError(
            SUError::DownloadLengthError,
            downloader::tr("The update download ended after %1 of the %2 bytes the feed announced.")
                .arg(mReceived)
                .arg(mExpectedLength));
    } else {
        const QVariant announced = mReply->header(QNetworkRequest::ContentLengthHeader);
        if (announced.isValid() && announced.toLongLong() != mReceived)
            finishWithError(
                SUError::DownloadLengthError,
                downloader::tr("The download ended after %1 of the %2 bytes the server announced.")
                    .arg(mReceived)
                    .arg(announced.toLongLong()));
        else
            finish(true);
    }
}

void SUDownloader::finishWithError(SUError code, const QString &text)
{
    mError = suError(mCancelled ? SUError::CancelledError : code,
                     mCancelled ? downloader::tr("The download was cancelled.") : text);
    finish(false);
}

void SUDownloader::finish(bool ok)
{
    if (QNetworkReply *reply = mReply) {
        mReply = nullptr;
        reply->disconnect(this);
        reply->abort();
        reply->deleteLater();
    }
    if (mToFile) {
        if (ok && !mFile.flush()) {
            ok = false;
            mError = suError(SUError::DownloadError, downloader::tr("The update cannot be saved to %1: %2")
                                                         .arg(mFile.fileName(), mFile.errorString()));
        }
        mFile.close();
        if (!ok)
            mFile.remove();
    }
    Q_EMIT finished(ok);
}

// The meta-object code goes with this file, not with the layer's other classes: a program then links only
// the libraries of the classes it uses.
#include "moc_SUDownloader.cpp"
