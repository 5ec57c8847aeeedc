// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUSignatureVerifier.h"
#include "SUTestSupport.h"
#include "core/SUErrors.h"

#include <gtest/gtest.h>

namespace {

using corvex::test::home;

TEST(SUSignatureVerifierTest, AcceptsOnlyTheSignedBytesAndTheRightUsableKey)
{
    const sutest::Key key, otherKey;
    const QByteArray data = "Corvex.app archive bytes";
    const QString signature = key.sign(data);
    const SUSignatureVerifier verifier(key.publicKeyBase64());
    ASSERT_TRUE(verifier.isValid()) << verifier.keyError().toStdString();

    CorvexError error;
    EXPECT_TRUE(verifier.verifyData(data, signature, &error));
    // Line breaks and blanks in a copied signature do not matter.
    EXPECT_TRUE(verifier.verifyData(data, signature.left(20) + "\n  " + signature.mid(20)));

    const struct
    {
        QByteArray data;
        QString signature;
        const char *expected;
    } refusals[] = {
        {data + "!", signature, "does not match"},
        {data, otherKey.sign(data), "does not match"},
        {data, "", "not the base64"},
        {data, "****", "not the base64"},
        {data, QString::fromLatin1(QByteArray(63, 'x').toBase64()), "64-byte"},
    };
    for (const auto &r : refusals) {
        CorvexError refused;
        EXPECT_FALSE(verifier.verifyData(r.data, r.signature, &refused)) << r.expected;
        EXPECT_TRUE(suErrorIs(refused, SUError::SignatureError));
        EXPECT_THAT(refused.localizedDescription().toStdString(), testing::HasSubstr(r.expected));
    }
    EXPECT_FALSE(SUSignatureVerifier(otherKey.publicKeyBase64()).verifyData(data, signature));

    // Keys it cannot use.
    const char *bad[] = {"", "  ", "not base64 !", "AAAA",
                         "-----BEGIN PUBLIC KEY-----\nAAAA\n-----END PUBLIC KEY-----\n"};
    for (const char *text : bad) {
        const SUSignatureVerifier unusable{QString::fromLatin1(text)};
        EXPECT_FALSE(unusable.isValid()) << text;
        EXPECT_FALSE(unusable.keyError().isEmpty());
        CorvexError refused;
        EXPECT_FALSE(unusable.verifyData(data, signature, &refused));
        EXPECT_TRUE(suErrorIs(refused, SUError::NoPublicKeyError));
    }
}

TEST(SUSignatureVerifierTest, FilesAndPEMKeysFromOpenSSL)
{
    // A key and signature made by the openssl tool, as the release script makes them.
    const QString dir = home() + "/keys";
    const QString archive = corvex::test::writeFile(dir + "/a.tar.xz", QByteArray(100000, 'z') + "end");
    auto openssl = [&](const QStringList &arguments) {
        const auto result = corvex::test::run("openssl", arguments);
        EXPECT_EQ(result.exitCode, 0) << result.err.toStdString();
    };
    openssl({"genpkey", "-algorithm", "ed25519", "-out", dir + "/key.pem"});
    openssl({"pkey", "-in", dir + "/key.pem", "-pubout", "-out", dir + "/pub.pem"});
    openssl({"pkeyutl", "-sign", "-rawin", "-inkey", dir + "/key.pem", "-in", archive, "-out", dir + "/sig"});
    const SUSignatureVerifier verifier(QString::fromLatin1(corvex::test::readFile(dir + "/pub.pem")));
    ASSERT_TRUE(verifier.isValid()) << verifier.keyError().toStdString();
    const QString signature = QString::fromLatin1(corvex::test::readFile(dir + "/sig").toBase64());
    EXPECT_TRUE(verifier.verifyFile(archive, signature));

    corvex::test::writeFile(archive, QByteArray(100000, 'z') + "enD");
    EXPECT_FALSE(verifier.verifyFile(archive, signature));
    CorvexError error;
    EXPECT_FALSE(verifier.verifyFile(dir + "/missing.tar.xz", signature, &error));
    EXPECT_THAT(error.localizedDescription().toStdString(), testing::HasSubstr("cannot be read"));
}

} // namespace
