// What moves in the main window, with animations switched on.

#include "support/Eventually.h"
#include "views/MainFixture.h"
#include "views/common/PillToast.h"
#include "views/window/EmptyStateView.h"

namespace vellumry::test {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class MotionOfTheMainWindow : public MainFixture {
protected:
    void SetUp() override
    {
        QApplication::setStyle(QStyleFactory::create(u"Fusion"_s)); // which has animations
    }
};

TEST_F(MotionOfTheMainWindow, TheWelcomeSymbolGrows)
{
    content().resize(800, 600);
    content().show();
    EXPECT_NEAR(content().welcome().iconScale(), 0.8, 0.05);
    EXPECT_TRUE(eventually([&] { return content().welcome().iconScale() == 1.0; }));
}

TEST_F(MotionOfTheMainWindow, SidebarRowsSlideToTheirPlaces)
{
    loadFour();
    open();
    CollectionRowView* work = sidebar().collectionRow(u"Work"_s);
    CollectionRowView* home = sidebar().collectionRow(u"Home"_s);
    const int first = work->y();
    const int second = home->y();
    const QPoint onHome = work->mapFromGlobal(home->mapToGlobal(home->rect().center()));
    QTest::mousePress(work, Qt::LeftButton, {}, work->rect().center());
    QTest::mouseMove(work, onHome);
    EXPECT_GT(home->y(), first) << "not there yet";
    EXPECT_TRUE(eventually([&] { return home->y() == first && work->y() == second; }));
    QTest::mouseRelease(work, Qt::LeftButton, {}, work->rect().center());
}

TEST_F(MotionOfTheMainWindow, CardsSlideToTheirPlaces)
{
    loadFour();
    open();
    const QRect first = cards().cardRect(u"id-One"_s);
    const auto ground = [&](const QPoint& point) {
        const QImage image = cards().viewport()->grab().toImage();
        return image.pixelColor((QPointF(point) * image.devicePixelRatio()).toPoint()).rgb();
    };
    // In the gap below the first card the list's ground is seen, but while cards slide over it.
    const QPoint gap(first.right() - 60, first.bottom() + 3);
    ASSERT_EQ(ground(gap), theme.colors().list.rgb());
    cards().slideCards([&] { model.moveSnippets({0}, 3, false); });
    EXPECT_NE(cards().cardRect(u"id-Two"_s), first);
    EXPECT_EQ(cards().cardRect(u"id-Two"_s).topLeft(), first.topLeft()) << "the place to be";
    EXPECT_NE(ground(first.topRight() + QPoint(-60, 66)), theme.colors().list.rgb())
        << "something is on its way";
    const QRect two = cards().cardRect(u"id-Two"_s);
    EXPECT_TRUE(eventually([&] {
        return ground({two.right() - 60, two.bottom() + 3}) == theme.colors().list.rgb();
    }));
}

TEST_F(MotionOfTheMainWindow, TheToastFadesInAndOut)
{
    loadFour();
    open();
    content().showImportResult(u"checkmark"_s, u"Imported 1 snippet"_s);
    EXPECT_TRUE(content().toast().isVisible());
    content().hideImportResult();
    EXPECT_FALSE(content().toast().isPresented());
    EXPECT_TRUE(eventually([&] { return !content().toast().isVisible(); }));
    content().showImportResult(u"xmark"_s, u"Import failed: x"_s);
    content().hideImportResult();
    content().showImportResult(u"checkmark"_s, u"again"_s); // while it goes
    EXPECT_TRUE(content().toast().isPresented());
    EXPECT_TRUE(content().toast().isVisible());
}

TEST_F(MotionOfTheMainWindow, ASheetThatEntersCanBeDismissedAtOnce)
{
    loadFour();
    open();
    model.requestDelete(u"id-One"_s);
    key(Qt::Key_Escape);
    EXPECT_FALSE(sheets().isPresenting());
    EXPECT_TRUE(eventually([&] { return !sheets().isVisible(); }));
    EXPECT_EQ(model.snippets().size(), 4);
}

} // namespace
} // namespace vellumry::test
