#include "views/common/OutsetItem.h"

#include <QHBoxLayout>
#include <QWidget>
#include <gtest/gtest.h>

namespace vellumry {
namespace {

class OutsetItemTest : public testing::Test {
protected:
    OutsetItemTest()
    {
        row->setContentsMargins({});
        row->setSpacing(0);
        outset->setFixedSize(30, 20);
        row->addItem(new OutsetItem(outset, {1, 2, 4, 8}));
        row->addWidget(neighbour);
        window.resize(100, 10);
    }

    QWidget window;
    QHBoxLayout* row = new QHBoxLayout(&window);
    QWidget* outset = new QWidget(&window);
    QWidget* neighbour = new QWidget(&window);
};

TEST_F(OutsetItemTest, ReachesBeyondItsPlace)
{
    row->activate();
    EXPECT_EQ(outset->geometry(), QRect(-1, -2, 30, 20));
    EXPECT_EQ(neighbour->x(), 25) << "the place is the widget without its reach";
}

TEST_F(OutsetItemTest, ReachesTheOtherWayWhereTextRunsFromTheRight)
{
    window.setLayoutDirection(Qt::RightToLeft);
    row->activate();
    EXPECT_EQ(outset->geometry(), QRect(100 - 25 - 4, -2, 30, 20));
    EXPECT_EQ(neighbour->geometry().right(), 100 - 25 - 1);
}

} // namespace
} // namespace vellumry
