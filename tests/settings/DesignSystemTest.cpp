#include "settings/DesignSystem.h"

#include "settings/CategoryColorService.h"

#include <gtest/gtest.h>

namespace vellumry {
namespace {

using namespace Qt::StringLiterals;
using DesignSystem::Colors;

TEST(DesignSystemColors, AreThoseOfTheLightDesign)
{
    const Colors& colors = Colors::of(ColorScheme::light);
    EXPECT_EQ(colors.windowBackground, colorFromHex(u"#F4F4F0"_s));
    EXPECT_EQ(colors.controlBackground, colorFromHex(u"#FCFCFA"_s));
    EXPECT_EQ(colors.textBackground, colorFromHex(u"#FFFFFF"_s));
    EXPECT_EQ(colors.thinStroke, colorFromHex(u"#1C242214"_s));
    EXPECT_EQ(colors.accent, colorFromHex(u"#0B6778"_s));
}

TEST(DesignSystemColors, AreThoseOfTheDarkDesign)
{
    const Colors& colors = Colors::of(ColorScheme::dark);
    EXPECT_EQ(colors.windowBackground, colorFromHex(u"#1A1C1C"_s));
    EXPECT_EQ(colors.controlBackground, colorFromHex(u"#222525"_s));
    EXPECT_EQ(colors.textBackground, colorFromHex(u"#171919"_s));
    EXPECT_EQ(colors.thinStroke, colorFromHex(u"#FFFFFF17"_s));
    EXPECT_EQ(colors.accent, colorFromHex(u"#62C6D5"_s));
}

} // namespace
} // namespace vellumry
