#include "library/MoveOffsets.h"

#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

QList<int> moved(const std::set<qsizetype>& offsets, qsizetype target)
{
    QList<int> list{0, 1, 2, 3, 4};
    moveOffsets(list, offsets, target);
    return list;
}

TEST(MoveOffsets, MovesOneDown)
{
    EXPECT_EQ(moved({1}, 4), (QList<int>{0, 2, 3, 1, 4}));
    EXPECT_EQ(moved({1}, 5), (QList<int>{0, 2, 3, 4, 1}));
}

TEST(MoveOffsets, MovesOneUp)
{
    EXPECT_EQ(moved({3}, 0), (QList<int>{3, 0, 1, 2, 4}));
}

TEST(MoveOffsets, KeepsTheOrderOfSeveral)
{
    EXPECT_EQ(moved({0, 4}, 2), (QList<int>{1, 0, 4, 2, 3}));
}

TEST(MoveOffsets, ChangesNothingAtItsOwnPlace)
{
    const QList<int> same{0, 1, 2, 3, 4};
    EXPECT_EQ(moved({2}, 2), same);
    EXPECT_EQ(moved({2}, 3), same);
    EXPECT_EQ(moved({}, 3), same);
}

TEST(MoveOffsets, PassesOverWhatIsNotThere)
{
    EXPECT_EQ(moved({1, 7}, 9), (QList<int>{0, 2, 3, 4, 1}));
}

} // namespace
} // namespace vellumry::test
