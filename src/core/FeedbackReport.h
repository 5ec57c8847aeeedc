// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Bundle.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantMap>
#include <optional>

class CorvexError;

// What the system description tells about this computer; currentSystemFacts() gathers it.
struct SystemFacts
{
    QString bundleVersion;                 // the application's "CFBundleVersion"
    QString sourceRevision;                // the revision the program was built from
    QString operatingSystem;               // os-release's PRETTY_NAME and the kernel release
    std::optional<qint64> memoryMegabytes; // physical memory; nothing when unknown
    qint64 displayCount = 0;               // screens
    QString localeIdentifier;              // "en_GB"
    QStringList languages;                 // the user-interface languages, most wanted first
    QString mediumTimeFormat;              // the medium time style's pattern
    QVariantMap captureSettings;           // "name", "type", "location" of the screenshot service's domain
};

// The feedback e-mail, the help page and the updater's profile entries. The support address and the help
// page are the Info.plist keys "CorvexSupportEmail" and "CorvexSupportWebPage" of the application bundle.
class FeedbackReport
{
public:
    FeedbackReport() = delete;

    static inline const QString SupportEmailKey = QStringLiteral("CorvexSupportEmail");
    static inline const QString SupportWebPageKey = QStringLiteral("CorvexSupportWebPage");

    // Codes of the "Corvex" domain: no address or page configured; the desktop could not open the URL.
    enum ErrorCode { NotConfiguredError = 10, CannotOpenURLError = 11 };

    // The bundle of this program; for a program beside the bundle (bin/corvex next to Corvex.app) that
    // bundle. Invalid when there is none.
    static Bundle applicationBundle();

    static SystemFacts currentSystemFacts();

    // Eight lines, each ended by `lineEnd`: version, operating system, memory, displays, locale, languages,
    // time format, custom capture settings (an empty line when there are none).
    static QString systemDescription(const SystemFacts &facts, const QString &lineEnd = QStringLiteral("\r"));

    // "%.2f GB RAM" (megabytes / 1024 in single precision), "? GB RAM" when unknown.
    static QString memoryLine(std::optional<qint64> megabytes);

    // MemTotal of a meminfo file in megabytes; nothing when it cannot be read.
    static std::optional<qint64>
    physicalMemoryMegabytes(const QString &meminfoPath = QStringLiteral("/proc/meminfo"));

    // "<PRETTY_NAME>, Linux <kernel release>" (NAME, else "Linux", when os-release has no PRETTY_NAME).
    static QString operatingSystemName(const QString &osReleasePath = QStringLiteral("/etc/os-release"));

    // The mailto URL text for an address and a system description, percent-escaped once as a whole:
    // "mailto:ADDRESS?subject=Corvex Feedback&body=\r\r---\rDESCRIPTION". URL punctuation stays as it is;
    // "#" and "%" are escaped so that the whole body arrives.
    static QByteArray feedbackMailText(const QString &supportAddress, const QString &description);

    // Builds the feedback e-mail of this system and hands it to the desktop's mail program. False (with the
    // reason) when no support address is configured or nothing could open the URL.
    static bool openFeedbackMail(CorvexError *error = nullptr);

    // "<support web page>/support/?source=app".
    static QUrl helpURL(const QString &supportWebPage);

    // Opens the help page in the default browser. False (with the reason) when no page is configured or
    // nothing could open it.
    static bool openHelp(CorvexError *error = nullptr);

    // The updater's profile entries ("key", "displayKey", "value", "displayValue"): with the system profile
    // the video card vendor and model and the number of displays; without it the application and system
    // versions.
    static QList<QVariantMap> feedParameters(bool sendingSystemProfile);

private:
    static QString infoString(const QString &key);
    static bool openURL(const QUrl &url, const QString &what, CorvexError *error);
};
