// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUSignatureVerifier.h"

#include "core/SUErrors.h"
#include "foundation/CorvexError.h"

#include <QCoreApplication>
#include <QFile>
#include <memory>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <optional>

namespace signature {

QString tr(const char *text)
{
    return QCoreApplication::translate("SUSignatureVerifier", text);
}

std::optional<QByteArray> strictBase64(const QString &text)
{
    const QByteArray compact = text.simplified().remove(QLatin1Char(' ')).toLatin1();
    if (compact.isEmpty())
        return std::nullopt;
    auto result = QByteArray::fromBase64Encoding(compact, QByteArray::AbortOnBase64DecodingErrors);
    if (!result)
        return std::nullopt;
    return *result;
}

// The 32 raw bytes of an Ed25519 key in a PEM "PUBLIC KEY" block; empty when it is none.
QByteArray rawKeyFromPEM(const QByteArray &pem)
{
    std::unique_ptr<BIO, decltype(&BIO_free)> bio(BIO_new_mem_buf(pem.constData(), int(pem.size())),
                                                  &BIO_free);
    if (!bio)
        return {};
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(
        PEM_read_bio_PUBKEY(bio.get(), nullptr, nullptr, nullptr), &EVP_PKEY_free);
    if (!key || EVP_PKEY_id(key.get()) != EVP_PKEY_ED25519)
        return {};
    QByteArray raw(32, '\0');
    size_t length = size_t(raw.size());
    if (EVP_PKEY_get_raw_public_key(key.get(), reinterpret_cast<unsigned char *>(raw.data()), &length) != 1 ||
        length != 32)
        return {};
    return raw;
}

} // namespace signature

SUSignatureVerifier::SUSignatureVerifier(const QString &publicKey)
{
    if (publicKey.trimmed().isEmpty()) {
        mKeyError = signature::tr("No public key is given to check the update's signature with.");
        return;
    }
    if (publicKey.contains(QLatin1String("-----BEGIN"))) {
        mRawKey = signature::rawKeyFromPEM(publicKey.toLatin1());
        if (mRawKey.isEmpty())
            mKeyError = signature::tr("The public key is not an Ed25519 public key in PEM form.");
        return;
    }
    const auto raw = signature::strictBase64(publicKey);
    if (!raw || raw->size() != 32) {
        mKeyError = signature::tr("The public key is not the base64 of 32 bytes.");
        return;
    }
    mRawKey = *raw;
}

bool SUSignatureVerifier::verifyData(const QByteArray &data, const QString &base64Signature,
                                     CorvexError *error) const
{
    return verifyBytes(reinterpret_cast<const uchar *>(data.constData()), data.size(), base64Signature,
                       error);
}

bool SUSignatureVerifier::verifyFile(const QString &path, const QString &base64Signature,
                                     CorvexError *error) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error =
                suError(SUError::SignatureError,
                        signature::tr("The archive %1 cannot be read: %2").arg(path, file.errorString()));
        return false;
    }
    if (file.size() == 0) {
        static const uchar empty = 0;
        return verifyBytes(&empty, 0, base64Signature, error);
    }
    const uchar *bytes = file.map(0, file.size());
    if (bytes)
        return verifyBytes(bytes, file.size(), base64Signature, error);
    const QByteArray data = file.readAll();
    return verifyData(data, base64Signature, error);
}

bool SUSignatureVerifier::verifyBytes(const uchar *data, qsizetype size, const QString &base64Signature,
                                      CorvexError *error) const
{
    auto fail = [error](SUError code, const QString &text) {
        if (error)
            *error = suError(code, text);
        return false;
    };
    if (!isValid())
        return fail(SUError::NoPublicKeyError, mKeyError);
    const auto signatureBytes = signature::strictBase64(base64Signature);
    if (!signatureBytes || signatureBytes->size() != 64)
        return fail(
            SUError::SignatureError,
            signature::tr("The update's signature is not the base64 of a 64-byte Ed25519 signature."));
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr,
                                    reinterpret_cast<const unsigned char *>(mRawKey.constData()), 32),
        &EVP_PKEY_free);
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (!key || !context || EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1)
        return fail(SUError::NoPublicKeyError, signature::tr("The public key cannot be used by OpenSSL."));
    const int result =
        EVP_DigestVerify(context.get(), reinterpret_cast<const unsigned char *>(signatureBytes->constData()),
                         size_t(signatureBytes->size()), data, size_t(size));
    if (result != 1)
        return fail(
            SUError::SignatureError,
            signature::tr("The update's signature does not match the archive: it is damaged or was not "
                          "made by Corvex's developers."));
    return true;
}
