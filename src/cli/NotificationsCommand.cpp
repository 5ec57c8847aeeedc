// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// corvex notifications listen [NAME...] | post NAME [KEY=VALUE | KEY:=JSON ...]
#include "cli/CommandModule.h"
#include "platform/DistributedNotificationCenter.h"
#include "platform/PropertyList.h"
#include "platform/TerminationSignalHandler.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <QRegularExpression>
#include <QTimeZone>

namespace cli {
namespace {

// ---- property-list values as JSON ----

QJsonValue toJson(const QVariant &value)
{
    if (PropertyList::isNullMarker(value))
        return QJsonValue(QJsonValue::Null);
    switch (value.metaType().id()) {
    case QMetaType::QString:
        return value.toString();
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Double:
    case QMetaType::Float:
        return value.toDouble();
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().toBase64());
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        QJsonArray array;
        for (const QVariant &element : value.toList())
            array.append(toJson(element));
        return array;
    }
    case QMetaType::QVariantMap: {
        QJsonObject object;
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            object.insert(it.key(), toJson(it.value()));
        return object;
    }
    case QMetaType::ULongLong:
    case QMetaType::ULong:
    case QMetaType::UInt:
        // An unsigned value past the signed range still prints as its number, not as a wrapped one.
        if (value.toULongLong() > quint64(std::numeric_limits<qint64>::max()))
            return double(value.toULongLong());
        return qint64(value.toULongLong());
    default:
        if (value.canConvert<qint64>())
            return value.toLongLong();
        return QJsonValue(QJsonValue::Null);
    }
}

// A name with a tab or a line break would break the line format; those (and backslashes) are escaped.
QString escapedName(const QString &name)
{
    QString escaped;
    for (const QChar c : name) {
        if (c == QLatin1Char('\\'))
            escaped += QLatin1String("\\\\");
        else if (c == QLatin1Char('\t'))
            escaped += QLatin1String("\\t");
        else if (c == QLatin1Char('\n'))
            escaped += QLatin1String("\\n");
        else if (c == QLatin1Char('\r'))
            escaped += QLatin1String("\\r");
        else
            escaped += c;
    }
    return escaped;
}

// ---- listen ----

int listen(const QStringList &names)
{
    DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    if (!center.isConnected())
        return fail(QStringLiteral("notifications: there is no D-Bus session bus to listen on"));

    TerminationSignalHandler signals;
    if (!signals.install())
        return fail(QStringLiteral("notifications: could not set up signal handling"));
    QObject::connect(&signals, &TerminationSignalHandler::terminationRequested, qApp,
                     [] { QCoreApplication::quit(); });

    const auto print = [](const QString &name, const QVariantMap &userInfo) {
        const QJsonObject object = toJson(userInfo).toObject();
        out(escapedName(name) + QLatin1Char('\t') +
            QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + QLatin1Char('\n'));
    };
    QStringList wanted = names;
    wanted.removeDuplicates();
    if (wanted.isEmpty())
        wanted.append(QString());
    for (const QString &name : std::as_const(wanted))
        center.addObserver(name, qApp, print);

    QCoreApplication::exec();
    return 0;
}

// ---- post ----

// JSON as property-list values: whole numbers within 64 bits become integers, null becomes the null marker.
QVariant fromJson(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return PropertyList::nullMarker();
    case QJsonValue::Bool:
        return value.toBool();
    case QJsonValue::Double: {
        const QVariant number = value.toVariant();
        if (number.metaType().id() == QMetaType::LongLong)
            return qint64(number.toLongLong());
        return value.toDouble();
    }
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Array: {
        QVariantList list;
        for (const QJsonValue &element : value.toArray())
            list.append(fromJson(element));
        return list;
    }
    case QJsonValue::Object: {
        QVariantMap map;
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it)
            map.insert(it.key(), fromJson(it.value()));
        return map;
    }
    case QJsonValue::Undefined:
        break;
    }
    return {};
}

QVariant plainValue(const QString &text)
{
    static const QRegularExpression integer(QStringLiteral("^-?[0-9]+$"));
    if (integer.match(text).hasMatch()) {
        bool ok = false;
        const qint64 number = text.toLongLong(&ok);
        if (ok)
            return number;
    }
    if (text == QLatin1String("true"))
        return true;
    if (text == QLatin1String("false"))
        return false;
    return text;
}

int post(const QStringList &arguments)
{
    if (arguments.isEmpty() || arguments.first().isEmpty())
        return fail(QStringLiteral("notifications post: a notification name is needed"));
    const QString name = arguments.first();
    QVariantMap userInfo;
    for (const QString &argument : arguments.mid(1)) {
        const qsizetype equals = argument.indexOf(QLatin1Char('='));
        if (equals < 0)
            return fail(
                QStringLiteral("notifications post: '%1' is not KEY=VALUE or KEY:=JSON").arg(argument));
        const bool json = equals > 0 && argument.at(equals - 1) == QLatin1Char(':');
        const QString key = argument.left(json ? equals - 1 : equals);
        const QString text = argument.mid(equals + 1);
        if (key.isEmpty())
            return fail(QStringLiteral("notifications post: '%1' has an empty key").arg(argument));
        if (userInfo.contains(key))
            return fail(QStringLiteral("notifications post: the key '%1' is given twice").arg(key));
        if (!json) {
            userInfo.insert(key, plainValue(text));
            continue;
        }
        // Wrapped in an array so that any JSON value, not only objects and arrays, is accepted.
        QJsonParseError error{};
        const QJsonDocument document =
            QJsonDocument::fromJson(QByteArray("[") + text.toUtf8() + QByteArray("\n]"), &error);
        if (error.error != QJsonParseError::NoError || document.array().size() != 1)
            return fail(
                QStringLiteral("notifications post: the value of '%1' is not one JSON value").arg(key));
        userInfo.insert(key, fromJson(document.array().at(0)));
    }

    DistributedNotificationCenter &center = DistributedNotificationCenter::defaultCenter();
    if (!center.isConnected())
        return fail(
            QStringLiteral("notifications post: there is no D-Bus session bus to post %1 on").arg(name));
    if (!center.postNotificationName(name, userInfo))
        return fail(QStringLiteral("notifications post: could not post %1").arg(name));
    center.flush();
    return 0;
}

int runNotifications(const QStringList &arguments)
{
    const QString action = arguments.value(0);
    if (action == QLatin1String("listen"))
        return listen(arguments.mid(1));
    if (action == QLatin1String("post"))
        return post(arguments.mid(1));
    if (action.isEmpty())
        return fail(
            QStringLiteral("notifications: say 'listen' or 'post' (see 'corvex notifications --help')"));
    return fail(QStringLiteral("notifications: unknown action '%1' (use 'listen' or 'post')").arg(action));
}

} // namespace
} // namespace cli

extern "C" Q_DECL_EXPORT int corvex_command_main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    return cli::runModuleCommand(&cli::runNotifications);
}
