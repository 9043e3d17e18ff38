#include "views/common/OverlayScrollBar.h"

#include "support/ManualScheduler.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace vellumry {
namespace {

using namespace std::chrono_literals;

class OverlayScrollBarTest : public testing::Test {
protected:
    void SetUp() override
    {
        area.setFrameShape(QFrame::NoFrame);
        area.resize(200, 204);
        area.setWidget(new QWidget);
        area.widget()->resize(200, 816);
        area.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&area));
    }

    test::ManualScheduler scheduler;
    QScrollArea area;
    OverlayScrollBar bar{area, {.handle = Qt::gray, .handleHovered = Qt::white}, scheduler};
};

TEST_F(OverlayScrollBarTest, takesNoSpaceFromTheArea)
{
    EXPECT_EQ(area.viewport()->width(), 200);
    EXPECT_EQ(bar.geometry().right(), 199);
    EXPECT_EQ(bar.height(), 204);
}

TEST_F(OverlayScrollBarTest, theHandleShowsTheVisiblePart)
{
    area.verticalScrollBar()->setValue(0);
    EXPECT_DOUBLE_EQ(bar.handleRect().height(), 50);
    EXPECT_DOUBLE_EQ(bar.handleRect().top(), 2);
    EXPECT_DOUBLE_EQ(bar.width() - bar.handleRect().right(), 2);
    area.verticalScrollBar()->setValue(area.verticalScrollBar()->maximum());
    EXPECT_DOUBLE_EQ(bar.handleRect().bottom(), 202);
}

TEST_F(OverlayScrollBarTest, isNotThereWhenEverythingFits)
{
    area.widget()->resize(200, 100);
    EXPECT_TRUE(bar.handleRect().isEmpty());
    EXPECT_FALSE(bar.isVisible());
}

TEST_F(OverlayScrollBarTest, showsWhileScrollingAndGoesAfterAWhile)
{
    EXPECT_FALSE(bar.isHandleShown());
    area.verticalScrollBar()->setValue(10);
    EXPECT_TRUE(bar.isHandleShown());
    scheduler.advance(700ms);
    area.verticalScrollBar()->setValue(20);
    scheduler.advance(799ms);
    EXPECT_TRUE(bar.isHandleShown());
    scheduler.advance(1ms);
    EXPECT_FALSE(bar.isHandleShown());
}

TEST_F(OverlayScrollBarTest, showsWhenThePointerMovesOverTheArea)
{
    const QPointF point(50, 50);
    QMouseEvent move(QEvent::MouseMove, point, area.viewport()->mapToGlobal(point), Qt::NoButton,
                     Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(area.viewport(), &move);
    EXPECT_TRUE(bar.isHandleShown());
}

TEST_F(OverlayScrollBarTest, theHandleIsDragged)
{
    area.verticalScrollBar()->setValue(0);
    const int x = bar.width() - 4;
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(x, 20));
    QTest::mouseMove(&bar, QPoint(x, 95));
    EXPECT_EQ(area.verticalScrollBar()->value(), area.verticalScrollBar()->maximum() / 2);
    scheduler.advance(2s);
    EXPECT_TRUE(bar.isHandleShown());
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(x, 95));
}

TEST_F(OverlayScrollBarTest, aDragEndsWhenTheBarGoes)
{
    area.verticalScrollBar()->setValue(0);
    const int x = bar.width() - 4;
    QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(x, 20));
    area.widget()->resize(200, 100);
    ASSERT_FALSE(bar.isVisible());
    area.widget()->resize(200, 816);
    ASSERT_TRUE(bar.isVisible());
    QTest::mouseMove(&bar, QPoint(x, 95));
    EXPECT_EQ(area.verticalScrollBar()->value(), 0);
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(x, 95));
}

TEST_F(OverlayScrollBarTest, aClickBesideTheHandleTurnsAPage)
{
    area.verticalScrollBar()->setValue(0);
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() - 4, 150));
    EXPECT_EQ(area.verticalScrollBar()->value(), area.verticalScrollBar()->pageStep());
    QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() - 4, 3));
    EXPECT_EQ(area.verticalScrollBar()->value(), 0);
}

} // namespace
} // namespace vellumry
