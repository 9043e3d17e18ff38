#include "views/common/DateText.h"

#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Tuesday, 18 November 2025, 16:47 UTC, and a little more.
constexpr Date afternoon{1'763'484'479'999ms};

QString in(const QLocale& locale, const char* zone = "UTC")
{
    // Newer tables of languages have a narrow blank before AM and PM.
    return mediumDateTime(afternoon, locale, QTimeZone(zone)).replace(QChar(0x202F), u' ');
}

TEST(DateTextTest, speaksAsTheDesktop)
{
    EXPECT_EQ(in({QLocale::English, QLocale::UnitedStates}), u"Nov 18, 2025 at 4:47 PM"_s);
    EXPECT_EQ(in({QLocale::English, QLocale::UnitedKingdom}), u"18 Nov 2025 at 16:47"_s);
    EXPECT_EQ(in({QLocale::German, QLocale::Germany}), u"18. Nov. 2025 16:47"_s);
    EXPECT_EQ(in({QLocale::Japanese, QLocale::Japan}), u"2025年11月18日 16:47"_s);
    EXPECT_EQ(in({QLocale::Chinese, QLocale::China}), u"2025年11月18日 16:47"_s);
}

TEST(DateTextTest, withoutALanguageItSpeaksAsTheProgram)
{
    EXPECT_EQ(in(QLocale::c()), u"Nov 18, 2025 at 4:47 PM"_s);
}

TEST(DateTextTest, isInTheTimeZone)
{
    EXPECT_EQ(in(QLocale::c(), "America/New_York"), u"Nov 18, 2025 at 11:47 AM"_s);
}

TEST(DateTextTest, neverNamesTheDayOfTheWeek)
{
    for (const QLocale& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyCountry)) {
        const QString text = in(locale);
        EXPECT_FALSE(text.contains(locale.dayName(2, QLocale::LongFormat)))
            << qPrintable(locale.name() + u": "_s + text);
        EXPECT_FALSE(text.startsWith(u','));
    }
}

TEST(DateTextTest, holdsAtTheEndsOfTime)
{
    EXPECT_FALSE(mediumDateTime(Date::min()).isEmpty());
    EXPECT_FALSE(mediumDateTime(Date::max()).isEmpty());
}

} // namespace
} // namespace vellumry::test
