// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUAppcast.h"
#include "SUTestSupport.h"
#include "core/SUErrors.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QUrl kBase(u"https://example.org/corvex/appcast.xml"_s);

TEST(SUAppcastTest, ReadsEveryFieldOfAnItem)
{
    const QByteArray xml = R"(<?xml version="1.0"?>
<rss version="2.0" xmlns:corvex="urn:corvex:appcast:1" xmlns:other="urn:other"><channel>
 <title>Corvex</title>
 <item>
  <title>Corvex 2.1</title>
  <pubDate>Tue, 03 Mar 2026 09:30:00 +0100</pubDate>
  <corvex:releaseNotesLink>notes/2.1.html</corvex:releaseNotesLink>
  <other:version>9.9</other:version>
  <enclosure url="Corvex-2.1-x86_64.tar.xz" length="12345" type="application/x-xz"
             corvex:version="2.1.0" corvex:shortVersionString="2.1" corvex:edSignature=" c2ln "/>
 </item>
 <item><title>Old</title><description><![CDATA[<p>a &amp; b</p>]]></description>
  <corvex:version>1.9</corvex:version></item>
</channel></rss>)";
    SUAppcast appcast;
    CorvexError error;
    ASSERT_TRUE(appcast.parse(xml, kBase, &error)) << error.localizedDescription().toStdString();
    ASSERT_EQ(appcast.items().size(), 2);
    const SUAppcastItem &item = appcast.items().at(0);
    EXPECT_EQ(item.title, "Corvex 2.1");
    EXPECT_EQ(item.date, QDateTime(QDate(2026, 3, 3), QTime(8, 30), Qt::UTC));
    EXPECT_EQ(item.releaseNotesURL, QUrl("https://example.org/corvex/notes/2.1.html"));
    EXPECT_EQ(item.fileURL, QUrl("https://example.org/corvex/Corvex-2.1-x86_64.tar.xz"));
    EXPECT_EQ(item.contentLength, 12345);
    EXPECT_EQ(item.contentType, "application/x-xz");
    EXPECT_EQ(item.versionString, "2.1.0"); // not the foreign namespace's version
    EXPECT_EQ(item.displayVersionString(), "2.1");
    EXPECT_EQ(item.edSignature, "c2ln");
    EXPECT_TRUE(item.isInstallable());
    EXPECT_EQ(item.suggestedFileName(), "Corvex-2.1-x86_64.tar.xz");

    const SUAppcastItem &old = appcast.items().at(1);
    EXPECT_EQ(old.itemDescription, "<p>a &amp; b</p>");
    EXPECT_EQ(old.versionString, "1.9");
    EXPECT_FALSE(old.isInstallable());
    EXPECT_THAT(old.installabilityProblem().toStdString(), testing::HasSubstr("names no archive"));
}

TEST(SUAppcastTest, RefusesWhatIsNoFeed)
{
    const struct
    {
        const char *xml;
        const char *expected;
    } cases[] = {
        {"", "is empty"},
        {"   \n", "is empty"},
        {"<rss><channel><item></channel></rss>", "line 1"},
        {"<html><body>Moved</body></html>", "not an RSS feed"},
        {"<rss version=\"2.0\"></rss>", "no RSS channel"},
        {"not xml at all", "cannot be read"},
    };
    for (const auto &c : cases) {
        SUAppcast appcast;
        CorvexError error;
        EXPECT_FALSE(appcast.parse(c.xml, kBase, &error)) << c.xml;
        EXPECT_TRUE(suErrorIs(error, SUError::AppcastParseError)) << c.xml;
        EXPECT_THAT(error.localizedDescription().toStdString(), testing::HasSubstr(c.expected)) << c.xml;
        EXPECT_TRUE(appcast.items().isEmpty());
    }
    SUAppcast empty;
    EXPECT_TRUE(empty.parse("<rss><channel><title>x</title></channel></rss>", kBase));
    EXPECT_TRUE(empty.items().isEmpty());
}

TEST(SUAppcastTest, ChoosesTheNewestNotSkippedVersion)
{
    using Choice = SUAppcast::Choice;
    const struct
    {
        QList<QString> versions;
        const char *host;
        const char *skipped;
        Choice choice;
        const char *chosen;
    } cases[] = {
        {{"2.0.5"}, "2.0.5", "", Choice::UpToDate, "2.0.5"},
        {{"2.0.4", "2.0.5", "2.1b1"}, "2.0.5", "", Choice::UpdateAvailable, "2.1b1"},
        {{"2.1", "2.1b1"}, "2.0.5", "", Choice::UpdateAvailable, "2.1"},
        {{"2.0.10", "2.0.9"}, "2.0.5", "", Choice::UpdateAvailable, "2.0.10"},
        {{"1.9", "2.0"}, "2.0.5", "", Choice::UpToDate, "2.0"}, // a downgrade is never offered
        {{"2.1"}, "2.0.5", "2.1", Choice::SkippedVersion, "2.1"},
        {{"2.2", "2.1"}, "2.0.5", "2.1", Choice::UpdateAvailable, "2.2"},
        {{""}, "2.0.5", "", Choice::NoItems, ""},
        {{}, "2.0.5", "", Choice::NoItems, ""},
    };
    for (const auto &c : cases) {
        QList<sutest::FeedItem> items;
        for (const QString &version : c.versions)
            items.append({version, "https://example.org/a.tar.xz", 1, "c2ln"});
        SUAppcast appcast;
        ASSERT_TRUE(appcast.parse(sutest::makeFeed(items), kBase));
        SUAppcastItem chosen;
        EXPECT_EQ(appcast.chooseItem(c.host, c.skipped, &chosen), c.choice)
            << c.versions.join(',').toStdString();
        EXPECT_EQ(chosen.versionString, c.chosen) << c.versions.join(',').toStdString();
    }
}

} // namespace
