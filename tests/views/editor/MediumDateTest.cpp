#include "views/editor/MediumDate.h"

#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

QString dateIn(const QLocale& locale, const char* zone = "UTC")
{
    return mediumDate(*parseDate("2025-03-14T09:12:59.999Z"), locale, QTimeZone(zone));
}

TEST(MediumDate, SpeaksAsTheSystem)
{
    EXPECT_EQ(dateIn({QLocale::English, QLocale::UnitedStates}), u"Mar 14, 2025 at 9:12 AM");
    EXPECT_EQ(dateIn({QLocale::English, QLocale::UnitedKingdom}), u"14 Mar 2025 at 09:12");
    EXPECT_EQ(dateIn({QLocale::German, QLocale::Germany}), u"14. März 2025 09:12");
    EXPECT_EQ(dateIn({QLocale::Chinese, QLocale::China}), u"2025年3月14日 09:12");
}

TEST(MediumDate, WithoutASystemItSpeaksAsTheProgram)
{
    EXPECT_EQ(dateIn(QLocale::c()), u"Mar 14, 2025 at 9:12 AM");
}

TEST(MediumDate, IsInTheTimeZone)
{
    EXPECT_EQ(dateIn(QLocale::c(), "America/New_York"), u"Mar 14, 2025 at 5:12 AM");
}

} // namespace
} // namespace vellumry::test
