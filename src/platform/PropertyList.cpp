// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QFile>
#include <QTimeZone>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <plist/plist.h>

namespace PropertyList {
namespace {

// Property-list dates count seconds from 2001-01-01 00:00:00 UTC.
constexpr qint64 kEpoch2001MSecs = 978307200000LL;

struct NodeDeleter
{
    void operator()(plist_t node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

int typeOf(const QVariant &value)
{
    return value.metaType().id();
}

plist_t toNode(const QVariant &value, QString *errorText)
{
    switch (typeOf(value)) {
    case QMetaType::QString: {
        // Strings travel as C strings: one holding a NUL character would be cut short.
        const QString text = value.toString();
        if (text.contains(QChar(0))) {
            if (errorText)
                *errorText =
                    QStringLiteral("a string holds a NUL character, which a property list cannot keep");
            return nullptr;
        }
        return plist_new_string(text.toUtf8().constData());
    }
    case QMetaType::Bool:
        return plist_new_bool(value.toBool() ? 1 : 0);
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::Short:
    case QMetaType::Char:
    case QMetaType::SChar:
        return plist_new_uint(static_cast<uint64_t>(value.toLongLong()));
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
    case QMetaType::UShort:
    case QMetaType::UChar:
        return plist_new_uint(value.toULongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return plist_new_real(value.toDouble());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return plist_new_data(bytes.constData(), static_cast<uint64_t>(bytes.size()));
    }
    case QMetaType::QDateTime: {
        const qint64 ms = value.toDateTime().toMSecsSinceEpoch() - kEpoch2001MSecs;
        qint64 sec = ms / 1000;
        qint64 msec = ms % 1000;
        if (msec < 0) {
            msec += 1000;
            sec -= 1;
        }
        return plist_new_date(static_cast<int32_t>(sec), static_cast<int32_t>(msec * 1000));
    }
    case QMetaType::Nullptr:
        return plist_new_uid(0);
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        plist_t array = plist_new_array();
        for (const QVariant &element : value.toList()) {
            plist_t child = toNode(element, errorText);
            if (!child) {
                plist_free(array);
                return nullptr;
            }
            plist_array_append_item(array, child);
        }
        return array;
    }
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        plist_t dict = plist_new_dict();
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            // A key travels as a C string too.
            if (it.key().contains(QChar(0))) {
                if (errorText)
                    *errorText =
                        QStringLiteral("a key holds a NUL character, which a property list cannot keep");
                plist_free(dict);
                return nullptr;
            }
            plist_t child = toNode(it.value(), errorText);
            if (!child) {
                plist_free(dict);
                return nullptr;
            }
            plist_dict_set_item(dict, it.key().toUtf8().constData(), child);
        }
        return dict;
    }
    default:
        if (errorText)
            *errorText =
                QStringLiteral("a value of type %1 is not a property-list type")
                    .arg(QString::fromLatin1(value.metaType().name() ? value.metaType().name() : "none"));
        return nullptr;
    }
}

QString takeString(char *text)
{
    QString result = QString::fromUtf8(text);
    std::free(text);
    return result;
}

QVariant fromNode(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t b = 0;
        plist_get_bool_val(node, &b);
        return QVariant(b != 0);
    }
    case PLIST_UINT: {
        uint64_t v = 0;
        plist_get_uint_val(node, &v);
        return QVariant(static_cast<qint64>(v));
    }
    case PLIST_REAL: {
        double d = 0;
        plist_get_real_val(node, &d);
        return QVariant(d);
    }
    case PLIST_STRING: {
        // By length: a string read from a binary file may hold NUL characters (the library's own getter
        // refuses those).
        uint64_t length = 0;
        const char *text = plist_get_string_ptr(node, &length);
        return QVariant(QString::fromUtf8(text, text ? qsizetype(length) : 0));
    }
    case PLIST_KEY: {
        char *text = nullptr;
        plist_get_key_val(node, &text);
        return QVariant(takeString(text));
    }
    case PLIST_DATA: {
        char *bytes = nullptr;
        uint64_t length = 0;
        plist_get_data_val(node, &bytes, &length);
        QByteArray data(bytes, static_cast<qsizetype>(length));
        std::free(bytes);
        return QVariant(data);
    }
    case PLIST_DATE: {
        int32_t sec = 0;
        int32_t usec = 0;
        plist_get_date_val(node, &sec, &usec);
        // libplist keeps dates as a double and hands out its whole seconds truncated toward zero and the
        // fraction without its sign: round to the millisecond instead of truncating, on the date's side.
        const qint64 fraction = qRound64(usec / 1000.0);
        const qint64 ms = kEpoch2001MSecs + qint64(sec) * 1000 + (sec < 0 ? -fraction : fraction);
        return QVariant(QDateTime::fromMSecsSinceEpoch(ms, QTimeZone::utc()));
    }
    case PLIST_UID:
        return nullMarker();
    case PLIST_ARRAY: {
        QVariantList list;
        const uint32_t count = plist_array_get_size(node);
        list.reserve(count);
        for (uint32_t i = 0; i < count; ++i)
            list.append(fromNode(plist_array_get_item(node, i)));
        return list;
    }
    case PLIST_DICT: {
        QVariantMap map;
        plist_dict_iter iter = nullptr;
        plist_dict_new_iter(node, &iter);
        for (;;) {
            char *key = nullptr;
            plist_t child = nullptr;
            plist_dict_next_item(node, iter, &key, &child);
            if (!key)
                break;
            map.insert(takeString(key), fromNode(child));
        }
        std::free(iter);
        return map;
    }
    default:
        return {};
    }
}

} // namespace

QVariant nullMarker()
{
    return QVariant::fromValue(nullptr);
}

bool isNullMarker(const QVariant &value)
{
    return typeOf(value) == QMetaType::Nullptr;
}

bool isPropertyListValue(const QVariant &value)
{
    QString ignored;
    plist_t node = toNode(value, &ignored);
    if (!node)
        return false;
    plist_free(node);
    return true;
}

QByteArray serialize(const QVariant &value, Format format, QString *errorText)
{
    Node node(toNode(value, errorText));
    if (!node)
        return {};
    char *out = nullptr;
    uint32_t length = 0;
    if (format == Format::Xml)
        plist_to_xml(node.get(), &out, &length);
    else
        plist_to_bin(node.get(), &out, &length);
    if (!out) {
        if (errorText)
            *errorText = QStringLiteral("the property list could not be serialised");
        return {};
    }
    QByteArray bytes(out, static_cast<qsizetype>(length));
    std::free(out);
    return bytes;
}

QVariant parse(const QByteArray &bytes, QString *errorText)
{
    plist_t raw = nullptr;
    if (!bytes.isEmpty())
        plist_from_memory(bytes.constData(), static_cast<uint32_t>(bytes.size()), &raw);
    Node node(raw);
    if (!node) {
        if (errorText)
            *errorText = QStringLiteral("not a property list");
        return {};
    }
    // A binary file may hold keys and strings with NUL characters, which libplist's getters assert against
    // (and which could not be written back): such a file is refused. Its XML form shows them as NUL bytes.
    if (bytes.startsWith("bplist")) {
        char *xml = nullptr;
        uint32_t length = 0;
        plist_to_xml(node.get(), &xml, &length);
        const bool holdsNul = xml && std::memchr(xml, 0, length) != nullptr;
        plist_to_xml_free(xml);
        if (holdsNul) {
            if (errorText)
                *errorText = QStringLiteral("the property list holds a NUL character in a key or string");
            return {};
        }
    }
    QVariant value = fromNode(node.get());
    if (!value.isValid() && errorText)
        *errorText = QStringLiteral("not a property list");
    return value;
}

QVariant readFile(const QString &path, QString *errorText)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (errorText)
            *errorText = file.errorString();
        return {};
    }
    return parse(file.readAll(), errorText);
}

bool equal(const QVariant &a, const QVariant &b)
{
    const auto kind = [](const QVariant &v) {
        switch (typeOf(v)) {
        case QMetaType::Int:
        case QMetaType::Long:
        case QMetaType::LongLong:
        case QMetaType::Short:
        case QMetaType::UInt:
        case QMetaType::ULong:
        case QMetaType::ULongLong:
        case QMetaType::UShort:
        case QMetaType::Char:
        case QMetaType::SChar:
        case QMetaType::UChar:
            return int(QMetaType::LongLong);
        case QMetaType::Float:
            return int(QMetaType::Double);
        case QMetaType::QStringList:
            return int(QMetaType::QVariantList);
        case QMetaType::QVariantHash:
            return int(QMetaType::QVariantMap);
        default:
            return typeOf(v);
        }
    };
    if (kind(a) != kind(b))
        return false;
    switch (kind(a)) {
    case QMetaType::QVariantList: {
        const QVariantList la = a.toList();
        const QVariantList lb = b.toList();
        if (la.size() != lb.size())
            return false;
        for (qsizetype i = 0; i < la.size(); ++i) {
            if (!equal(la.at(i), lb.at(i)))
                return false;
        }
        return true;
    }
    case QMetaType::QVariantMap: {
        const QVariantMap ma = a.toMap();
        const QVariantMap mb = b.toMap();
        if (ma.size() != mb.size())
            return false;
        for (auto it = ma.cbegin(); it != ma.cend(); ++it) {
            auto other = mb.constFind(it.key());
            if (other == mb.cend() || !equal(it.value(), other.value()))
                return false;
        }
        return true;
    }
    case QMetaType::QDateTime:
        return a.toDateTime().toMSecsSinceEpoch() == b.toDateTime().toMSecsSinceEpoch();
    case QMetaType::Nullptr:
        return true;
    case QMetaType::LongLong:
        return a.toLongLong() == b.toLongLong();
    case QMetaType::Double:
        return a.toDouble() == b.toDouble();
    default:
        return a == b;
    }
}

} // namespace PropertyList
