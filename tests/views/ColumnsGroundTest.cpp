#include "views/window/ColumnsGround.h"

#include "views/MainFixture.h"

#include <QSignalSpy>

namespace vellumry::test {
namespace {

constexpr QSize size{1024, 680};

/// Far below the text, where only the columns' own colours are.
constexpr int row = size.height() - 3;

class ColumnsGroundTest : public MainFixture {
protected:
    QImage picture(Qt::LayoutDirection direction)
    {
        ColumnsGround ground(theme);
        ground.setLayoutDirection(direction);
        ground.resize(size);
        return ground.grab().toImage();
    }
};

TEST_F(ColumnsGroundTest, hasTheColoursOfTheColumnsThatTakeItsPlace)
{
    loadFour();
    open(size);
    for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
        theme.setScheme(scheme);
        const QImage contents = content().grab().toImage();
        const QImage ground = picture(Qt::LeftToRight);
        for (int x = 0; x < size.width(); ++x)
            ASSERT_EQ(ground.pixelColor(x, row), contents.pixelColor(x, row)) << x;
    }
}

TEST_F(ColumnsGroundTest, isMirroredWhereTheDesktopIs)
{
    const QImage ground = picture(Qt::RightToLeft);
    EXPECT_EQ(ground.pixelColor(0, row), theme.colors().editor);
    EXPECT_EQ(ground.pixelColor(600, row), theme.colors().list);
    EXPECT_EQ(ground.pixelColor(800, row), theme.colors().sidebar);
}

TEST_F(ColumnsGroundTest, tellsOnceThatItIsPainted)
{
    ColumnsGround ground(theme);
    const QSignalSpy paintings(&ground, &ColumnsGround::painted);
    ground.resize(size);
    (void)ground.grab();
    EXPECT_EQ(paintings.count(), 0) << "in a later turn";
    QApplication::processEvents();
    (void)ground.grab();
    QApplication::processEvents();
    EXPECT_EQ(paintings.count(), 1);
}

} // namespace
} // namespace vellumry::test
