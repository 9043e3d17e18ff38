#include "views/sidebar/ColorWell.h"

#include "settings/CategoryColorService.h"
#include "views/common/TextField.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class ColorWellTest : public testing::Test {
protected:
    ColorWellTest() { well.resize(320, 220); }

    Theme theme{ColorScheme::light, 1};
    ColorWell well{theme, QColor(0x2E, 0x93, 0xA5)};
};

TEST_F(ColorWellTest, StartsWithItsColor)
{
    EXPECT_NEAR(well.color().red(), 0x2E, 1);
    EXPECT_NEAR(well.color().green(), 0x93, 1);
    EXPECT_NEAR(well.color().blue(), 0xA5, 1);
    EXPECT_EQ(well.digits()->text(), toHex(well.color()));
}

TEST_F(ColorWellTest, TheMouseSetsSaturationBrightnessAndHue)
{
    const QSignalSpy changed(&well, &ColorWell::colorChanged);
    well.show();
    QWidget* shades = well.shadeField();
    QTest::mouseClick(shades, Qt::LeftButton, {}, {shades->width() - 1, 0});
    EXPECT_GT(well.color().saturationF(), 0.98);
    EXPECT_GT(well.color().valueF(), 0.98);
    QTest::mouseClick(shades, Qt::LeftButton, {}, {0, shades->height() - 1});
    EXPECT_LT(well.color().valueF(), 0.02);
    QTest::mouseClick(shades, Qt::LeftButton, {}, {shades->width() - 1, 0});
    QWidget* hues = well.hueStrip();
    QTest::mouseClick(hues, Qt::LeftButton, {}, {hues->width() / 3, 5});
    EXPECT_NEAR(well.color().hueF(), 1.0 / 3, 0.01); // green
    EXPECT_EQ(changed.size(), 4);
    EXPECT_EQ(well.digits()->text(), toHex(well.color()));
}

TEST_F(ColorWellTest, ArrowsSetThemToo)
{
    well.setColor(Qt::black);
    for (int i = 0; i < 15; ++i)
        QTest::keyClick(well.shadeField(), Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_FLOAT_EQ(well.color().valueF(), 1) << "no further than the edge";
    for (int i = 0; i < 15; ++i)
        QTest::keyClick(well.shadeField(), Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_FLOAT_EQ(well.color().saturationF(), 1);
    const float hue = well.color().hueF();
    QTest::keyClick(well.hueStrip(), Qt::Key_Left, Qt::ShiftModifier);
    EXPECT_NE(well.color().hueF(), hue);
}

TEST_F(ColorWellTest, DigitsAreTakenAsSoonAsTheyAreAColor)
{
    well.digits()->selectAll();
    QTest::keyClicks(well.digits(), u"FF8000"_s);
    EXPECT_EQ(well.color().rgb(), QColor(0xFF, 0x80, 0x00).rgb());
    EXPECT_EQ(well.digits()->text(), u"FF8000"_s) << "as it was typed";
    QTest::keyClicks(well.digits(), u"0"_s); // seven are none
    EXPECT_EQ(well.color().rgb(), QColor(0xFF, 0x80, 0x00).rgb());
}

TEST_F(ColorWellTest, AGreyKeepsTheHue)
{
    well.setColor(Qt::blue);
    well.setColor(Qt::gray);
    QWidget* shades = well.shadeField();
    well.show();
    QTest::mouseClick(shades, Qt::LeftButton, {}, {shades->width() - 1, 0});
    EXPECT_NEAR(well.color().hueF(), 2.0 / 3, 0.01);
}

} // namespace
} // namespace vellumry::test
