#include "views/sidebar/ColorWell.h"

#include "settings/CategoryColorService.h"
#include "views/AccessibleEvents.h"
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

TEST_F(ColorWellTest, ScreenReadersAreToldTheValues)
{
    AccessibleEvents events;
    well.setColor(QColor::fromHsvF(0.5F, 0.25F, 0.75F));
    QAccessibleInterface* hue = QAccessible::queryAccessibleInterface(well.hueStrip());
    EXPECT_EQ(hue->role(), QAccessible::Slider);
    EXPECT_EQ(hue->text(QAccessible::Name), u"Hue");
    EXPECT_EQ(hue->text(QAccessible::Value), u"180°");
    QAccessibleValueInterface* value = hue->valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->currentValue().toInt(), 180);
    EXPECT_EQ(value->minimumValue().toInt(), 0);
    EXPECT_EQ(value->maximumValue().toInt(), 360);
    EXPECT_GE(value->minimumStepSize().toDouble(), 1);

    QAccessibleInterface* shades = QAccessible::queryAccessibleInterface(well.shadeField());
    EXPECT_EQ(shades->role(), QAccessible::Slider);
    EXPECT_EQ(shades->text(QAccessible::Name), u"Saturation and brightness");
    EXPECT_EQ(shades->text(QAccessible::Description), u"Saturation 25%, brightness 75%");
    EXPECT_FALSE(shades->valueInterface()) << "it has two";
}

TEST_F(ColorWellTest, ScreenReadersAreToldOfChanges)
{
    well.setColor(QColor::fromHsvF(0.5F, 0.25F, 0.75F));
    AccessibleEvents events;
    QWidget* hues = well.hueStrip();
    QWidget* shades = well.shadeField();
    QTest::keyClick(hues, Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(events.take(hues, QAccessible::ValueChanged), 1);
    EXPECT_EQ(events.take(shades, QAccessible::DescriptionChanged), 0) << "they are as they were";
    QTest::keyClick(shades, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(events.take(hues, QAccessible::ValueChanged), 0);
    EXPECT_EQ(events.take(shades, QAccessible::DescriptionChanged), 1);
    EXPECT_EQ(shades->accessibleDescription(), u"Saturation 25%, brightness 85%");
}

TEST_F(ColorWellTest, ScreenReadersSetTheHue)
{
    well.setColor(QColor::fromHsvF(0.5F, 0.25F, 0.75F));
    const QSignalSpy changed(&well, &ColorWell::colorChanged);
    QAccessibleValueInterface* value =
        QAccessible::queryAccessibleInterface(well.hueStrip())->valueInterface();
    ASSERT_TRUE(value);
    value->setCurrentValue(90.0);
    EXPECT_NEAR(well.color().hueF(), 0.25, 0.01);
    EXPECT_EQ(changed.size(), 1);
    value->setCurrentValue(1000);
    EXPECT_EQ(value->currentValue().toInt(), 360) << "no further than the edge";
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
