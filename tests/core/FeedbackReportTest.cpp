// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSupport.h"

#include "core/AppUserDefaults.h"
#include "core/FeedbackReport.h"
#include "core/VideoHardwareInfo.h"
#include "foundation/CorvexError.h"
#include "foundation/PreferenceKeys.h"

#include <QDesktopServices>
#include <QSysInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

SystemFacts sampleFacts()
{
    SystemFacts facts;
    facts.bundleVersion = u"2.0.5"_s;
    facts.sourceRevision = u"ce9f1b3"_s;
    facts.operatingSystem = u"Debian GNU/Linux 12 (bookworm), Linux 6.1.0"_s;
    facts.memoryMegabytes = 8192;
    facts.displayCount = 1;
    facts.localeIdentifier = u"en_GB"_s;
    facts.languages = {u"en-GB"_s, u"en"_s, u"de"_s};
    facts.mediumTimeFormat = u"HH:mm:ss"_s;
    return facts;
}

// Records the URLs the desktop is asked to open for one scheme, instead of opening them.
class UrlRecorder : public QObject
{
    Q_OBJECT

public:
    explicit UrlRecorder(const QString &scheme) : mScheme(scheme)
    {
        QDesktopServices::setUrlHandler(mScheme, this, "record");
    }
    ~UrlRecorder() override { QDesktopServices::unsetUrlHandler(mScheme); }

    QList<QUrl> urls;

public Q_SLOTS:
    void record(const QUrl &url) { urls.append(url); }

private:
    QString mScheme;
};

} // namespace

TEST(FeedbackReportTest, SystemDescriptionLines)
{
    EXPECT_EQ(FeedbackReport::systemDescription(sampleFacts()),
              QStringLiteral("Corvex version 2.0.5 (ce9f1b3)\r"
                             "Debian GNU/Linux 12 (bookworm), Linux 6.1.0\r"
                             "8.00 GB RAM\r"
                             "1 display\r"
                             "NSLocaleIdentifier: en_GB\r"
                             "Language Prefs: en-GB, en, de\r"
                             "Med Time Format: \"HH:mm:ss\"\r"
                             "\r"));

    struct Case
    {
        const char *what;
        std::function<void(SystemFacts &)> change;
        int line;
        const char *expected;
    };
    const QStringList four{"fr", "de", "it", "es"};
    const Case cases[] = {
        {"two displays", [](SystemFacts &f) { f.displayCount = 2; }, 3, "2 displays"},
        {"no display", [](SystemFacts &f) { f.displayCount = 0; }, 3, "0 displays"},
        {"four languages", [&](SystemFacts &f) { f.languages = four; }, 5, "Language Prefs: fr, de, it"},
        {"one language", [](SystemFacts &f) { f.languages = {"pt-BR"}; }, 5, "Language Prefs: pt-BR"},
        {"memory unknown", [](SystemFacts &f) { f.memoryMegabytes.reset(); }, 2, "? GB RAM"},
        {"only type",
         [](SystemFacts &f) {
             f.captureSettings = {{"type", "png"}};
         },
         7, "Custom Screencapture Prefs: type = \"png\""},
        {"all three, in order",
         [](SystemFacts &f) {
             f.captureSettings = {{"location", "~/Shots"}, {"type", "jpg"}, {"name", "Shot"}};
         },
         7, "Custom Screencapture Prefs: name = \"Shot\" type = \"jpg\" location = \"~/Shots\""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        SystemFacts facts = sampleFacts();
        c.change(facts);
        const QStringList lines = FeedbackReport::systemDescription(facts, u"\n"_s).split('\n');
        ASSERT_EQ(lines.size(), 9); // eight lines, each ended
        EXPECT_EQ(lines.at(c.line), QLatin1String(c.expected));
        EXPECT_TRUE(lines.last().isEmpty());
    }
}

TEST(FeedbackReportTest, MemoryAndOperatingSystemFromTheirFiles)
{
    EXPECT_EQ(FeedbackReport::memoryLine(15921), u"15.55 GB RAM"_s);

    QTemporaryDir dir;
    struct Case
    {
        const char *contents;
        std::optional<qint64> megabytes;
    };
    const Case cases[] = {
        {"MemTotal:       16303428 kB\nMemFree:  1 kB\n", 15921},
        {"MemFree:  1 kB\nMemTotal:  8388608 kB\n", 8192},
        {"MemTotal:  lots\n", std::nullopt},
        {"MemTotal:  8388608 MB\n", std::nullopt},
        {"", std::nullopt},
    };
    for (const Case &c : cases) {
        const QString path = corvex::test::writeFile(dir.filePath("meminfo"), c.contents);
        EXPECT_EQ(FeedbackReport::physicalMemoryMegabytes(path), c.megabytes) << c.contents;
    }
    EXPECT_EQ(FeedbackReport::physicalMemoryMegabytes(dir.filePath("absent")), std::nullopt);

    const QString kernel = u", Linux %1"_s.arg(QSysInfo::kernelVersion());
    const struct
    {
        const char *contents;
        const char *name;
    } systems[] = {
        {"NAME=\"Debian GNU/Linux\"\nPRETTY_NAME=\"Debian GNU/Linux 12 (bookworm)\"\n",
         "Debian GNU/Linux 12 (bookworm)"},
        {"PRETTY_NAME='Fedora Linux 40'\n", "Fedora Linux 40"},
        {"PRETTY_NAMES=x\nNAME=Arch\n", "Arch"},
        {"ID=x\n", "Linux"},
    };
    for (const auto &c : systems) {
        const QString path = corvex::test::writeFile(dir.filePath("os-release"), c.contents);
        EXPECT_EQ(FeedbackReport::operatingSystemName(path), QLatin1String(c.name) + kernel);
    }
    EXPECT_EQ(FeedbackReport::operatingSystemName(dir.filePath("absent")), u"Linux"_s + kernel);
}

TEST(FeedbackReportTest, TheMailtoTextIsEscapedOnceAndGoesWithTheHelpPageToTheDesktop)
{
    const QString description = u"Corvex version 2.0.5 (ce9f1b3)\rCustom: a = \"~/Shots #1\" 100% é\r"_s;
    EXPECT_EQ(
        FeedbackReport::feedbackMailText(u"help@example.org"_s, description),
        QByteArray("mailto:help@example.org?subject=Corvex%20Feedback&body=%0D%0D---%0D"
                   "Corvex%20version%202.0.5%20(ce9f1b3)%0DCustom:%20a%20=%20%22~/Shots%20%231%22%20100%25%20"
                   "%C3%A9%0D"));

    // The support address and page come from the Info.plist of the bundle built beside the tests.
    const Bundle bundle = FeedbackReport::applicationBundle();
    ASSERT_TRUE(bundle.isValid());
    const QString address = bundle.objectForInfoDictionaryKey(FeedbackReport::SupportEmailKey).toString();
    const QString page = bundle.objectForInfoDictionaryKey(FeedbackReport::SupportWebPageKey).toString();
    ASSERT_FALSE(address.isEmpty());
    ASSERT_TRUE(page.startsWith(u"https://"_s));

    UrlRecorder mail(u"mailto"_s);
    UrlRecorder web(u"https"_s);
    CorvexError error;
    ASSERT_TRUE(FeedbackReport::openFeedbackMail(&error)) << qPrintable(error.localizedDescription());
    ASSERT_TRUE(FeedbackReport::openHelp(&error)) << qPrintable(error.localizedDescription());

    ASSERT_EQ(mail.urls.size(), 1);
    const QByteArray expected = FeedbackReport::feedbackMailText(
        address, FeedbackReport::systemDescription(FeedbackReport::currentSystemFacts()));
    EXPECT_EQ(mail.urls.first().toEncoded(), expected);
    ASSERT_EQ(web.urls.size(), 1);
    EXPECT_EQ(web.urls.first(), FeedbackReport::helpURL(page));
    EXPECT_EQ(FeedbackReport::helpURL(u"https://example.org/corvex/"_s).toString(),
              u"https://example.org/corvex/support/?source=app"_s);
}

TEST(FeedbackReportTest, CaptureSettingsComeFromTheDomainOnly)
{
    auto capture = AppUserDefaults::userDefaultsWithBundleIdentifier(kScreencaptureDomain);
    // Nothing set in the domain: no settings, whatever the desktop's own tool would say.
    EXPECT_TRUE(FeedbackReport::currentSystemFacts().captureSettings.isEmpty());
    capture->setObject(u"png"_s, kScreencaptureTypeKey);
    const SystemFacts facts = FeedbackReport::currentSystemFacts();
    EXPECT_EQ(facts.captureSettings, (QVariantMap{{u"type"_s, u"png"_s}}));
    EXPECT_EQ(facts.bundleVersion, FeedbackReport::applicationBundle().bundleVersion());
}

TEST(FeedbackReportTest, UpdaterProfileEntries)
{
    const auto keys = [](const QList<QVariantMap> &entries) {
        QStringList names;
        for (const QVariantMap &entry : entries) {
            EXPECT_EQ(entry.keys(), (QStringList{"displayKey", "displayValue", "key", "value"}));
            names << entry.value("key").toString();
        }
        return names;
    };
    const QList<QVariantMap> profile = FeedbackReport::feedParameters(true);
    EXPECT_EQ(keys(profile), (QStringList{"vidVendor", "vidDeviceID", "numDisplays"}));
    const quint32 vendor = profile.at(0).value("value").toUInt();
    EXPECT_EQ(profile.at(0).value("displayValue"), VideoHardwareInfo::translateVideoVendorID(vendor));
    EXPECT_EQ(profile.at(2).value("displayValue").toString(), profile.at(2).value("value").toString());

    const QList<QVariantMap> versions = FeedbackReport::feedParameters(false);
    ASSERT_GE(versions.size(), 1);
    EXPECT_EQ(versions.at(0).value("key"), u"appVersion"_s);
    EXPECT_EQ(versions.at(0).value("value"), FeedbackReport::applicationBundle().bundleVersion());
    if (versions.size() == 2) {
        EXPECT_EQ(versions.at(1).value("key"), u"osVersion"_s);
    }
}

#include "FeedbackReportTest.moc"
