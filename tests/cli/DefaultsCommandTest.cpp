// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
//
// `corvex defaults`, run as the real program.
#include "platform/PreferenceStore.h"
#include "platform/PropertyList.h"
#include "TestSupport.h"

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
    EXPECT_EQ(writeAndRead(QStringLiteral("plain"), {QStringLiteral("hello world")}),
              QVariant(QStringLiteral("hello world")));
    EXPECT_EQ(writeAndRead(QStringLiteral("digits"), {QStringLiteral("42")}), QVariant(QStringLiteral("42")));
    EXPECT_EQ(writeAndRead(QStringLiteral("s"), {QStringLiteral("-string"), QStringLiteral("-int")}),
              QVariant(QStringLiteral("-int")));
    EXPECT_EQ(writeAndRead(QStringLiteral("i"), {QStringLiteral("-int"), QStringLiteral("-17")}),
              QVariant(qint64(-17)));
    EXPECT_EQ(writeAndRead(QStringLiteral("f"), {QStringLiteral("-float"), QStringLiteral("2.5")}),
              QVariant(2.5));
    for (const char *truth : {"YES", "true", "1"})
        EXPECT_EQ(writeAndRead(QStringLiteral("b"), {QStringLiteral("-bool"), QLatin1String(truth)}),
                  QVariant(true));
    for (const char *falsehood : {"no", "FALSE", "0"})
        EXPECT_EQ(writeAndRead(QStringLiteral("b"), {QStringLiteral("-bool"), QLatin1String(falsehood)}),
                  QVariant(false));
    EXPECT_EQ(writeAndRead(QStringLiteral("d"), {QStringLiteral("-data"), QStringLiteral("00fF10")}),
              QVariant(QByteArray("\x00\xff\x10", 3)));
    EXPECT_EQ(writeAndRead(QStringLiteral("t"),
                           {QStringLiteral("-date"), QStringLiteral("2024-03-01T12:30:00+01:00")})
                  .toDateTime(),
              QDateTime(QDate(2024, 3, 1), QTime(11, 30), QTimeZone::utc()));
    EXPECT_TRUE(PropertyList::equal(
        writeAndRead(QStringLiteral("a"), {QStringLiteral("-array"), QStringLiteral("x"),
                                           QStringLiteral("-int"), QStringLiteral("3"), QStringLiteral("y")}),
        QVariantList{QStringLiteral("x"), qint64(3), QStringLiteral("y")}));
    EXPECT_TRUE(PropertyList::equal(
        writeAndRead(QStringLiteral("a"), {QStringLiteral("-array-add"), QStringLiteral("z")}),
        QVariantList{QStringLiteral("x"), qint64(3), QStringLiteral("y"), QStringLiteral("z")}));
    EXPECT_TRUE(
        PropertyList::equal(writeAndRead(QStringLiteral("e"), {QStringLiteral("-array")}), QVariantList{}));
    EXPECT_TRUE(PropertyList::equal(
        writeAndRead(QStringLiteral("m"),
                     {QStringLiteral("-dict"), QStringLiteral("k"), QStringLiteral("v"), QStringLiteral("n"),
                      QStringLiteral("-bool"), QStringLiteral("YES")}),
        QVariantMap{{QStringLiteral("k"), QStringLiteral("v")}, {QStringLiteral("n"), true}}));
    EXPECT_TRUE(PropertyList::equal(
        writeAndRead(QStringLiteral("m"),
                     {QStringLiteral("-dict-add"), QStringLiteral("k"), QStringLiteral("w")}),
        QVariantMap{{QStringLiteral("k"), QStringLiteral("w")}, {QStringLiteral("n"), true}}));

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
    expectError({QStringLiteral("read"), kDomain, QStringLiteral("missing")},
                QStringLiteral("the domain/default pair of (com.example.Cli, missing) does not exist"));
    expectError({QStringLiteral("read"), QStringLiteral("com.example.Nowhere"), QStringLiteral("k")},
                QStringLiteral("the domain/default pair of (com.example.Nowhere, k) does not exist"));
    expectError({QStringLiteral("delete"), kDomain, QStringLiteral("missing")},
                QStringLiteral("the domain/default pair of (com.example.Cli, missing) does not exist"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("-int"),
                 QStringLiteral("12abc")},
                QStringLiteral("'12abc' is not an integer"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("-float"),
                 QStringLiteral("x")},
                QStringLiteral("'x' is not a number"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("-bool"),
                 QStringLiteral("maybe")},
                QStringLiteral("'maybe' is not a boolean"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("-data"),
                 QStringLiteral("abc")},
                QStringLiteral("'abc' is not hexadecimal data"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("-date"),
                 QStringLiteral("soon")},
                QStringLiteral("'soon' is not an ISO 8601 date"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("-dict"),
                 QStringLiteral("odd")},
                QStringLiteral("the dictionary key 'odd' has no value"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("-array"),
                 QStringLiteral("-int")},
                QStringLiteral("-int needs a value"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("-int"),
                 QStringLiteral("1"), QStringLiteral("2")},
                QStringLiteral("-int takes exactly one value"));
    expectError(
        {QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("-blob"), QStringLiteral("1")},
        QStringLiteral("unknown type '-blob'"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k"), QStringLiteral("two"),
                 QStringLiteral("words")},
                QStringLiteral("a plain value is one word"));
    expectError({QStringLiteral("write"), kDomain, QStringLiteral("k")}, QStringLiteral("write needs"));
    expectError(
        {QStringLiteral("write"), QStringLiteral("../evil"), QStringLiteral("k"), QStringLiteral("v")},
        QStringLiteral("'../evil' is not a valid domain name"));
    expectError({QStringLiteral("frobnicate")}, QStringLiteral("unknown defaults action 'frobnicate'"));
    expectError({}, QStringLiteral("usage: corvex defaults"));
    // Nothing of it was stored.
    PreferenceStore store(PreferenceStore::defaultDirectory());
    EXPECT_FALSE(store.value(kDomain, QStringLiteral("k")).isValid());
    EXPECT_FALSE(store.domainExists(QStringLiteral("com.example.Nowhere")));
}

} // namespace
