// SPDX-FileCopyrightText: 2026 The Corvex developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/RenamePattern.h"

#include <QSet>
#include <QTimeZone>
#include <gtest/gtest.h>

namespace {

// 5 March 2013, a Tuesday, 09:07:03 local time.
const QDateTime kShot(QDate(2013, 3, 5), QTime(9, 7, 3));

class RenamePatternTest : public testing::Test
{
protected:
    void SetUp() override { QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates)); }
    void TearDown() override { QLocale::setDefault(QLocale::system()); }

    QString name(const QString &pattern, const QDateTime &date = kShot)
    {
        return RenamePattern::fileName(pattern, date, mSources);
    }

    qint64 mCounter = 0;
    int mMeasured = 0;
    QSizeF mSize{1440.9, 900.2};
    RenamePattern::Sources mSources{[this] { return ++mCounter; },
                                    [this] {
                                        ++mMeasured;
                                        return mSize;
                                    }};
};

TEST_F(RenamePatternTest, TokensAndLiteralsInEachLocale)
{
    const auto at = [](int year, int month, int day, int hour = 12) {
        return QDateTime(QDate(year, month, day), QTime(hour, 0));
    };
    const struct
    {
        const char *locale, *pattern;
        QDateTime date;
        const char *expected;
    } cases[] = {
        {"en_US", "Shot:$DateYYYY$:-:$DateMM$:-:$DateDD$", kShot, "Shot2013-03-05"},
        {"en_US", "$DateM$:.:$DateD$:.:$DateYY$", kShot, "3.5.13"},
        {"en_US", "$TimeHH$:$TimeMM$", kShot, "0907"},
        {"en_US", "$TimeH$:h:$TimeM$:m:$TimeS$:s", kShot, "9h7m3s"},
        {"en_US", "$TimeSS$", kShot, "03"},
        {"en_US", "$TimeHH$", at(2013, 3, 5, 23), "23"},
        {"en_US", "$DateMM$:$DateDD$", at(2013, 12, 31, 0), "1231"},
        // The two-digit year is the year less 2000, not a modulo.
        {"en_US", "$DateYY$", at(2005, 6, 1), "05"},
        {"en_US", "$DateYY$", at(2000, 6, 1), "00"},
        {"en_US", "$DateYY$", at(1999, 6, 1), "-1"},
        {"en_US", "$DateYY$", at(2105, 6, 1), "105"},
        {"en_US", "$DateYYYY$", at(999, 6, 1), "0999"},
        // Empty pieces vanish; tokens match whole pieces, case-sensitively.
        {"en_US", "", kShot, ""},
        {"en_US", "::Shot::", kShot, "Shot"},
        {"en_US", "$dateyyyy$", kShot, "$dateyyyy$"},
        {"en_US", "$DateYYYY", kShot, "$DateYYYY"},
        {"en_US", "x$DateYYYY$", kShot, "x$DateYYYY$"},
        {"en_US", " $DateYYYY$", kShot, " $DateYYYY$"},
        // A typed slash ends as ":" at the file-system level (shown as "/"); a date's slashes become hyphens.
        {"en_US", "a/b", kShot, "a:b"},
        {"en_US", "$DateShort$:/:x", kShot, "3-5-13:x"},
        {"en_US", "$DateMedium$", kShot, "Mar 5, 2013"},
        {"en_US", "$DateLong$", kShot, "March 5, 2013"},
        {"en_US", "$DateFull$", kShot, "Tuesday, March 5, 2013"},
        // Other locales keep their own shapes.
        {"de_DE", "$DateShort$", kShot, "05.03.13"},
        {"de_DE", "$DateLong$", kShot, "5. März 2013"},
        {"de_DE", "$DateFull$", kShot, "Dienstag, 5. März 2013"},
        {"de_DE", "$TimeShort$", kShot, "09.07"},
        {"de_DE", "$TimeMedium$", kShot, "09.07.03"},
        {"en_GB", "$DateShort$", kShot, "05-03-2013"},
        {"en_GB", "$DateMedium$", kShot, "5 Mar 2013"},
        {"en_GB", "$TimeShort$", kShot, "09.07"},
        {"ja_JP", "$DateShort$", kShot, "2013-03-05"},
        {"ja_JP", "$DateLong$", kShot, "2013年3月5日"},
        {"ja_JP", "$TimeMedium$", kShot, "9時07分03秒"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.locale) + " " + c.pattern);
        QLocale::setDefault(QLocale(QString::fromLatin1(c.locale)));
        EXPECT_EQ(name(QString::fromUtf8(c.pattern), c.date), QString::fromUtf8(c.expected));
    }
    // Still in Japanese, after the last rows.
    EXPECT_TRUE(name("$DateFull$").startsWith("2013年3月5日")) << name("$DateFull$").toStdString();
    EXPECT_EQ(name(QString()), "");
    // Neither the counter nor the size is asked for without their tokens.
    EXPECT_EQ(mCounter, 0);
    EXPECT_EQ(mMeasured, 0);
    EXPECT_EQ(RenamePattern::allTokens().size(), 26);
    for (const QString &token : RenamePattern::allTokens())
        EXPECT_TRUE(RenamePattern::isToken(token)) << token.toStdString();
}

TEST_F(RenamePatternTest, CountersAdvanceOncePerToken)
{
    mCounter = 41;
    EXPECT_EQ(name("$Counter3$:_:$Counter1$"), "042_43");
    EXPECT_EQ(mCounter, 43);
    mCounter = 0;
    EXPECT_EQ(name("$Counter1$:$Counter2$:$Counter3$:$Counter4$"), "1020030004");
    mCounter = 12344;
    EXPECT_EQ(name("$Counter2$"), "12345") << "wider numbers are not cut";
}

TEST_F(RenamePatternTest, DimensionsAreTruncatedAndMeasuredPerToken)
{
    EXPECT_EQ(name("$Dimensions1$:_:$Dimensions2$"), "1440x900_1440 x 900");
    EXPECT_EQ(mMeasured, 2);
    mSize = QSizeF(0, 0);
    EXPECT_EQ(name("$Dimensions2$"), "0 x 0");
    mSize = QSizeF(611.999, 792.5);
    EXPECT_EQ(name("$Dimensions1$"), "611x792");
}

TEST_F(RenamePatternTest, EnglishUnitedStatesTimeStyles)
{
    const QString shortTime = name("$TimeShort$");
    EXPECT_TRUE(shortTime.startsWith("9.07")) << shortTime.toStdString();
    EXPECT_TRUE(shortTime.endsWith("AM")) << shortTime.toStdString();
    EXPECT_FALSE(shortTime.contains("03"));

    const QString mediumTime = name("$TimeMedium$");
    EXPECT_TRUE(mediumTime.startsWith("9.07.03")) << mediumTime.toStdString();
    EXPECT_TRUE(mediumTime.endsWith("AM")) << mediumTime.toStdString();

    const QString zone = kShot.timeZoneAbbreviation();
    const QString longTime = name("$TimeLong$");
    EXPECT_EQ(longTime, mediumTime + " " + QString(zone).replace(':', '.').replace('/', ':'));

    const QString zoneName = kShot.timeZone().displayName(kShot, QTimeZone::LongName, QLocale());
    ASSERT_FALSE(zoneName.isEmpty());
    EXPECT_EQ(name("$TimeFull$"), mediumTime + " " + QString(zoneName).replace(':', '.').replace('/', ':'));
    // A time's colons become full stops, a date's colons hyphens.
    EXPECT_FALSE(name("$TimeShort$:$TimeMedium$:$TimeLong$:$TimeFull$").contains(':'));
}

TEST_F(RenamePatternTest, DerivedFormatsAcrossLocales)
{
    for (const char *code : {"en_US", "en_GB", "de_DE", "fr_FR", "ja_JP", "zh_CN", "ru_RU", "ar_EG", "ko_KR",
                             "hu_HU", "fa_IR", "pt_BR", "sv_SE"}) {
        const QLocale locale{QString::fromLatin1(code)};
        SCOPED_TRACE(code);
        const QString longDate = RenamePattern::dateFormat(RenamePattern::LongStyle, locale);
        const QString mediumDate = RenamePattern::dateFormat(RenamePattern::MediumStyle, locale);
        EXPECT_FALSE(longDate.contains("ddd"));
        EXPECT_FALSE(mediumDate.contains("ddd"));
        EXPECT_FALSE(mediumDate.contains("MMMM"));
        EXPECT_TRUE(RenamePattern::dateFormat(RenamePattern::FullStyle, locale).contains("dddd"));
        // Nothing dangling where the weekday was.
        EXPECT_FALSE(longDate.startsWith(',') || longDate.startsWith(' ') || longDate.endsWith(' ') ||
                     longDate.endsWith(','));

        const QString mediumTime = RenamePattern::timeFormat(RenamePattern::MediumStyle, kShot, locale);
        EXPECT_FALSE(mediumTime.contains('t'));
        EXPECT_FALSE(mediumTime.contains("()"));
        EXPECT_TRUE(mediumTime.contains('s'));
        EXPECT_TRUE(RenamePattern::timeFormat(RenamePattern::LongStyle, kShot, locale).contains('t'));
        EXPECT_FALSE(RenamePattern::timeString(kShot, RenamePattern::ShortStyle, locale).contains("03"));
    }
    EXPECT_EQ(RenamePattern::timeFormat(RenamePattern::MediumStyle, kShot, QLocale("fa_IR")), "H:mm:ss");

    // Without a language (no LANG) the four styles stay distinct too.
    const QLocale c = QLocale::c();
    QStringList dates, times;
    for (const auto style : {RenamePattern::ShortStyle, RenamePattern::MediumStyle, RenamePattern::LongStyle,
                             RenamePattern::FullStyle}) {
        dates.append(RenamePattern::dateString(kShot, style, c));
        times.append(RenamePattern::timeFormat(style, kShot, c));
    }
    EXPECT_EQ(dates.first(), kShot.toLocalTime().toString("MM/dd/yy"));
    EXPECT_EQ(times.first(), "HH:mm");
    EXPECT_EQ(QSet<QString>(dates.begin(), dates.end()).size(), 4) << qPrintable(dates.join(" | "));
    EXPECT_EQ(QSet<QString>(times.begin(), times.end()).size(), 4) << qPrintable(times.join(" | "));
    EXPECT_EQ(RenamePattern::dateFormat(RenamePattern::LongStyle, QLocale("hu_HU")), "yyyy. MMMM d.");
}

TEST_F(RenamePatternTest, DateOfTheFileAttributes)
{
    const QDateTime created(QDate(2013, 3, 5), QTime(9, 7, 3), Qt::UTC);
    const QDateTime modified(QDate(2014, 1, 2), QTime(3, 4, 5), Qt::UTC);
    EXPECT_EQ(RenamePattern::dateFromFileAttributes(
                  QVariantMap{{"NSFileCreationDate", created}, {"NSFileModificationDate", modified}}),
              created);
    EXPECT_EQ(RenamePattern::dateFromFileAttributes(QVariantMap{{"NSFileModificationDate", modified}}),
              modified);
    EXPECT_EQ(RenamePattern::dateFromFileAttributes(
                  QVariantMap{{"NSFileCreationDate", "yesterday"}, {"NSFileModificationDate", modified}}),
              modified);

    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime now = RenamePattern::dateFromFileAttributes(std::nullopt);
    EXPECT_GE(now, before);
    EXPECT_LE(now, QDateTime::currentDateTime());
    EXPECT_GE(RenamePattern::dateFromFileAttributes(QVariantMap{}), before);

    // Dates are shown in the local time zone.
    EXPECT_EQ(name("$TimeHH$:$TimeMM$", created), created.toLocalTime().toString("HHmm"));
}

} // namespace
