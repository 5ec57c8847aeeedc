// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/SUAppcast.h"

#include "core/SUErrors.h"
#include "foundation/CorvexError.h"
#include "foundation/QZSUStandardVersionComparator.h"

#include <QCoreApplication>
#include <QXmlStreamReader>

namespace appcast {

// Reads one <item> whose start element the reader is on.
SUAppcastItem readItem(QXmlStreamReader &reader, const QUrl &baseURL)
{
    SUAppcastItem item;
    const QString ns = SUAppcast::kNamespace;
    while (reader.readNextStartElement()) {
        const QStringView name = reader.name();
        const bool ours = reader.namespaceUri() == ns;
        const bool plain = reader.namespaceUri().isEmpty();
        if (plain && name == QLatin1String("title")) {
            item.title = reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else if (plain && name == QLatin1String("pubDate")) {
            item.date = QDateTime::fromString(reader.readElementText().trimmed(), Qt::RFC2822Date);
        } else if (plain && name == QLatin1String("description")) {
            item.itemDescription = reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        } else if (ours && name == QLatin1String("releaseNotesLink")) {
            item.releaseNotesURL = baseURL.resolved(QUrl(reader.readElementText().trimmed()));
        } else if (ours && name == QLatin1String("version") && item.versionString.isEmpty()) {
            item.versionString = reader.readElementText().trimmed();
        } else if (ours && name == QLatin1String("shortVersionString") && item.shortVersionString.isEmpty()) {
            item.shortVersionString = reader.readElementText().trimmed();
        } else if (plain && name == QLatin1String("enclosure")) {
            const QXmlStreamAttributes attributes = reader.attributes();
            const QString url = attributes.value(QLatin1String("url")).toString().trimmed();
            if (!url.isEmpty())
                item.fileURL = baseURL.resolved(QUrl(url));
            bool ok = false;
            const qint64 length = attributes.value(QLatin1String("length")).toLongLong(&ok);
            item.contentLength = ok && length >= 0 ? length : -1;
            item.contentType = attributes.value(QLatin1String("type")).toString();
            // The enclosure's versions take precedence over item-level ones.
            const QString version = attributes.value(ns, QLatin1String("version")).toString().trimmed();
            if (!version.isEmpty())
                item.versionString = version;
            const QString shortVersion =
                attributes.value(ns, QLatin1String("shortVersionString")).toString().trimmed();
            if (!shortVersion.isEmpty())
                item.shortVersionString = shortVersion;
            item.edSignature = attributes.value(ns, QLatin1String("edSignature")).toString().trimmed();
            reader.skipCurrentElement();
        } else {
            reader.skipCurrentElement();
        }
    }
    return item;
}

} // namespace appcast

bool SUAppcast::parse(const QByteArray &xml, const QUrl &baseURL, CorvexError *error)
{
    mItems.clear();
    if (xml.trimmed().isEmpty()) {
        if (error)
            *error = suError(SUError::AppcastParseError,
                             QCoreApplication::translate("SUAppcast", "The update feed is empty."));
        return false;
    }
    QXmlStreamReader reader(xml);
    bool sawChannel = false;
    QList<SUAppcastItem> items;
    if (reader.readNextStartElement()) {
        if (reader.name() != QLatin1String("rss")) {
            reader.raiseError(
                QCoreApplication::translate("SUAppcast", "the document is <%1>, not an RSS feed")
                    .arg(reader.name().toString()));
        }
        while (!reader.hasError() && reader.readNextStartElement()) {
            if (reader.name() != QLatin1String("channel")) {
                reader.skipCurrentElement();
                continue;
            }
            sawChannel = true;
            while (reader.readNextStartElement()) {
                if (reader.name() == QLatin1String("item") && reader.namespaceUri().isEmpty())
                    items.append(appcast::readItem(reader, baseURL));
                else
                    reader.skipCurrentElement();
            }
        }
    }
    if (!reader.hasError() && !sawChannel)
        reader.raiseError(QCoreApplication::translate("SUAppcast", "it holds no RSS channel"));
    if (reader.hasError()) {
        if (error)
            *error = suError(
                SUError::AppcastParseError,
                QCoreApplication::translate("SUAppcast", "The update feed cannot be read: %1 (line %2).")
                    .arg(reader.errorString())
                    .arg(reader.lineNumber()));
        return false;
    }
    mItems = items;
    return true;
}

SUAppcast::Choice SUAppcast::chooseItem(const QString &hostVersion, const QString &skippedVersion,
                                        SUAppcastItem *item) const
{
    const QZSUStandardVersionComparator &comparator = QZSUStandardVersionComparator::defaultComparator();
    const SUAppcastItem *best = nullptr;
    for (const SUAppcastItem &candidate : mItems) {
        if (candidate.versionString.isEmpty())
            continue;
        if (!best || comparator.compareVersion(candidate.versionString, best->versionString) ==
                         QZSUStandardVersionComparator::OrderedDescending)
            best = &candidate;
    }
    if (!best)
        return Choice::NoItems;
    if (item)
        *item = *best;
    if (comparator.compareVersion(best->versionString, hostVersion) !=
        QZSUStandardVersionComparator::OrderedDescending)
        return Choice::UpToDate;
    if (!skippedVersion.isEmpty() && comparator.compareVersion(best->versionString, skippedVersion) ==
                                         QZSUStandardVersionComparator::OrderedSame)
        return Choice::SkippedVersion;
    return Choice::UpdateAvailable;
}
