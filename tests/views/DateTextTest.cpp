#include "views/common/DateText.h"

#include <QLocale>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// Tuesday, 18 November 2025, 16:47 UTC.
constexpr Date afternoon{1'763'484'420s};

QString in(const QLocale& locale)
{
    QLocale::setDefault(locale);
    QString text = mediumDateTime(afternoon);
    QLocale::setDefault(QLocale::c());
    // Newer tables of languages have a narrow blank before AM and PM.
    return text.replace(QChar(0x202F), u' ');
}

TEST(DateTextTest, isShortInTheLanguageOfTheDesktop)
{
    EXPECT_EQ(in(QLocale(QLocale::English, QLocale::UnitedStates)), u"Nov 18, 2025, 4:47 PM"_s);
    EXPECT_EQ(in(QLocale(QLocale::English, QLocale::UnitedKingdom)), u"18 Nov 2025, 16:47"_s);
    EXPECT_EQ(in(QLocale(QLocale::German)), u"18. Nov. 2025, 16:47"_s);
    EXPECT_EQ(in(QLocale(QLocale::Japanese)), u"2025年11月18日, 16:47"_s);
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
