// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QSize>
#include <QTimeZone>
#include <gtest/gtest.h>

namespace {

QVariantMap everyType()
{
    QVariantMap nested;
    nested.insert(QStringLiteral("deep"), QVariantList{qint64(1), QStringLiteral("two"), 3.5});
    QVariantMap map;
    map.insert(QStringLiteral("string"), QStringLiteral("Grüße “quoted” <&>"));
    map.insert(QStringLiteral("empty string"), QString(""));
    map.insert(QStringLiteral("integer"), qint64(42));
    map.insert(QStringLiteral("negative"), qint64(-5));
    map.insert(QStringLiteral("large"), qint64(1) << 40);
    map.insert(QStringLiteral("real"), 0.1);
    map.insert(QStringLiteral("true"), true);
    map.insert(QStringLiteral("false"), false);
    map.insert(QStringLiteral("data"), QByteArray("\x00\x01\xfe\xff", 4));
    map.insert(QStringLiteral("date"),
               QDateTime(QDate(2013, 3, 5), QTime(9, 7, 11, 250), QTimeZone::utc()));
    map.insert(QStringLiteral("old date"), QDateTime(QDate(1999, 12, 31), QTime(23, 59, 59), QTimeZone::utc()));
    map.insert(QStringLiteral("array"), QVariantList{QStringLiteral("a"), qint64(2), false});
    map.insert(QStringLiteral("empty array"), QVariantList{});
    map.insert(QStringLiteral("dictionary"), nested);
    map.insert(QStringLiteral("empty dictionary"), QVariantMap{});
    return map;
}

class PropertyListFormats : public testing::TestWithParam<PropertyList::Format>
{
};

TEST_P(PropertyListFormats, EveryTypeRoundTripsExactly)
{
    const QVariantMap original = everyType();
    const QByteArray bytes = PropertyList::serialize(original, GetParam());
    ASSERT_FALSE(bytes.isEmpty());
    const QVariant back = PropertyList::parse(bytes);
    ASSERT_EQ(back.metaType().id(), QMetaType::QVariantMap);
    const QVariantMap map = back.toMap();
    const QDateTime date = original.value(QStringLiteral("date")).toDateTime();
    if (GetParam() == PropertyList::Format::Binary) {
        EXPECT_TRUE(PropertyList::equal(original, back));
        EXPECT_EQ(map.value(QStringLiteral("date")).toDateTime(), date);
    } else {
        // The XML form writes dates to the whole second.
        QVariantMap expected = original;
        expected.insert(QStringLiteral("date"), date.addMSecs(-date.time().msec()));
        EXPECT_TRUE(PropertyList::equal(expected, back));
    }
    EXPECT_EQ(map.value(QStringLiteral("integer")).metaType().id(), QMetaType::LongLong);
    EXPECT_EQ(map.value(QStringLiteral("negative")).toLongLong(), -5);
    EXPECT_EQ(map.value(QStringLiteral("real")).metaType().id(), QMetaType::Double);
    EXPECT_EQ(map.value(QStringLiteral("true")).metaType().id(), QMetaType::Bool);
    EXPECT_EQ(map.value(QStringLiteral("data")).toByteArray(), QByteArray("\x00\x01\xfe\xff", 4));
}

INSTANTIATE_TEST_SUITE_P(Both, PropertyListFormats,
                         testing::Values(PropertyList::Format::Xml, PropertyList::Format::Binary));

TEST(PropertyList, NullMarkerTravelsInBinary)
{
    QVariantMap map{{QStringLiteral("bookmarkData"), PropertyList::nullMarker()}};
    const QVariant back = PropertyList::parse(PropertyList::serialize(map, PropertyList::Format::Binary));
    EXPECT_TRUE(PropertyList::isNullMarker(back.toMap().value(QStringLiteral("bookmarkData"))));
}

TEST(PropertyList, RefusesWhatIsNotAPropertyList)
{
    QString error;
    EXPECT_FALSE(PropertyList::parse(QByteArray("this is not a plist"), &error).isValid());
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(PropertyList::parse(QByteArray()).isValid());
    EXPECT_FALSE(PropertyList::parse(QByteArray("<?xml version=\"1.0\"?><plist><dict><key>a</key>")).isValid());

    error.clear();
    const QVariantMap bad{{QStringLiteral("size"), QVariant(QSize(1, 2))}};
    EXPECT_TRUE(PropertyList::serialize(bad, PropertyList::Format::Xml, &error).isEmpty());
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(PropertyList::isPropertyListValue(bad));
}

TEST(PropertyList, EqualityIsTypeExact)
{
    EXPECT_FALSE(PropertyList::equal(qint64(1), 1.0));
    EXPECT_FALSE(PropertyList::equal(QStringLiteral("1"), qint64(1)));
    EXPECT_FALSE(PropertyList::equal(true, qint64(1)));
    EXPECT_TRUE(PropertyList::equal(int(3), qint64(3)));
    EXPECT_FALSE(PropertyList::equal(QVariantMap{{QStringLiteral("a"), 1}}, QVariantMap{{QStringLiteral("b"), 1}}));
}

} // namespace
