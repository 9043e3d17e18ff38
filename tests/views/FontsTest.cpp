#include "views/common/Fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QStringList>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

TEST(FontsTest, hasTheGivenSizeAndWeight)
{
    const QFont font = uiFont(14, QFont::Medium);
    EXPECT_EQ(font.pixelSize(), 14);
    EXPECT_EQ(font.weight(), QFont::Medium);
    EXPECT_EQ(uiFont(11).weight(), QFont::Normal);
}

TEST(FontsTest, anInstalledFamilyLeadsAndColourEmojiComeSecond)
{
    const QStringList families = uiFont(14).families();
    ASSERT_GE(families.size(), 2);
    EXPECT_TRUE(QFontDatabase::hasFamily(families[0])) << qPrintable(families[0]);
    EXPECT_EQ(families[1], u"Noto Color Emoji"_s);
}

TEST(FontsTest, blanksAndDigitsAreNotThoseOfTheEmojiFont)
{
    const QFontMetricsF metrics(uiFont(100));
    EXPECT_LT(metrics.horizontalAdvance(u' '), 50);
    EXPECT_LT(metrics.horizontalAdvance(u'0'), 75);
}

} // namespace
} // namespace vellumry
