#include "views/palette/QuickSearchStyle.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

using Style = QuickSearchStyle;

QString name(const QColor& color)
{
    return color.name(QColor::HexArgb);
}

TEST(QuickSearchStyleTest, greysAreTheGivenLevels)
{
    EXPECT_EQ(name(Style::subtleTextColor), u"#ff808080"_s);
    EXPECT_EQ(name(Style::faintTextColor), u"#ff595959"_s);
    EXPECT_EQ(name(Style::selectionBackground), u"#ff2e2e2e"_s);
    EXPECT_EQ(name(Style::hoverBackground), u"#ff262626"_s);
    EXPECT_EQ(name(Style::badgeText), u"#ff999999"_s);
    EXPECT_EQ(name(Style::placeholder), u"#ff666666"_s);
}

TEST(QuickSearchStyleTest, iconColoursAreTheGivenOnes)
{
    EXPECT_EQ(name(Style::iconOrange()), u"#ffff9f0a"_s);
    EXPECT_EQ(name(Style::iconGreen()), u"#ff30d158"_s);
    EXPECT_EQ(name(Style::iconPink()), u"#ffff375f"_s);
}

TEST(QuickSearchStyleTest, readsSixAndEightDigits)
{
    const QColor fallback(Qt::blue);
    EXPECT_EQ(name(Style::color(u"0A1b2C"_s, fallback)), u"#ff0a1b2c"_s);
    EXPECT_EQ(name(Style::color(u"0A1B2C80"_s, fallback)), u"#800a1b2c"_s);
    EXPECT_EQ(name(Style::color(u" \t#0A1B2C\n"_s, fallback)), u"#ff0a1b2c"_s);
    EXPECT_EQ(name(Style::color(u"0A#1B#2C"_s, fallback)), u"#ff0a1b2c"_s);
}

TEST(QuickSearchStyleTest, anyOtherTextGivesTheFallback)
{
    const QColor fallback(1, 2, 3);
    for (const QString& text : {u""_s, u"#"_s, u"FFF"_s, u"12345"_s, u"1234567"_s, u"123456789"_s,
                                u"GG0000"_s, u"+12345"_s, u"12 456"_s}) {
        EXPECT_EQ(Style::color(text, fallback), fallback) << qPrintable(text);
    }
}

} // namespace
} // namespace vellumry
