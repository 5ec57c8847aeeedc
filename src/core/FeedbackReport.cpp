// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/FeedbackReport.h"

#include "core/AppUserDefaults.h"
#include "core/RenamePattern.h"
#include "core/VideoHardwareInfo.h"
#include "foundation/CorvexError.h"
#include "foundation/PreferenceKeys.h"
#include "foundation/Version.h"
#include "logging/Log.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QFile>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QSysInfo>

namespace {

// Bytes that stay as they are in the escaped mailto text: letters, digits and the URL punctuation.
bool staysUnescaped(char byte)
{
    if ((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9'))
        return true;
    return std::string_view("!$&'()*+,-./:;=?@_~").find(byte) != std::string_view::npos;
}

// The value of one KEY=value line of os-release, unquoted.
QString osReleaseValue(const QByteArray &contents, const QByteArray &key)
{
    for (const QByteArray &line : contents.split('\n')) {
        if (!line.startsWith(key) || line.mid(key.size(), 1) != "=")
            continue;
        QByteArray value = line.mid(key.size() + 1).trimmed();
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
            value.back() == value.front())
            value = value.mid(1, value.size() - 2).replace("\\\"", "\"").replace("\\\\", "\\");
        return QString::fromUtf8(value);
    }
    return QString();
}

QVariantMap profileEntry(const char *key, const char *displayKey, const QVariant &value,
                         const QString &displayValue)
{
    return {{QStringLiteral("key"), QString::fromLatin1(key)},
            {QStringLiteral("displayKey"), QString::fromLatin1(displayKey)},
            {QStringLiteral("value"), value},
            {QStringLiteral("displayValue"), displayValue}};
}

} // namespace

Bundle FeedbackReport::applicationBundle()
{
    const Bundle main = Bundle::mainBundle();
    if (main.isValid() || !QCoreApplication::instance())
        return main;
    const Bundle beside(QCoreApplication::applicationDirPath() + QStringLiteral("/../Corvex.app"));
    return beside.isValid() ? beside : Bundle();
}

SystemFacts FeedbackReport::currentSystemFacts()
{
    SystemFacts facts;
    facts.bundleVersion = applicationBundle().bundleVersion();
    if (facts.bundleVersion.isEmpty())
        facts.bundleVersion = QStringLiteral(CORVEX_BUNDLE_VERSION);
    facts.sourceRevision = QStringLiteral(CORVEX_SOURCE_REVISION);
    facts.operatingSystem = operatingSystemName();
    facts.memoryMegabytes = physicalMemoryMegabytes();
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        facts.displayCount = QGuiApplication::screens().size();
    const QLocale locale;
    facts.localeIdentifier = locale.name();
    facts.languages = locale.uiLanguages();
    facts.mediumTimeFormat =
        RenamePattern::timeFormat(RenamePattern::MediumStyle, QDateTime::currentDateTime(), locale);
    // The values set in the domain itself, not the desktop tool's that stand in for them.
    const auto capture = AppUserDefaults::userDefaultsWithBundleIdentifier(kScreencaptureDomain);
    for (const QString &key : {kScreencaptureNameKey, kScreencaptureTypeKey, kScreencaptureLocationKey}) {
        const QVariant value = capture->objectForKey(key);
        if (value.isValid())
            facts.captureSettings.insert(key, value);
    }
    return facts;
}

QString FeedbackReport::systemDescription(const SystemFacts &facts, const QString &lineEnd)
{
    QStringList lines;
    lines << QStringLiteral("Corvex version %1 (%2)").arg(facts.bundleVersion, facts.sourceRevision);
    lines << facts.operatingSystem;
    lines << memoryLine(facts.memoryMegabytes);
    lines << (facts.displayCount == 1 ? QStringLiteral("1 display")
                                      : QStringLiteral("%1 displays").arg(facts.displayCount));
    lines << QStringLiteral("NSLocaleIdentifier: %1").arg(facts.localeIdentifier);
    lines << QStringLiteral("Language Prefs: %1").arg(facts.languages.mid(0, 3).join(QStringLiteral(", ")));
    lines << QStringLiteral("Med Time Format: \"%1\"").arg(facts.mediumTimeFormat);
    QString capture;
    for (const QString &key : {kScreencaptureNameKey, kScreencaptureTypeKey, kScreencaptureLocationKey}) {
        const QVariant value = facts.captureSettings.value(key);
        if (value.isValid())
            capture += QStringLiteral(" %1 = \"%2\"").arg(key, value.toString());
    }
    lines << (capture.isEmpty() ? QString() : QStringLiteral("Custom Screencapture Prefs:") + capture);
    return lines.join(lineEnd) + lineEnd;
}

QString FeedbackReport::memoryLine(std::optional<qint64> megabytes)
{
    if (!megabytes)
        return QStringLiteral("? GB RAM");
    const float gigabytes = float(*megabytes) * (1.0f / 1024.0f);
    return QString::asprintf("%.2f GB RAM", double(gigabytes));
}

std::optional<qint64> FeedbackReport::physicalMemoryMegabytes(const QString &meminfoPath)
{
    QFile file(meminfoPath);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    // "MemTotal:       16303428 kB"
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (!line.startsWith("MemTotal:"))
            continue;
        const QList<QByteArray> fields = line.mid(9).simplified().split(' ');
        bool ok = false;
        const qint64 kilobytes = fields.value(0).toLongLong(&ok);
        if (!ok || fields.value(1) != "kB")
            return std::nullopt;
        return kilobytes / 1024;
    }
    return std::nullopt;
}

QString FeedbackReport::operatingSystemName(const QString &osReleasePath)
{
    QFile file(osReleasePath);
    QByteArray contents;
    if (file.open(QIODevice::ReadOnly))
        contents = file.readAll();
    QString name = osReleaseValue(contents, "PRETTY_NAME");
    if (name.isEmpty())
        name = osReleaseValue(contents, "NAME");
    if (name.isEmpty())
        name = QStringLiteral("Linux");
    return QStringLiteral("%1, Linux %2").arg(name, QSysInfo::kernelVersion());
}

QByteArray FeedbackReport::feedbackMailText(const QString &supportAddress, const QString &description)
{
    const QString body = QStringLiteral("\r\r---\r") + description;
    const QString text = QStringLiteral("mailto:%1?subject=%2&body=%3")
                             .arg(supportAddress, QStringLiteral("Corvex Feedback"), body);
    QByteArray escaped;
    for (const char byte : text.toUtf8()) {
        if (staysUnescaped(byte)) {
            escaped += byte;
        } else {
            escaped += '%';
            escaped += QByteArray::number(uchar(byte), 16).rightJustified(2, '0').toUpper();
        }
    }
    return escaped;
}

bool FeedbackReport::openFeedbackMail(CorvexError *error)
{
    const QString address = infoString(SupportEmailKey);
    if (address.isEmpty()) {
        if (error)
            *error = CorvexError(CorvexError::CorvexErrorDomain, NotConfiguredError,
                                 {{CorvexError::LocalizedDescriptionKey,
                                   QStringLiteral("No support e-mail address is configured.")}});
        DDLogError(QStringLiteral("No support e-mail address is configured."));
        return false;
    }
    const QByteArray text = feedbackMailText(address, systemDescription(currentSystemFacts()));
    return openURL(QUrl::fromEncoded(text, QUrl::StrictMode), QStringLiteral("the feedback e-mail"), error);
}

QUrl FeedbackReport::helpURL(const QString &supportWebPage)
{
    QString page = supportWebPage;
    while (page.endsWith(QLatin1Char('/')))
        page.chop(1);
    return QUrl(page + QStringLiteral("/support/?source=app"), QUrl::StrictMode);
}

bool FeedbackReport::openHelp(CorvexError *error)
{
    const QString page = infoString(SupportWebPageKey);
    const QUrl url = page.isEmpty() ? QUrl() : helpURL(page);
    if (!url.isValid()) {
        if (error)
            *error = CorvexError(CorvexError::CorvexErrorDomain, NotConfiguredError,
                                 {{CorvexError::LocalizedDescriptionKey,
                                   QStringLiteral("No support web page is configured.")}});
        DDLogError(QStringLiteral("No support web page is configured."));
        return false;
    }
    return openURL(url, QStringLiteral("the help page"), error);
}

QList<QVariantMap> FeedbackReport::feedParameters(bool sendingSystemProfile)
{
    QList<QVariantMap> entries;
    if (sendingSystemProfile) {
        VideoHardwareInfo info;
        info.interrogateHardware();
        info.selectDevice();
        const quint32 vendor = info.vendorID();
        const quint32 device = info.deviceID();
        qint64 displays = 0;
        if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
            displays = QGuiApplication::screens().size();
        entries << profileEntry("vidVendor", "Video Card Vendor", qint64(vendor),
                                VideoHardwareInfo::translateVideoVendorID(vendor));
        entries << profileEntry("vidDeviceID", "Video Card Model", qint64(device),
                                VideoHardwareInfo::translateVideoDeviceID(device, vendor));
        entries << profileEntry("numDisplays", "Number of Displays", displays, QString::number(displays));
        return entries;
    }
    const QString appVersion = applicationBundle().bundleVersion();
    if (!appVersion.isEmpty())
        entries << profileEntry("appVersion", "Application Version", appVersion, appVersion);
    const QString osVersion = QSysInfo::productVersion();
    if (!osVersion.isEmpty() && osVersion != u"unknown")
        entries << profileEntry("osVersion", "OS Version", osVersion, osVersion);
    return entries;
}

QString FeedbackReport::infoString(const QString &key)
{
    const QVariant value = applicationBundle().objectForInfoDictionaryKey(key);
    return value.typeId() == QMetaType::QString ? value.toString().trimmed() : QString();
}

bool FeedbackReport::openURL(const QUrl &url, const QString &what, CorvexError *error)
{
    if (QDesktopServices::openUrl(url))
        return true;
    const QString message = QStringLiteral("Could not open %1 (%2).").arg(what, url.scheme());
    if (error)
        *error = CorvexError(CorvexError::CorvexErrorDomain, CannotOpenURLError,
                             {{CorvexError::LocalizedDescriptionKey, message},
                              {CorvexError::URLErrorKey, url.toString(QUrl::FullyEncoded)}});
    DDLogError(message);
    return false;
}
