// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex defaults: reads, writes and deletes preference domains.
#include "cli/Command.h"
#include "foundation/CorvexError.h"
#include "platform/PreferenceStore.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QTimeZone>
#include <cmath>
#include <optional>

namespace {

const QString kUsage =
    QStringLiteral("usage: corvex defaults read [DOMAIN [KEY]] | write DOMAIN KEY [TYPE] VALUE... | "
                   "delete DOMAIN [KEY]");

// Why a value could not be parsed (the parse functions return nullopt then).
struct Parse
{
    QString error;
};

QString pairMissing(const QString &domain, const QString &key)
{
    return QStringLiteral("the domain/default pair of (%1, %2) does not exist").arg(domain, key);
}

QString domainMissing(const QString &domain)
{
    return QStringLiteral("the domain %1 does not exist").arg(domain);
}

bool isScalarType(const QString &word)
{
    static const QStringList types{QStringLiteral("-string"),  QStringLiteral("-int"),
                                   QStringLiteral("-integer"), QStringLiteral("-float"),
                                   QStringLiteral("-bool"),    QStringLiteral("-boolean"),
                                   QStringLiteral("-data"),    QStringLiteral("-date")};
    return types.contains(word);
}

std::optional<QVariant> parseScalar(const QString &type, const QString &text, Parse *parse)
{
    if (type == QLatin1String("-string"))
        return QVariant(text);
    if (type == QLatin1String("-int") || type == QLatin1String("-integer")) {
        bool ok = false;
        const qint64 value = text.trimmed().toLongLong(&ok);
        if (ok)
            return QVariant(value);
        parse->error = QStringLiteral("'%1' is not an integer").arg(text);
        return std::nullopt;
    }
    if (type == QLatin1String("-float")) {
        bool ok = false;
        const double value = text.trimmed().toDouble(&ok);
        if (ok && std::isfinite(value))
            return QVariant(value);
        parse->error = QStringLiteral("'%1' is not a number").arg(text);
        return std::nullopt;
    }
    if (type == QLatin1String("-bool") || type == QLatin1String("-boolean")) {
        const QString word = text.trimmed().toLower();
        if (word == QLatin1String("yes") || word == QLatin1String("true") || word == QLatin1String("1"))
            return QVariant(true);
        if (word == QLatin1String("no") || word == QLatin1String("false") || word == QLatin1String("0"))
            return QVariant(false);
        parse->error = QStringLiteral("'%1' is not a boolean (use YES, NO, true, false, 1 or 0)").arg(text);
        return std::nullopt;
    }
    if (type == QLatin1String("-data")) {
        QString hex = text;
        hex.remove(QLatin1Char('<')).remove(QLatin1Char('>'));
        hex = hex.simplified().remove(QLatin1Char(' '));
        static const QString digits = QStringLiteral("0123456789abcdefABCDEF");
        bool valid = hex.size() % 2 == 0;
        for (const QChar c : hex)
            valid = valid && digits.contains(c);
        if (valid)
            return QVariant(QByteArray::fromHex(hex.toLatin1()));
        parse->error =
            QStringLiteral("'%1' is not hexadecimal data (an even number of hex digits)").arg(text);
        return std::nullopt;
    }
    if (type == QLatin1String("-date")) {
        QDateTime date = QDateTime::fromString(text.trimmed(), Qt::ISODateWithMs);
        if (!date.isValid())
            date = QDateTime::fromString(text.trimmed(), Qt::ISODate);
        if (date.isValid())
            return QVariant(date.toUTC());
        parse->error = QStringLiteral("'%1' is not an ISO 8601 date (e.g. 2024-01-31T10:00:00Z)").arg(text);
        return std::nullopt;
    }
    parse->error = QStringLiteral("unknown type '%1'").arg(type);
    return std::nullopt;
}

// The elements of -array: plain words are strings, "-TYPE VALUE" gives a typed element.
std::optional<QVariantList> parseElements(const QStringList &words, Parse *parse)
{
    QVariantList list;
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (!isScalarType(words.at(i))) {
            list.append(words.at(i));
            continue;
        }
        if (i + 1 >= words.size()) {
            parse->error = QStringLiteral("%1 needs a value").arg(words.at(i));
            return std::nullopt;
        }
        const std::optional<QVariant> value = parseScalar(words.at(i), words.at(i + 1), parse);
        if (!value)
            return std::nullopt;
        list.append(*value);
        ++i;
    }
    return list;
}

// The pairs of -dict: KEY VALUE, where a value may be "-TYPE VALUE".
std::optional<QVariantMap> parsePairs(const QStringList &words, Parse *parse)
{
    QVariantMap map;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString key = words.at(i);
        if (i + 1 >= words.size()) {
            parse->error = QStringLiteral("the dictionary key '%1' has no value").arg(key);
            return std::nullopt;
        }
        const QString next = words.at(++i);
        if (!isScalarType(next)) {
            map.insert(key, next);
            continue;
        }
        if (i + 1 >= words.size()) {
            parse->error = QStringLiteral("%1 needs a value").arg(next);
            return std::nullopt;
        }
        const std::optional<QVariant> value = parseScalar(next, words.at(++i), parse);
        if (!value)
            return std::nullopt;
        map.insert(key, *value);
    }
    return map;
}

void printPlist(const QVariant &value)
{
    cli::out(QString::fromUtf8(PropertyList::serialize(value, PropertyList::Format::Xml)));
}

bool checkDomain(const QString &domain)
{
    if (PreferenceStore::isValidDomainName(domain))
        return true;
    cli::fail(QStringLiteral("'%1' is not a valid domain name").arg(domain));
    return false;
}

int runRead(PreferenceStore &store, const QStringList &arguments)
{
    if (arguments.isEmpty()) {
        QVariantMap all;
        for (const QString &domain : store.domainNames())
            all.insert(domain, store.dictionary(domain));
        printPlist(all);
        return 0;
    }
    if (arguments.size() > 2)
        return cli::fail(QStringLiteral("read takes at most a domain and a key (%1)").arg(kUsage));
    const QString &domain = arguments.at(0);
    if (!checkDomain(domain))
        return 1;
    if (!store.domainExists(domain))
        return cli::fail(arguments.size() == 2 ? pairMissing(domain, arguments.at(1))
                                               : domainMissing(domain));
    if (arguments.size() == 1) {
        printPlist(store.dictionary(domain));
        return 0;
    }
    const QVariant value = store.value(domain, arguments.at(1));
    if (!value.isValid())
        return cli::fail(pairMissing(domain, arguments.at(1)));
    printPlist(value);
    return 0;
}

int save(PreferenceStore &store, const QString &domain, const QString &key, const QVariant &value)
{
    CorvexError error;
    if (!store.setValue(domain, key, value, &error) || !store.synchronize(domain, nullptr, &error))
        return cli::fail(QStringLiteral("cannot write %1: %2").arg(domain, error.localizedDescription()));
    return 0;
}

int runWrite(PreferenceStore &store, const QStringList &arguments)
{
    if (arguments.size() < 3)
        return cli::fail(QStringLiteral("write needs a domain, a key and a value (%1)").arg(kUsage));
    const QString &domain = arguments.at(0);
    const QString &key = arguments.at(1);
    if (!checkDomain(domain))
        return 1;
    const QString type = arguments.at(2);
    const QStringList rest = arguments.mid(3);
    Parse parse;
    std::optional<QVariant> value;
    if (type == QLatin1String("-array") || type == QLatin1String("-array-add")) {
        const std::optional<QVariantList> elements = parseElements(rest, &parse);
        if (elements) {
            QVariantList list;
            const QVariant existing = store.value(domain, key);
            if (type == QLatin1String("-array-add") && existing.metaType().id() == QMetaType::QVariantList)
                list = existing.toList();
            list.append(*elements);
            value = list;
        }
    } else if (type == QLatin1String("-dict") || type == QLatin1String("-dict-add")) {
        const std::optional<QVariantMap> pairs = parsePairs(rest, &parse);
        if (pairs) {
            QVariantMap map;
            const QVariant existing = store.value(domain, key);
            if (type == QLatin1String("-dict-add") && existing.metaType().id() == QMetaType::QVariantMap)
                map = existing.toMap();
            map.insert(*pairs);
            value = map;
        }
    } else if (isScalarType(type)) {
        if (rest.size() != 1)
            return cli::fail(QStringLiteral("%1 takes exactly one value").arg(type));
        value = parseScalar(type, rest.first(), &parse);
    } else if (type.startsWith(QLatin1Char('-')) && type.size() > 1 && !type.at(1).isDigit() &&
               type.at(1) != QLatin1Char('.')) {
        return cli::fail(
            QStringLiteral("unknown type '%1' (use -string, -int, -float, -bool, -data, -date, -array, "
                           "-array-add, -dict or -dict-add)")
                .arg(type));
    } else {
        if (!rest.isEmpty())
            return cli::fail(
                QStringLiteral("a plain value is one word; quote it, or give a type such as -array"));
        value = QVariant(type);
    }
    if (!value)
        return cli::fail(parse.error);
    return save(store, domain, key, *value);
}

int runDelete(PreferenceStore &store, const QStringList &arguments)
{
    if (arguments.isEmpty() || arguments.size() > 2)
        return cli::fail(QStringLiteral("delete needs a domain and at most one key (%1)").arg(kUsage));
    const QString &domain = arguments.at(0);
    if (!checkDomain(domain))
        return 1;
    if (arguments.size() == 1) {
        if (!store.domainExists(domain))
            return cli::fail(domainMissing(domain));
        CorvexError error;
        if (!store.removeDomain(domain, &error))
            return cli::fail(
                QStringLiteral("cannot delete %1: %2").arg(domain, error.localizedDescription()));
        return 0;
    }
    const QString &key = arguments.at(1);
    if (!store.value(domain, key).isValid())
        return cli::fail(pairMissing(domain, key));
    return save(store, domain, key, QVariant());
}

} // namespace

int cli::runDefaults(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return cli::fail(kUsage);
    PreferenceStore &store = PreferenceStore::shared();
    const QString verb = arguments.first();
    const QStringList rest = arguments.mid(1);
    if (verb == QLatin1String("read"))
        return runRead(store, rest);
    if (verb == QLatin1String("write"))
        return runWrite(store, rest);
    if (verb == QLatin1String("delete"))
        return runDelete(store, rest);
    return cli::fail(QStringLiteral("unknown defaults action '%1' (%2)").arg(verb, kUsage));
}
