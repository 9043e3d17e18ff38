#include "views/window/ColumnsGround.h"

#include "views/MainFixture.h"

#include <QSignalSpy>

namespace vellumry::test {
namespace {

constexpr QSize size{1024, 680};

class ColumnsGroundTest : public MainFixture {
protected:
    void expectTheColumnsColours(Qt::LayoutDirection direction)
    {
        loadFour();
        content().setLayoutDirection(direction);
        open(size);
        for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
            theme.setScheme(scheme);
            const QImage contents = content().grab().toImage();
            ColumnsGround ground(theme);
            ground.setLayoutDirection(direction);
            ground.resize(size);
            const QImage shown = ground.grab().toImage();
            // So far down no text stands.
            const int y = size.height() - 3;
            for (int x = 0; x < size.width(); ++x)
                ASSERT_EQ(shown.pixelColor(x, y), contents.pixelColor(x, y)) << x;
        }
    }
};

TEST_F(ColumnsGroundTest, hasTheColoursOfTheColumnsThatTakeItsPlace)
{
    expectTheColumnsColours(Qt::LeftToRight);
}

TEST_F(ColumnsGroundTest, isMirroredAsTheyAre)
{
    expectTheColumnsColours(Qt::RightToLeft);
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
