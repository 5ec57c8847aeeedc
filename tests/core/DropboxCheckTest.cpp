// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/DropboxCheck.h"
#include "../core/CapturingLogger.h"
#include "TestSupport.h"
#include "platform/PropertyList.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStringEncoder>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using corvex::test::home;
using corvex::test::writeFile;

class DropboxCheckTest : public testing::Test
{
protected:
    void SetUp() override
    {
        mHome = home() + u"/dropbox-%1"_s.arg(++sCount);
        QDir().mkpath(mHome);
    }

    void setClient(bool running, const QString &bundleVersion, const QString &shortVersion)
    {
        mClient = DropboxClientFacts{running, bundleVersion, shortVersion};
    }

    // The check of this test's home, told about the client set last.
    DropboxCheck check() const
    {
        return DropboxCheck(mHome, [client = mClient] { return client; });
    }

    // A settings file whose second line names the folder, as the client writes it.
    void writeHostDb(const QString &folder) const
    {
        writeFile(mHome + "/.dropbox/host.db", "9f3a61c0d2e4b5a6\n" + folder.toUtf8().toBase64() + "\n");
    }

    QString mHome;
    DropboxClientFacts mClient;
    static inline int sCount = 0;
};

TEST_F(DropboxCheckTest, ClientVersions)
{
    // "Dropbox " is removed wherever it stands; 2.10.1 is newer than 2.4.0 by value; a missing version counts
    // as older; so does a client that is not running.
    const struct
    {
        bool running;
        const char *bundleVersion, *shortVersion;
        bool newEnough;
    } cases[] = {{true, "2.4.0", "2.4.0", true},
                 {true, "2.3.9", "2.4.0", false},
                 {true, "2.4.0", "2.3.9", false},
                 {true, "Dropbox 2.10.1", "Dropbox 2.10.1", true},
                 {true, "2.4.1", "Dropbox 2.4.0b2", false},
                 {true, nullptr, "3.0", false},
                 {true, "3.0", nullptr, false},
                 {false, "3.0", "3.0", false}};
    for (const auto &c : cases) {
        setClient(c.running, QString::fromLatin1(c.bundleVersion), QString::fromLatin1(c.shortVersion));
        EXPECT_EQ(check().runningClientTest(), c.newEnough) << c.bundleVersion << " " << c.shortVersion;
    }
}

TEST_F(DropboxCheckTest, FolderLookupInAnyEncodingAndTheBase64Filter)
{
    EXPECT_FALSE(check().dropboxFolder()) << "no settings file";

    writeHostDb(mHome + "/Dröpbox (Personal)");
    EXPECT_EQ(check().dropboxFolder(), mHome + "/Dröpbox (Personal)");

    // One line; nothing; not base64; an empty second line; not UTF-8; not an absolute path.
    for (const QByteArray &settings :
         QList<QByteArray>{QByteArray("only one line without a newline"), QByteArray(),
                           QByteArray("abc\n!!!not base64***\n"), QByteArray("abc\n\n"),
                           "abc\n" + QByteArray("/tmp/\xff\xfe").toBase64() + "\n",
                           "abc\n" + QByteArray("Dropbox").toBase64() + "\n"}) {
        writeFile(mHome + "/.dropbox/host.db", settings);
        EXPECT_FALSE(check().dropboxFolder()) << settings.constData();
    }

    // The encoding is detected; a path longer than one 256-byte chunk of the decoder.
    const QString longFolder = mHome + "/" + QString(300, QLatin1Char('d'));
    const QString text = "hash\n" + QString::fromLatin1(longFolder.toUtf8().toBase64()) + "\n";
    QStringEncoder utf16(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
    writeFile(mHome + "/.dropbox/host.db", utf16.encode(text));
    EXPECT_EQ(check().dropboxFolder(), longFolder);

    // The filter decodes a line of up to 1024 characters whole; a longer one loses its tail, and a partial
    // result is refused rather than taken for a path.
    const std::optional<QByteArray> decoded = DropboxCheck::decodeBase64(QByteArray(760, 'x').toBase64());
    ASSERT_TRUE(decoded);
    EXPECT_EQ(*decoded, QByteArray(760, 'x'));
    EXPECT_FALSE(DropboxCheck::decodeBase64(QByteArray(1000, 'x').toBase64()));
    EXPECT_EQ(DropboxCheck::decodeBase64("L2hvbWUvYQ=="), QByteArray("/home/a"));
    EXPECT_FALSE(DropboxCheck::decodeBase64("L2hvbWUvYQ")) << "missing padding";
    EXPECT_FALSE(DropboxCheck::decodeBase64(QByteArray()));
}

// The folder test, and the warning that the check logs only when the test is true.
TEST_F(DropboxCheckTest, FolderTestNeedsAScreenshotsDirectoryAndANewClient)
{
    LogCapture capture;
    const QString folder = mHome + "/Dropbox";
    QDir().mkpath(folder);
    writeHostDb(folder);
    setClient(true, "2.4.0", "2.4.0");
    EXPECT_FALSE(check().screenshotFolderTest()) << "no Screenshots folder";
    check().checkDropbox();
    EXPECT_TRUE(capture.messages().isEmpty());

    writeFile(folder + "/Screenshots", "a file, not a folder");
    EXPECT_FALSE(check().screenshotFolderTest());

    QFile::remove(folder + "/Screenshots");
    QDir().mkpath(folder + "/Screenshots");
    EXPECT_TRUE(check().screenshotFolderTest());
    check().checkDropbox();
    const QString warning =
        "The Dropbox feature \"Share screenshots using Dropbox\" is incompatible with Corvex "
        "and might be turned on.\n\nPlease check the preferences in the Dropbox app and "
        "make sure it is turned off.\n";
    EXPECT_EQ(capture.messages(DDLogFlagWarning), QStringList{warning});
    EXPECT_EQ(capture.messages().size(), 1);

    setClient(true, "2.3.9", "2.3.9");
    EXPECT_FALSE(check().screenshotFolderTest());

    // Without the settings file, the folder named in info.json alone is found.
    setClient(true, "2.4.0", "2.4.0");
    QFile::remove(mHome + "/.dropbox/host.db");
    EXPECT_FALSE(check().screenshotFolderTest());
    const QString work = mHome + "/Dropbox (Work)";
    QDir().mkpath(work + "/Screenshots");
    writeFile(mHome + "/.dropbox/info.json", R"({"business": {"path": ")" + work.toUtf8() + R"("}})");
    EXPECT_TRUE(check().screenshotFolderTest());
}

TEST_F(DropboxCheckTest, AccountFoldersFromInfoJson)
{
    LogCapture capture;
    const struct
    {
        QByteArray json;
        QStringList folders;
        bool warned;
    } cases[] = {
        {R"({"personal": {"path": "/p"}, "business": {"path": "/b", "host": 1}})", {"/p", "/b"}, false},
        {R"({"business": {"path": "/b"}})", {"/b"}, false},
        {R"({"personal": {"path": "relative"}, "other": {"path": "/o"}})", {}, false},
        {R"({"personal": {"path": )", {}, true},
        {R"(["personal"])", {}, true},
    };
    for (const auto &c : cases) {
        writeFile(mHome + "/.dropbox/info.json", c.json);
        EXPECT_EQ(check().accountFolders(), c.folders) << c.json.constData();
        EXPECT_EQ(capture.takeMessages().size(), c.warned ? 1 : 0) << c.json.constData();
    }
}

TEST_F(DropboxCheckTest, DistributionFolderNames)
{
    EXPECT_EQ(DropboxCheck::versionFromDistributionFolderName("dropbox-lnx.aarch64-190.4.6383"),
              "190.4.6383");
    EXPECT_TRUE(DropboxCheck::versionFromDistributionFolderName("dropbox-lnx.x86_64").isNull());
    EXPECT_TRUE(DropboxCheck::versionFromDistributionFolderName("other-2.4.0").isNull());
}

// The real client facts: a stand-in client (a copy of sleep named dropbox) runs from the distribution folder.
class DropboxSystemClientTest : public DropboxCheckTest
{
protected:
    std::unique_ptr<QProcess> startClient(const QString &folder)
    {
        QDir().mkpath(folder);
        const QString executable = folder + "/dropbox";
        EXPECT_TRUE(QFile::copy("/bin/sleep", executable));
        auto process = std::make_unique<QProcess>();
        process->start(executable, {"60"});
        EXPECT_TRUE(process->waitForStarted());
        return process;
    }
};

// One test, so that no other test's stand-in client runs at the same time (each test is a process of its
// own).
TEST_F(DropboxSystemClientTest, TheRunningClientsVersion)
{
    EXPECT_FALSE(DropboxCheck::systemClientFacts(mHome).running);
    // A check made without a source of facts asks the system.
    const auto expectClient = [this](const QString &version, bool newEnough) {
        const DropboxClientFacts facts = DropboxCheck::systemClientFacts(mHome);
        EXPECT_TRUE(facts.running);
        EXPECT_EQ(facts.bundleVersion, version);
        EXPECT_EQ(facts.shortVersionString, version);
        EXPECT_EQ(DropboxCheck(mHome, {}).runningClientTest(), newEnough);
    };

    // From the name of the distribution folder it runs from.
    auto client = startClient(mHome + "/.dropbox-dist/dropbox-lnx.x86_64-2.10.1");
    writeFile(mHome + "/.dropbox-dist/VERSION", "1.0.0\n");
    expectClient("2.10.1", true);
    client.reset();

    // From the VERSION file when the folder's name has none.
    client = startClient(mHome + "/.dropbox-dist/current");
    writeFile(mHome + "/.dropbox-dist/VERSION", "2.3.9\n");
    expectClient("2.3.9", false);
    client.reset();

    // From the bundle with the client's identifier.
    const QString bundle = mHome + "/Apps/Dropbox.app";
    writeFile(bundle + "/Contents/Info.plist",
              PropertyList::serialize(QVariantMap{{"CFBundleIdentifier", "com.getdropbox.dropbox"},
                                                  {"CFBundleExecutable", "dropbox"},
                                                  {"CFBundleVersion", "Dropbox 2.4.11"},
                                                  {"CFBundleShortVersionString", "Dropbox 2.4.11"}},
                                      PropertyList::Format::Xml));
    QFile::remove(mHome + "/.dropbox-dist/VERSION");
    client = startClient(bundle + "/Contents/MacOS");
    expectClient("Dropbox 2.4.11", true);
}

} // namespace
