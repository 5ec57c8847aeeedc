// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "../core/SUTestSupport.h"

#include <QProcess>
#include <gtest/gtest.h>

namespace {

using corvex::test::home;
using corvex::test::writeFile;

// Runs `corvex` while this process keeps serving HTTP.
corvex::test::ProcessResult runServing(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(CORVEX_CLI_PATH), arguments);
    EXPECT_TRUE(corvex::test::waitUntil([&] { return process.state() == QProcess::NotRunning; },
                                        std::chrono::seconds(30)));
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

TEST(UpdateCommandTest, CheckExitsByWhatTheFeedOffers)
{
    sutest::Server server;
    const sutest::Key key;
    const QString bundle =
        sutest::makeInstalledBundle(home() + "/A/Corvex.app", "2.0.5", key.publicKeyBase64());
    const struct
    {
        sutest::Response feed;
        int exitCode;
        const char *out;
        const char *err;
    } cases[] = {
        {{200, sutest::makeFeed({{"2.0.5", "http://x/a.tar.xz", 1, "c2ln"}})},
         0,
         "2.0.5 (2.0.5) is up to date",
         ""},
        {{200, sutest::makeFeed({{"2.1", "http://x/a.tar.xz", 1, "c2ln"}})},
         2,
         "Corvex 2.1 (2.1) is available",
         ""},
        {{500, "down"}, 1, "", "corvex: update check: The server 127.0.0.1 answered 500"},
    };
    for (const auto &c : cases) {
        server.set("/feed.xml", c.feed);
        const auto result =
            runServing({"update", "check", "--bundle", bundle, "--feed", server.url("/feed.xml").toString()});
        EXPECT_EQ(result.exitCode, c.exitCode) << result.err.toStdString();
        EXPECT_THAT(result.out.toStdString(), testing::HasSubstr(c.out));
        EXPECT_THAT(result.err.toStdString(), testing::HasSubstr(c.err));
        EXPECT_LE(result.err.count('\n'), 1);
    }
}

TEST(UpdateCommandTest, VerifyChecksSignatureAndContents)
{
    const sutest::Key key, otherKey;
    const QByteArray archive = sutest::makeArchive(sutest::bundleEntries("2.1.0"));
    const QString path = writeFile(home() + "/rel/Corvex-2.1.tar.xz", archive);
    writeFile(path + ".sig", key.sign(archive).toLatin1() + "\n");
    const QString keyFile = writeFile(home() + "/rel/key.txt", key.publicKeyBase64().toLatin1());
    const QByteArray evil = sutest::makeArchive({{"../evil", "x"}});
    const QString evilPath = writeFile(home() + "/rel/evil.tar.xz", evil);

    const struct
    {
        QStringList arguments;
        int exitCode;
        const char *expected;
    } cases[] = {
        {{path, "--key", key.publicKeyBase64()}, 0, "good signature; holds Corvex.app 2.1.0 (2.1.0)"},
        {{path, "--key", keyFile}, 0, "good signature"},
        {{path, "--key", otherKey.publicKeyBase64()}, 1, "does not match"},
        {{path, "--key", "short"}, 1, "not the base64 of 32 bytes"},
        {{path, "--key", keyFile, "--signature", otherKey.sign(archive)}, 1, "does not match"},
        {{evilPath, "--key", keyFile, "--signature", key.sign(evil)}, 1, "signature is good, but"},
        {{evilPath, "--key", keyFile}, 1, "no signature given"},
        {{home() + "/missing.tar.xz", "--key", keyFile}, 1, "no such file"},
        {{}, 1, "exactly one archive"},
    };
    for (const auto &c : cases) {
        const auto result = runServing(QStringList{"update", "verify"} + c.arguments);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.expected;
        EXPECT_THAT(QByteArray(result.out + result.err).toStdString(), testing::HasSubstr(c.expected));
    }
}

} // namespace
