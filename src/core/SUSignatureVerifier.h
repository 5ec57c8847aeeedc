// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

class CorvexError;

// Checks that an archive is the one its maker signed: an Ed25519 signature (64 bytes, base64) of the file's
// bytes against the maker's public key. The key is given as the base64 of its 32 raw bytes (as Info.plist's
// "SUPublicEDKey" holds it) or as a PEM "PUBLIC KEY" block.
class SUSignatureVerifier
{
public:
    // A verifier for the key; check isValid() (or keyError()) before use.
    explicit SUSignatureVerifier(const QString &publicKey);

    bool isValid() const { return mRawKey.size() == 32; }
    // Why the key is unusable; empty when it is valid.
    QString keyError() const { return mKeyError; }
    // The key's 32 raw bytes, in base64.
    QString publicKeyBase64() const { return QString::fromLatin1(mRawKey.toBase64()); }

    // True when the signature matches the bytes; otherwise false with an error that says whether the key,
    // the signature text or the match failed.
    bool verifyData(const QByteArray &data, const QString &base64Signature,
                    CorvexError *error = nullptr) const;

    // The same for a file's bytes (mapped, not copied); an unreadable file is an error of its own.
    bool verifyFile(const QString &path, const QString &base64Signature, CorvexError *error = nullptr) const;

private:
    bool verifyBytes(const uchar *data, qsizetype size, const QString &base64Signature,
                     CorvexError *error) const;

    QByteArray mRawKey;
    QString mKeyError;
};
