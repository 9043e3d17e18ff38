#include "views/common/Button.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class ButtonTest : public testing::Test {
protected:
    /// The colour of the button's face, near its left edge, where there is no text.
    static QColor face(Button& button)
    {
        const QImage image = button.grab().toImage();
        const QPointF point(Button::ringRoom + 4, button.height() / 2.0);
        return image.pixelColor((point * image.devicePixelRatio()).toPoint());
    }

    Theme theme{ColorScheme::light, 1};
};

TEST_F(ButtonTest, IsPaintedByItsKind)
{
    Button primary(theme, Button::Kind::primary, u"Save"_s);
    Button danger(theme, Button::Kind::danger, u"Delete"_s);
    primary.resize(primary.sizeHint());
    danger.resize(danger.sizeHint());
    EXPECT_EQ(face(primary), theme.colors().accentFill);
    EXPECT_EQ(face(danger), theme.colors().dangerFill);
    primary.setDown(true);
    EXPECT_EQ(face(primary), theme.colors().accentFillPressed);
    theme.setScheme(ColorScheme::dark);
    EXPECT_EQ(face(danger), theme.colors().dangerFill);
}

TEST_F(ButtonTest, HasTheHeightsOfTheDesignAndRoomForTheFocusLine)
{
    constexpr int ring = 2 * Button::ringRoom;
    const auto height = [&](Button::Size size) {
        return Button(theme, Button::Kind::primary, u"x"_s, nullptr, size).sizeHint().height();
    };
    EXPECT_EQ(height(Button::Size::small), 26 + ring);
    EXPECT_EQ(height(Button::Size::regular), 30 + ring);
    EXPECT_EQ(height(Button::Size::alert), 34 + ring);
    EXPECT_EQ(height(Button::Size::large), 36 + ring);
    EXPECT_EQ(Button(theme, Button::Kind::icon, {}).sizeHint(), QSize(28 + ring, 28 + ring));
}

TEST_F(ButtonTest, ShowsTheFocusOfTheKeyboardAlone)
{
    QWidget window;
    auto* button = new Button(theme, Button::Kind::primary, u"Save"_s, &window);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    button->clearFocus(); // which the window may have given to its only control
    button->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(button->isRingShown());
    button->clearFocus();
    EXPECT_FALSE(button->isRingShown());
    button->setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(button->isRingShown());
    EXPECT_EQ(button->focusPolicy(), Qt::TabFocus) << "a click takes no focus";
}

TEST_F(ButtonTest, SpaceAndReturnPressIt)
{
    Button button(theme, Button::Kind::primary, u"Save"_s);
    const QSignalSpy clicked(&button, &Button::clicked);
    QTest::keyClick(&button, Qt::Key_Space);
    QTest::keyClick(&button, Qt::Key_Return);
    QTest::keyClick(&button, Qt::Key_Enter);
    EXPECT_EQ(clicked.size(), 3);
    button.setEnabled(false);
    QTest::keyClick(&button, Qt::Key_Return);
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(clicked.size(), 3);
}

TEST_F(ButtonTest, ASymbolAloneHasANameAndAToolTip)
{
    QWidget parent;
    const Button* button = Button::withSymbol(theme, u"plus"_s, u"New"_s, &parent);
    EXPECT_EQ(button->accessibleName(), u"New"_s);
    EXPECT_EQ(button->toolTip(), u"New"_s);
    EXPECT_EQ(button->symbol(), u"plus"_s);
}

} // namespace
} // namespace vellumry::test
