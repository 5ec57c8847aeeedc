// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// What the updater tests share: a local HTTP server, an Ed25519 signing key, archives and bundles made on
// the spot.

#include "TestSupport.h"
#include "platform/PropertyList.h"

#include <QHash>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <archive.h>
#include <archive_entry.h>
#include <memory>
#include <openssl/evp.h>

namespace sutest {

// One answer of the server: status, body, and optionally a Content-Length that differs from the body (a
// server that promises more than it sends, then closes).
struct Response
{
    int status = 200;
    QByteArray body;
    qint64 announcedLength = -1;
    bool keepOpen = false; // leave the connection open after the body
};

// A minimal HTTP/1.0 server on 127.0.0.1: one answer per path; every request's target is recorded.
class Server : public QTcpServer
{
public:
    Server()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection())
                connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { answer(socket); });
        });
    }

    void set(const QString &path, const Response &response) { mResponses.insert(path, response); }
    QUrl url(const QString &path) const
    {
        return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(path));
    }
    // The request targets in order, e.g. "/appcast.xml?appVersion=2.0.5".
    QStringList requests;

private:
    void answer(QTcpSocket *socket)
    {
        QByteArray &buffer = mBuffers[socket];
        buffer += socket->readAll();
        if (!buffer.contains("\r\n\r\n"))
            return;
        const QByteArray target = buffer.split(' ').value(1);
        requests << QString::fromLatin1(target);
        const QString path = QUrl(QString::fromLatin1(target)).path();
        const Response response = mResponses.value(path, Response{404, "not found"});
        const qint64 length = response.announcedLength >= 0 ? response.announcedLength : response.body.size();
        QByteArray head =
            "HTTP/1.0 " + QByteArray::number(response.status) + (response.status == 200 ? " OK" : " Error") +
            "\r\nContent-Length: " + QByteArray::number(length) + "\r\nConnection: close\r\n\r\n";
        socket->write(head + response.body);
        if (!response.keepOpen)
            socket->disconnectFromHost();
        mBuffers.remove(socket);
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }

    QHash<QString, Response> mResponses;
    QHash<QTcpSocket *, QByteArray> mBuffers;
};

// An Ed25519 key pair made for the test.
class Key
{
public:
    Key()
    {
        EVP_PKEY_CTX *context = EVP_PKEY_CTX_new_id(EVP_PKEY_ED25519, nullptr);
        EVP_PKEY_keygen_init(context);
        EVP_PKEY *key = nullptr;
        EVP_PKEY_keygen(context, &key);
        EVP_PKEY_CTX_free(context);
        mKey.reset(key);
    }
    QString publicKeyBase64() const
    {
        QByteArray raw(32, '\0');
        size_t length = 32;
        EVP_PKEY_get_raw_public_key(mKey.get(), reinterpret_cast<unsigned char *>(raw.data()), &length);
        return QString::fromLatin1(raw.toBase64());
    }
    QString sign(const QByteArray &data) const
    {
        EVP_MD_CTX *context = EVP_MD_CTX_new();
        EVP_DigestSignInit(context, nullptr, nullptr, nullptr, mKey.get());
        QByteArray signature(64, '\0');
        size_t length = 64;
        EVP_DigestSign(context, reinterpret_cast<unsigned char *>(signature.data()), &length,
                       reinterpret_cast<const unsigned char *>(data.constData()), size_t(data.size()));
        EVP_MD_CTX_free(context);
        return QString::fromLatin1(signature.toBase64());
    }

private:
    struct Free
    {
        void operator()(EVP_PKEY *key) const { EVP_PKEY_free(key); }
    };
    std::unique_ptr<EVP_PKEY, Free> mKey;
};

// One entry of an archive: a file (data), a folder (path ends in "/") or a symbolic link (linkTarget).
struct Entry
{
    QString path;
    QByteArray data = {};
    QString linkTarget = {};
    int mode = 0644;
};

// A tar.xz archive of the entries, in memory.
inline QByteArray makeArchive(const QList<Entry> &entries)
{
    QByteArray output(16 << 20, '\0');
    size_t used = 0;
    archive *writer = archive_write_new();
    archive_write_set_format_pax_restricted(writer);
    archive_write_add_filter_xz(writer);
    archive_write_open_memory(writer, output.data(), size_t(output.size()), &used);
    for (const Entry &item : entries) {
        archive_entry *entry = archive_entry_new();
        archive_entry_set_pathname(entry, item.path.toUtf8().constData());
        if (!item.linkTarget.isEmpty()) {
            archive_entry_set_filetype(entry, AE_IFLNK);
            archive_entry_set_symlink(entry, item.linkTarget.toUtf8().constData());
            archive_entry_set_perm(entry, 0777);
        } else if (item.path.endsWith(QLatin1Char('/'))) {
            archive_entry_set_filetype(entry, AE_IFDIR);
            archive_entry_set_perm(entry, 0755);
        } else {
            archive_entry_set_filetype(entry, AE_IFREG);
            archive_entry_set_perm(entry, item.mode);
            archive_entry_set_size(entry, item.data.size());
        }
        archive_write_header(writer, entry);
        if (!item.data.isEmpty())
            archive_write_data(writer, item.data.constData(), size_t(item.data.size()));
        archive_entry_free(entry);
    }
    archive_write_close(writer);
    archive_write_free(writer);
    output.truncate(qsizetype(used));
    return output;
}

inline QByteArray infoPlist(const QString &version, const QString &publicKey = {})
{
    QVariantMap info{{"CFBundleIdentifier", "com.ostrel.Corvex"},
                     {"CFBundleName", "Corvex"},
                     {"CFBundleExecutable", "Corvex"},
                     {"CFBundleVersion", version},
                     {"CFBundleShortVersionString", version}};
    if (!publicKey.isEmpty())
        info.insert("SUPublicEDKey", publicKey);
    return PropertyList::serialize(info, PropertyList::Format::Xml);
}

// The entries of a release archive holding Corvex.app of the version.
inline QList<Entry> bundleEntries(const QString &version)
{
    return {{"Corvex.app/"},
            {"Corvex.app/Contents/"},
            {"Corvex.app/Contents/Info.plist", infoPlist(version)},
            {"Corvex.app/Contents/MacOS/"},
            {"Corvex.app/Contents/MacOS/Corvex", "#!/bin/sh\necho " + version.toUtf8() + "\n", {}, 0755},
            {"Corvex.app/Contents/Resources/"},
            {"Corvex.app/Contents/Resources/current", {}, "../Info.plist"}};
}

// An installed bundle of the version at the path, trusting the key.
inline QString makeInstalledBundle(const QString &path, const QString &version, const QString &publicKey)
{
    corvex::test::writeFile(path + "/Contents/Info.plist", infoPlist(version, publicKey));
    const QString executable = corvex::test::writeFile(path + "/Contents/MacOS/Corvex", "#!/bin/sh\n");
    QFile::setPermissions(executable, QFile::permissions(executable) | QFile::ExeOwner);
    return path;
}

// An appcast with one item per (version, archive URL, length, signature); empty fields are left out.
struct FeedItem
{
    QString version;
    QString url;
    qint64 length = -1;
    QString signature;
};

inline QByteArray makeFeed(const QList<FeedItem> &items)
{
    QByteArray xml =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<rss version=\"2.0\" xmlns:corvex=\"urn:corvex:appcast:1\"><channel><title>Corvex</title>\n";
    for (const FeedItem &item : items) {
        xml += "<item><title>Corvex " + item.version.toUtf8() +
               "</title><pubDate>Mon, 02 Mar 2026 10:00:00 +0000</pubDate>"
               "<description><![CDATA[<h2>New</h2><p>Faster renaming.</p>]]></description>";
        if (!item.url.isEmpty()) {
            xml += "<enclosure url=\"" + item.url.toUtf8() +
                   "\" type=\"application/x-xz\" corvex:version=\"" + item.version.toUtf8() +
                   "\" corvex:shortVersionString=\"" + item.version.toUtf8() + "\"";
            if (item.length >= 0)
                xml += " length=\"" + QByteArray::number(item.length) + "\"";
            if (!item.signature.isEmpty())
                xml += " corvex:edSignature=\"" + item.signature.toUtf8() + "\"";
            xml += "/>";
        } else {
            xml += "<corvex:version>" + item.version.toUtf8() + "</corvex:version>";
        }
        xml += "</item>\n";
    }
    return xml + "</channel></rss>\n";
}

} // namespace sutest
