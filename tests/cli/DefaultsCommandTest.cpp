// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// `corvex defaults`, run as the real program.
#include "TestSupport.h"
#include "platform/PreferenceStore.h"
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QTimeZone>
#include <gtest/gtest.h>

namespace {

using corvex::test::ProcessResult;

const QString kDomain = QStringLiteral("com.example.Cli");

ProcessResult defaults(const QStringList &arguments)
{
    return corvex::test::runCli(QStringList{QStringLiteral("defaults")} + arguments);
}

// Writes a value with the command and reads it back with the command.
QVariant writeAndRead(const QString &key, const QStringList &value)
{
    const ProcessResult written = defaults(QStringList{QStringLiteral("write"), kDomain, key} + value);
    EXPECT_EQ(written.exitCode, 0) << written.err.constData();
    const ProcessResult read = defaults({QStringLiteral("read"), kDomain, key});
    EXPECT_EQ(read.exitCode, 0) << read.err.constData();
    return PropertyList::parse(read.out);
}

// The one line of an error and the exit code.
void expectError(const QStringList &arguments, const QString &message)
{
    const ProcessResult result = defaults(arguments);
    EXPECT_NE(result.exitCode, 0) << arguments.join(QLatin1Char(' ')).toStdString();
    EXPECT_TRUE(result.out.isEmpty());
    const QString err = QString::fromUtf8(result.err);
    EXPECT_EQ(err.count(QLatin1Char('\n')), 1) << err.toStdString();
    EXPECT_TRUE(err.startsWith(QStringLiteral("corvex: ") + message)) << err.toStdString();
}

TEST(DefaultsCommand, WritesAndReadsEveryType)
{
    // Key, the value's arguments (split at "|"), what is read back. One after another: -array-add and
    // -dict-add extend what the rows before them wrote.
    const struct
    {
        const char *key, *arguments;
        QVariant expected;
    } cases[] = {
        {"plain", "hello world", QStringLiteral("hello world")},
        {"digits", "42", QStringLiteral("42")},
        {"s", "-string|-int", QStringLiteral("-int")},
        {"i", "-int|-17", qint64(-17)},
        {"f", "-float|2.5", 2.5},
        {"b", "-bool|YES", true},
        {"b", "-bool|no", false},
        {"b", "-bool|true", true},
        {"b", "-bool|FALSE", false},
        {"b", "-bool|1", true},
        {"b", "-bool|0", false},
        {"d", "-data|00fF10", QByteArray("\x00\xff\x10", 3)},
        {"t", "-date|2024-03-01T12:30:00+01:00",
         QDateTime(QDate(2024, 3, 1), QTime(11, 30), QTimeZone::utc())},
        {"a", "-array|x|-int|3|y", QVariantList{QStringLiteral("x"), qint64(3), QStringLiteral("y")}},
        {"a", "-array-add|z",
         QVariantList{QStringLiteral("x"), qint64(3), QStringLiteral("y"), QStringLiteral("z")}},
        {"e", "-array", QVariantList{}},
        {"m", "-dict|k|v|n|-bool|YES",
         QVariantMap{{QStringLiteral("k"), QStringLiteral("v")}, {QStringLiteral("n"), true}}},
        {"m", "-dict-add|k|w",
         QVariantMap{{QStringLiteral("k"), QStringLiteral("w")}, {QStringLiteral("n"), true}}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments);
        const QVariant read = writeAndRead(QString::fromLatin1(c.key),
                                           QString::fromLatin1(c.arguments).split(QLatin1Char('|')));
        EXPECT_TRUE(PropertyList::equal(read, c.expected)) << read.toString().toStdString();
    }

    // What the command wrote is what the store reads.
    PreferenceStore store(PreferenceStore::defaultDirectory());
    EXPECT_EQ(store.value(kDomain, QStringLiteral("i")).toLongLong(), -17);
}

TEST(DefaultsCommand, ReadsDomainsAndDeletes)
{
    const QString other = QStringLiteral("com.example.Other");
    ASSERT_EQ(defaults({QStringLiteral("write"), other, QStringLiteral("k"), QStringLiteral("v")}).exitCode,
              0);
    ASSERT_EQ(defaults({QStringLiteral("write"), other, QStringLiteral("gone"), QStringLiteral("-int"),
                        QStringLiteral("1")})
                  .exitCode,
              0);
    ProcessResult result = defaults({QStringLiteral("delete"), other, QStringLiteral("gone")});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();

    result = defaults({QStringLiteral("read"), other});
    ASSERT_EQ(result.exitCode, 0);
    EXPECT_TRUE(PropertyList::equal(PropertyList::parse(result.out),
                                    QVariantMap{{QStringLiteral("k"), QStringLiteral("v")}}));

    result = defaults({QStringLiteral("read")});
    ASSERT_EQ(result.exitCode, 0);
    const QVariantMap all = PropertyList::parse(result.out).toMap();
    EXPECT_TRUE(
        PropertyList::equal(all.value(other), QVariantMap{{QStringLiteral("k"), QStringLiteral("v")}}));

    result = defaults({QStringLiteral("delete"), other});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_FALSE(PropertyList::parse(defaults({QStringLiteral("read")}).out).toMap().contains(other));
    expectError({QStringLiteral("read"), other},
                QStringLiteral("the domain com.example.Other does not exist"));
    expectError({QStringLiteral("delete"), other},
                QStringLiteral("the domain com.example.Other does not exist"));
}

TEST(DefaultsCommand, RefusesBadInputWithOneLine)
{
    ASSERT_EQ(
        defaults({QStringLiteral("write"), kDomain, QStringLiteral("present"), QStringLiteral("1")}).exitCode,
        0);
    // Arguments (split at "|"), then the start of the one line of error.
    const struct
    {
        const char *arguments, *message;
    } cases[] = {
        {"read|com.example.Cli|missing",
         "the domain/default pair of (com.example.Cli, missing) does not exist"},
        {"read|com.example.Nowhere|k", "the domain/default pair of (com.example.Nowhere, k) does not exist"},
        {"delete|com.example.Cli|missing",
         "the domain/default pair of (com.example.Cli, missing) does not exist"},
        {"write|com.example.Cli|k|-int|12abc", "'12abc' is not an integer"},
        {"write|com.example.Cli|k|-float|x", "'x' is not a number"},
        {"write|com.example.Cli|k|-bool|maybe", "'maybe' is not a boolean"},
        {"write|com.example.Cli|k|-data|abc", "'abc' is not hexadecimal data"},
        {"write|com.example.Cli|k|-date|soon", "'soon' is not an ISO 8601 date"},
        {"write|com.example.Cli|k|-dict|odd", "the dictionary key 'odd' has no value"},
        {"write|com.example.Cli|k|-array|-int", "-int needs a value"},
        {"write|com.example.Cli|k|-int|1|2", "-int takes exactly one value"},
        {"write|com.example.Cli|k|-blob|1", "unknown type '-blob'"},
        {"write|com.example.Cli|k|two|words", "a plain value is one word"},
        {"write|com.example.Cli|k", "write needs"},
        {"write|../evil|k|v", "'../evil' is not a valid domain name"},
        {"frobnicate", "unknown defaults action 'frobnicate'"},
        {"", "usage: corvex defaults"},
    };
    for (const auto &c : cases)
        expectError(QString::fromLatin1(c.arguments).split(QLatin1Char('|'), Qt::SkipEmptyParts),
                    QString::fromLatin1(c.message));
    // Nothing of it was stored.
    PreferenceStore store(PreferenceStore::defaultDirectory());
    EXPECT_FALSE(store.value(kDomain, QStringLiteral("k")).isValid());
    EXPECT_FALSE(store.domainExists(QStringLiteral("com.example.Nowhere")));
}

} // namespace
