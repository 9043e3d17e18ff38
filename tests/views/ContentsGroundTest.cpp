#include "views/window/ContentsGround.h"

#include "views/MainFixture.h"

#include <QSignalSpy>

namespace vellumry::test {
namespace {

constexpr QSize size{1024, 680};

/// The colours far below the text, where only the columns' own are.
QList<QRgb> lowestColours(const QImage& picture)
{
    constexpr int aboveEdge = 3;
    QList<QRgb> colours;
    for (int x = 0; x < picture.width(); ++x)
        colours.append(picture.pixel(x, picture.height() - aboveEdge));
    return colours;
}

class ContentsGroundTest : public MainFixture {
protected:
    QImage picture(Qt::LayoutDirection direction)
    {
        ContentsGround ground(theme, ContentsGround::Kind::columns);
        ground.setLayoutDirection(direction);
        ground.resize(size);
        return ground.grab().toImage();
    }
};

TEST_F(ContentsGroundTest, hasTheColoursOfTheColumnsThatTakeItsPlace)
{
    loadFour();
    open(size);
    for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
        theme.setScheme(scheme);
        EXPECT_EQ(lowestColours(picture(Qt::LeftToRight)),
                  lowestColours(content().grab().toImage()));
    }
}

TEST_F(ContentsGroundTest, isMirroredWhereTheDesktopIs)
{
    const QList<QRgb> colours = lowestColours(picture(Qt::RightToLeft));
    const qsizetype list = colours.indexOf(theme.colors().list.rgb());
    const qsizetype sidebar = colours.indexOf(theme.colors().sidebar.rgb());
    EXPECT_EQ(colours.first(), theme.colors().editor.rgb());
    EXPECT_GT(list, 0);
    EXPECT_GT(sidebar, list);
}

TEST_F(ContentsGroundTest, hasTheColourOfTheWelcome)
{
    world.load({}, {});
    open(size);
    ASSERT_TRUE(content().isWelcoming());
    ContentsGround ground(theme, ContentsGround::Kind::welcome);
    ground.resize(size);
    EXPECT_EQ(lowestColours(ground.grab().toImage()), lowestColours(content().grab().toImage()));
}

TEST_F(ContentsGroundTest, tellsOnceThatItIsPainted)
{
    ContentsGround ground(theme, ContentsGround::Kind::columns);
    const QSignalSpy paintings(&ground, &ContentsGround::painted);
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
