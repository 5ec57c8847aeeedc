// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/PropertyList.h"

#include <QDateTime>
#include <QSize>
#include <QTimeZone>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QVariantMap everyType()
{
    QVariantMap nested;
    nested.insert(u"deep"_s, QVariantList{qint64(1), u"two"_s, 3.5});
    QVariantMap map;
    map.insert(u"string"_s, u"Grüße “quoted” <&>"_s);
    map.insert(u"empty string"_s, QString(""));
    map.insert(u"integer"_s, qint64(42));
    map.insert(u"negative"_s, qint64(-5));
    map.insert(u"large"_s, qint64(1) << 40);
    map.insert(u"real"_s, 0.1);
    map.insert(u"true"_s, true);
    map.insert(u"false"_s, false);
    map.insert(u"data"_s, QByteArray("\x00\x01\xfe\xff", 4));
    map.insert(u"date"_s, QDateTime(QDate(2013, 3, 5), QTime(9, 7, 11, 250), QTimeZone::utc()));
    map.insert(u"old date"_s, QDateTime(QDate(1999, 12, 31), QTime(23, 59, 50, 250), QTimeZone::utc()));
    map.insert(u"array"_s, QVariantList{u"a"_s, qint64(2), false});
    map.insert(u"empty array"_s, QVariantList{});
    map.insert(u"dictionary"_s, nested);
    map.insert(u"empty dictionary"_s, QVariantMap{});
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
    const QDateTime date = original.value(u"date"_s).toDateTime();
    if (GetParam() == PropertyList::Format::Binary) {
        EXPECT_TRUE(PropertyList::equal(original, back));
        EXPECT_EQ(map.value(u"date"_s).toDateTime(), date);
    } else {
        // The XML form writes dates to the whole second, cutting toward 2001.
        QVariantMap expected = original;
        expected.insert(u"date"_s, date.addMSecs(-date.time().msec()));
        const QDateTime old = original.value(u"old date"_s).toDateTime();
        expected.insert(u"old date"_s, old.addMSecs(1000 - old.time().msec()));
        EXPECT_TRUE(PropertyList::equal(expected, back));
    }
    EXPECT_EQ(map.value(u"integer"_s).metaType().id(), QMetaType::LongLong);
}

INSTANTIATE_TEST_SUITE_P(Both, PropertyListFormats,
                         testing::Values(PropertyList::Format::Xml, PropertyList::Format::Binary));

TEST(PropertyList, NullMarkerTravelsInBinary)
{
    QVariantMap map{{u"bookmarkData"_s, PropertyList::nullMarker()}};
    const QVariant back = PropertyList::parse(PropertyList::serialize(map, PropertyList::Format::Binary));
    EXPECT_TRUE(PropertyList::isNullMarker(back.toMap().value(u"bookmarkData"_s)));
}

TEST(PropertyList, RefusesWhatIsNotAPropertyList)
{
    QString error;
    EXPECT_FALSE(PropertyList::parse(QByteArray("this is not a plist"), &error).isValid());
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(PropertyList::parse(QByteArray()).isValid());
    EXPECT_FALSE(
        PropertyList::parse(QByteArray("<?xml version=\"1.0\"?><plist><dict><key>a</key>")).isValid());

    error.clear();
    const QVariantMap bad{{u"size"_s, QVariant(QSize(1, 2))}};
    EXPECT_TRUE(PropertyList::serialize(bad, PropertyList::Format::Xml, &error).isEmpty());
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(PropertyList::isPropertyListValue(bad));
}

TEST(PropertyList, EqualityIsTypeExact)
{
    EXPECT_FALSE(PropertyList::equal(qint64(1), 1.0));
    EXPECT_FALSE(PropertyList::equal(u"1"_s, qint64(1)));
    EXPECT_FALSE(PropertyList::equal(true, qint64(1)));
    EXPECT_TRUE(PropertyList::equal(int(3), qint64(3)));
    EXPECT_FALSE(PropertyList::equal(QVariantMap{{u"a"_s, 1}}, QVariantMap{{u"b"_s, 1}}));
}

} // namespace
