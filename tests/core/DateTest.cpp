#include "core/Date.h"

#include <QTimeZone>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace std::chrono;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

Date at(int year, unsigned month, unsigned day, nanoseconds timeOfDay = 0ns)
{
    return sys_days(std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day)) +
           timeOfDay;
}

std::optional<Date> parse(const QString& text)
{
    return parseDate(text.toUtf8());
}

TEST(Date, IsWrittenWithThreeFractionDigitsInUtc)
{
    EXPECT_EQ(formatDate(at(2026, 3, 9, 14h + 5min + 7s + 123ms)), u"2026-03-09T14:05:07.123Z"_s);
    EXPECT_EQ(formatDate(at(2026, 3, 9, 14h + 5min + 7s)), u"2026-03-09T14:05:07.000Z"_s);
    EXPECT_EQ(formatDate(Date{}), u"1970-01-01T00:00:00.000Z"_s);
}

TEST(Date, IsCutToTheMillisecondTowardsThePast)
{
    EXPECT_EQ(formatDate(at(2026, 3, 9, 999'999'999ns)), u"2026-03-09T00:00:00.999Z"_s);
    EXPECT_EQ(formatDate(Date(-1ns)), u"1969-12-31T23:59:59.999Z"_s);
    EXPECT_EQ(truncatedToMilliseconds(Date(1'999'999ns)), Date(1ms));
    EXPECT_EQ(truncatedToMilliseconds(Date(-1ns)), Date(-1ms));
    EXPECT_EQ(truncatedToMilliseconds(Date(-1ms)), Date(-1ms));
}

TEST(Date, WriteDateGivesTheTextOfFormatDate)
{
    for (const Date date : {at(2026, 3, 9, 14h + 5min + 7s + 123ms), Date(-1ns), Date{},
                            at(1700, 1, 1), at(2262, 1, 1, 1ms)}) {
        char out[32];
        const char* end = writeDate(date, out);
        EXPECT_EQ(QString::fromLatin1(out, end - out), formatDate(date));
        EXPECT_EQ(end - out, dateTextLength);
    }
}

TEST(Date, ReadsWithAndWithoutFraction)
{
    EXPECT_EQ(parse(u"2026-03-09T14:05:07Z"_s), at(2026, 3, 9, 14h + 5min + 7s));
    EXPECT_EQ(parse(u"2026-03-09T14:05:07.123Z"_s), at(2026, 3, 9, 14h + 5min + 7s + 123ms));
}

TEST(Date, EveryMillisecondSurvivesExactly)
{
    for (int i = 0; i < 1000; ++i) {
        const QString text = u"2026-03-09T14:05:07.%1Z"_s.arg(i, 3, 10, QLatin1Char('0'));
        const auto date = parse(text);
        ASSERT_TRUE(date.has_value()) << qPrintable(text);
        EXPECT_EQ(*date, at(2026, 3, 9, 14h + 5min + 7s + milliseconds(i)));
        EXPECT_EQ(formatDate(*date), text);
    }
}

TEST(Date, ReadsFractionsOfOneToNineDigits)
{
    const QString digits = u"987654321"_s;
    EXPECT_EQ(parse(u"2026-03-09T00:00:00.9Z"_s), at(2026, 3, 9, 900ms));
    EXPECT_EQ(parse(u"2026-03-09T00:00:00.98Z"_s), at(2026, 3, 9, 980ms));
    for (int count = 3; count <= 9; ++count) {
        const QString text = u"2026-03-09T00:00:00."_s + digits.left(count) + u"Z"_s;
        EXPECT_EQ(parse(text), at(2026, 3, 9, 987ms)) << qPrintable(text);
    }
}

TEST(Date, ReadsOffsets)
{
    const Date expected = at(2026, 3, 9, 14h + 5min + 7s);
    EXPECT_EQ(parse(u"2026-03-09T22:05:07+08:00"_s), expected);
    EXPECT_EQ(parse(u"2026-03-09T08:35:07-05:30"_s), expected);
    EXPECT_EQ(parse(u"2026-03-10T00:05:07.250+10:00"_s), expected + 250ms);
    EXPECT_EQ(parse(u"2026-03-09T14:05:07+00:00"_s), expected);
}

TEST(Date, KnowsTheCalendar)
{
    EXPECT_EQ(parse(u"2024-02-29T00:00:00Z"_s), at(2024, 2, 29));
    EXPECT_EQ(parse(u"2000-02-29T00:00:00Z"_s), at(2000, 2, 29));
    EXPECT_FALSE(parse(u"1900-02-29T00:00:00Z"_s));
    EXPECT_FALSE(parse(u"2026-02-29T00:00:00Z"_s));
    EXPECT_FALSE(parse(u"2026-04-31T00:00:00Z"_s));
}

TEST(Date, EveryDayAgreesWithTheCalendarOfTheLibrary)
{
    for (Date day = at(1678, 1, 1); day < at(2262, 1, 1); day += days(17)) {
        const auto qt = QDateTime::fromMSecsSinceEpoch(
            duration_cast<milliseconds>(day.time_since_epoch()).count(), Qt::UTC);
        const QString text = qt.toString(Qt::ISODateWithMs);
        EXPECT_EQ(formatDate(day), text);
        EXPECT_EQ(parse(text), day);
    }
}

TEST(Date, RefusesWhatIsNoInternetDateTime)
{
    for (const char* text : {"",
                             " ",
                             "2026",
                             "2026-03-09",
                             "2026-03-09 14:05:07",
                             "2026-03-09 14:05:07Z",
                             "2026-03-09T14:05:07",
                             "2026-03-09T14:05Z",
                             "2026-3-9T14:05:07Z",
                             "26-03-09T14:05:07Z",
                             "2026-13-09T14:05:07Z",
                             "2026-00-09T14:05:07Z",
                             "2026-03-00T14:05:07Z",
                             "2026-03-32T14:05:07Z",
                             "2026-03-09T25:05:07Z",
                             "2026-03-09T14:60:07Z",
                             "2026-03-09T14:05:61Z",
                             "2026-03-09T14:05:07.Z",
                             "2026-03-09T14:05:07,123Z ",
                             "2026-03-09T14:05:07Zx",
                             "2026-03-09T14:05:07Z ",
                             " 2026-03-09T14:05:07Z",
                             "2026-03-09T14:05:07.12a3Z",
                             "2026-03-09T14:05:07+8",
                             "2026-03-09T14:05:07+99:00",
                             "2026-03-09T14:05:07+08:60",
                             "+2026-03-09T14:05:07Z",
                             "-026-03-09T14:05:07Z",
                             "2026/03/09T14:05:07Z",
                             "2026-03-09T14.05.07Z",
                             "yesterday",
                             "1772978707"})
        EXPECT_FALSE(parseDate(text)) << '"' << text << '"';
    EXPECT_FALSE(parseDate(QByteArrayView("2026-03-09T14:05:07Z\0", 21)));
    EXPECT_FALSE(parseDate(QByteArrayView("2026-03-09T14:05:07\0Z", 21)));
    EXPECT_FALSE(parse(u"２０２６-03-09T14:05:07Z"_s));
}

TEST(Date, RefusesYearsThatADateCannotHold)
{
    EXPECT_FALSE(parse(u"1600-01-01T00:00:00Z"_s));
    EXPECT_FALSE(parse(u"2300-01-01T00:00:00Z"_s));
    EXPECT_FALSE(parse(u"0000-01-01T00:00:00Z"_s));
    EXPECT_FALSE(parse(u"9999-12-31T23:59:59.999Z"_s));
    EXPECT_EQ(parse(u"1678-01-01T00:00:00Z"_s), at(1678, 1, 1));
    EXPECT_EQ(parse(u"2262-04-11T23:47:16.854Z"_s), truncatedToMilliseconds(Date::max()));
    EXPECT_FALSE(parse(u"2262-04-11T23:47:16.855Z"_s));
    EXPECT_FALSE(parse(u"2262-04-11T23:47:17Z"_s));
    EXPECT_FALSE(parse(u"1677-09-21T00:12:43Z"_s));
    EXPECT_EQ(parse(u"1677-09-21T00:12:44Z"_s), Date(-9'223'372'036s));
}

TEST(Date, TheEndsOfTheRangeCanBeWritten)
{
    EXPECT_EQ(formatDate(Date::max()), u"2262-04-11T23:47:16.854Z"_s);
    EXPECT_EQ(formatDate(Date::min() + 1ms), u"1677-09-21T00:12:43.146Z"_s);
}

TEST(Date, InSecondsIsWrittenWithoutFraction)
{
    const auto written = [](Date date) {
        char out[32];
        const char* end = writeDate(date, out, DatePrecision::seconds);
        return QString::fromLatin1(out, end - out);
    };
    EXPECT_EQ(written(at(2026, 3, 9) + 14h + 5min + 7s), u"2026-03-09T14:05:07Z"_s);
    EXPECT_EQ(written(at(2026, 3, 9) + 999'999'999ns), u"2026-03-09T00:00:00Z"_s);
    EXPECT_EQ(written(at(1970, 1, 1) - 1ns), u"1969-12-31T23:59:59Z"_s) << "cut, not rounded";
}

TEST(Date, InSecondsIsReadWithoutFractionAlone)
{
    const auto read = [](const char* text) { return parseDate(text, DatePrecision::seconds); };
    EXPECT_EQ(read("2026-03-09T14:05:07Z"), at(2026, 3, 9) + 14h + 5min + 7s);
    EXPECT_EQ(read("2026-03-09T14:05:07+02:00"), at(2026, 3, 9) + 12h + 5min + 7s);
    EXPECT_FALSE(read("2026-03-09T14:05:07.000Z"));
    EXPECT_FALSE(read("2026-03-09T14:05:07."));
    EXPECT_FALSE(read("2026-03-09T14:05:07.Z"));
    EXPECT_FALSE(read("2026-03-09T14:05:07"));
}

TEST(Date, TheSystemClockTellsTheTime)
{
    const auto before = system_clock::now();
    const Date now = SystemClock::shared().now();
    EXPECT_GE(now, before);
    EXPECT_LE(now, system_clock::now());
}

} // namespace
} // namespace vellumry
