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

using namespace Qt::StringLiterals;

namespace {

using corvex::test::ProcessResult;

const QString kDomain = u"com.example.Cli"_s;

ProcessResult defaults(const QStringList &arguments)
{
    return corvex::test::runCli(QStringList{u"defaults"_s} + arguments);
}

// Writes a value with the command and reads it back with the command.
QVariant writeAndRead(const QString &key, const QStringList &value)
{
    const ProcessResult written = defaults(QStringList{u"write"_s, kDomain, key} + value);
    EXPECT_EQ(written.exitCode, 0) << written.err.constData();
    const ProcessResult read = defaults({u"read"_s, kDomain, key});
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
    EXPECT_TRUE(err.startsWith(u"corvex: "_s + message)) << err.toStdString();
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
        {"plain", "hello world", u"hello world"_s},
        {"digits", "42", u"42"_s},
        {"s", "-string|-int", u"-int"_s},
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
        {"a", "-array|x|-int|3|y", QVariantList{u"x"_s, qint64(3), u"y"_s}},
        {"a", "-array-add|z", QVariantList{u"x"_s, qint64(3), u"y"_s, u"z"_s}},
        {"e", "-array", QVariantList{}},
        {"m", "-dict|k|v|n|-bool|YES", QVariantMap{{u"k"_s, u"v"_s}, {u"n"_s, true}}},
        {"m", "-dict-add|k|w", QVariantMap{{u"k"_s, u"w"_s}, {u"n"_s, true}}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.arguments);
        const QVariant read = writeAndRead(QString::fromLatin1(c.key),
                                           QString::fromLatin1(c.arguments).split(QLatin1Char('|')));
        EXPECT_TRUE(PropertyList::equal(read, c.expected)) << read.toString().toStdString();
    }

    // What the command wrote is what the store reads.
    PreferenceStore store(PreferenceStore::defaultDirectory());
    EXPECT_EQ(store.value(kDomain, u"i"_s).toLongLong(), -17);
}

TEST(DefaultsCommand, ReadsDomainsAndDeletes)
{
    const QString other = u"com.example.Other"_s;
    ASSERT_EQ(defaults({u"write"_s, other, u"k"_s, u"v"_s}).exitCode, 0);
    ASSERT_EQ(defaults({u"write"_s, other, u"gone"_s, u"-int"_s, u"1"_s}).exitCode, 0);
    ProcessResult result = defaults({u"delete"_s, other, u"gone"_s});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();

    result = defaults({u"read"_s, other});
    ASSERT_EQ(result.exitCode, 0);
    EXPECT_TRUE(PropertyList::equal(PropertyList::parse(result.out), QVariantMap{{u"k"_s, u"v"_s}}));

    result = defaults({u"read"_s});
    ASSERT_EQ(result.exitCode, 0);
    const QVariantMap all = PropertyList::parse(result.out).toMap();
    EXPECT_TRUE(PropertyList::equal(all.value(other), QVariantMap{{u"k"_s, u"v"_s}}));

    result = defaults({u"delete"_s, other});
    EXPECT_EQ(result.exitCode, 0) << result.err.constData();
    EXPECT_FALSE(PropertyList::parse(defaults({u"read"_s}).out).toMap().contains(other));
    expectError({u"read"_s, other}, u"the domain com.example.Other does not exist"_s);
    expectError({u"delete"_s, other}, u"the domain com.example.Other does not exist"_s);
}

TEST(DefaultsCommand, RefusesBadInputWithOneLine)
{
    ASSERT_EQ(defaults({u"write"_s, kDomain, u"present"_s, u"1"_s}).exitCode, 0);
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
    EXPECT_FALSE(store.value(kDomain, u"k"_s).isValid());
    EXPECT_FALSE(store.domainExists(u"com.example.Nowhere"_s));
}

} // namespace
