#include "views/common/TextField.h"

#include "views/common/Button.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

class TextFieldTest : public testing::Test {
protected:
    QColor edge(QWidget& field)
    {
        const QImage image = field.grab().toImage();
        return image.pixelColor(int(100 * image.devicePixelRatio()), 0);
    }

    Theme theme{ColorScheme::light, 1};
    QWidget window;
};

TEST_F(TextFieldTest, ItsFrameShowsTheFocus)
{
    auto* field = new TextField(theme, u"Name"_s, &window);
    field->resize(200, 32);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    field->clearFocus();
    EXPECT_NE(edge(*field), theme.colors().focusRing);
    field->setFocus();
    EXPECT_EQ(edge(*field), theme.colors().focusRing);
    theme.setScheme(ColorScheme::dark);
    EXPECT_EQ(edge(*field), theme.colors().focusRing);
}

TEST_F(TextFieldTest, TheClearButtonStandsWhileThereIsText)
{
    TextField field(theme, u"Name"_s, &window);
    field.addClearButton(u"Clear"_s);
    const QSignalSpy asked(&field, &TextField::clearRequested);
    EXPECT_TRUE(field.clearButton()->isHidden());
    field.setText(u"x"_s);
    EXPECT_FALSE(field.clearButton()->isHidden());
    field.clearButton()->click();
    EXPECT_EQ(asked.size(), 1);
    field.clear();
    EXPECT_TRUE(field.clearButton()->isHidden());
}

TEST_F(TextFieldTest, FollowsTheSizeOfTheText)
{
    const TextField field(theme, u"Name"_s, &window);
    EXPECT_EQ(field.sizeHint().height(), 32);
    theme.setTextScale(1.6);
    EXPECT_EQ(field.font().pixelSize(), 21);
    EXPECT_GT(field.sizeHint().height(), 32);
}

} // namespace
} // namespace vellumry::test
