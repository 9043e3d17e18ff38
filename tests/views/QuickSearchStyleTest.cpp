#include "views/palette/QuickSearchStyle.h"

#include <gtest/gtest.h>

namespace vellumry {
namespace {

using Style = QuickSearchStyle;

QString name(const QColor& color)
{
    return color.name(QColor::HexArgb);
}

TEST(QuickSearchStyleTest, greysAreTheGivenLevels)
{
    EXPECT_EQ(name(Style::subtleTextColor), u"#ff808080"_qs);
    EXPECT_EQ(name(Style::faintTextColor), u"#ff595959"_qs);
    EXPECT_EQ(name(Style::selectionBackground), u"#ff2e2e2e"_qs);
    EXPECT_EQ(name(Style::hoverBackground), u"#ff262626"_qs);
    EXPECT_EQ(name(Style::badgeText), u"#ff999999"_qs);
    EXPECT_EQ(name(Style::placeholder), u"#ff666666"_qs);
}

TEST(QuickSearchStyleTest, iconColoursAreTheGivenOnes)
{
    EXPECT_EQ(name(Style::iconOrange), u"#ffff9f0a"_qs);
    EXPECT_EQ(name(Style::iconGreen), u"#ff30d158"_qs);
    EXPECT_EQ(name(Style::iconPink), u"#ffff375f"_qs);
}

TEST(QuickSearchStyleTest, readsSixAndEightDigits)
{
    const QColor fallback(Qt::blue);
    EXPECT_EQ(name(Style::color(u"0A1b2C"_qs, fallback)), u"#ff0a1b2c"_qs);
    EXPECT_EQ(name(Style::color(u"0A1B2C80"_qs, fallback)), u"#800a1b2c"_qs);
    EXPECT_EQ(name(Style::color(u" \t#0A1B2C\n"_qs, fallback)), u"#ff0a1b2c"_qs);
    EXPECT_EQ(name(Style::color(u"0A#1B#2C"_qs, fallback)), u"#ff0a1b2c"_qs);
}

TEST(QuickSearchStyleTest, anyOtherTextGivesTheFallback)
{
    const QColor fallback(1, 2, 3);
    for (const QString& text : {u""_qs, u"#"_qs, u"FFF"_qs, u"12345"_qs, u"1234567"_qs,
                                u"123456789"_qs, u"GG0000"_qs, u"+12345"_qs, u"12 456"_qs}) {
        EXPECT_EQ(Style::color(text, fallback), fallback) << qPrintable(text);
    }
}

} // namespace
} // namespace vellumry
