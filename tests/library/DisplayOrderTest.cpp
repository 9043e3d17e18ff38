#include "library/DisplayOrder.h"

#include "storage/StorageWorld.h"

#include <gtest/gtest.h>

#include <limits>

namespace vellumry::test {
namespace {

using namespace Qt::StringLiterals;

Snippet numbered(const QString& id, std::optional<qint64> number)
{
    Snippet snippet = makeSnippet(id, u"Work"_s);
    snippet.setDisplayOrder(number);
    return snippet;
}

TEST(DisplayOrder, SortsByNumberRising)
{
    DisplayOrder order;
    const QList<Snippet> list{numbered(u"c"_s, 7), numbered(u"a"_s, -3), numbered(u"b"_s, 0)};
    EXPECT_EQ(idsOf(order.sorted(list)), (QStringList{u"a"_s, u"b"_s, u"c"_s}));
}

TEST(DisplayOrder, KeepsTheOrderOfTheListWhereNumbersAreEqual)
{
    DisplayOrder order;
    const QList<Snippet> list{numbered(u"x"_s, 1), numbered(u"y"_s, 0), numbered(u"z"_s, 1),
                              numbered(u"w"_s, 0)};
    EXPECT_EQ(idsOf(order.sorted(list)), (QStringList{u"y"_s, u"w"_s, u"x"_s, u"z"_s}));
}

TEST(DisplayOrder, CountsAMissingNumberAsTheLargest)
{
    DisplayOrder order;
    const qint64 largest = std::numeric_limits<qint64>::max();
    const QList<Snippet> list{numbered(u"none"_s, {}), numbered(u"largest"_s, largest),
                              numbered(u"before"_s, largest - 1)};
    EXPECT_EQ(idsOf(order.sorted(list)), (QStringList{u"before"_s, u"none"_s, u"largest"_s}));
}

TEST(DisplayOrder, FollowsAChangeOfNumbers)
{
    DisplayOrder order;
    QList<Snippet> list{numbered(u"a"_s, 0), numbered(u"b"_s, 1)};
    EXPECT_EQ(idsOf(order.sorted(list)), (QStringList{u"a"_s, u"b"_s}));
    list[0].setDisplayOrder(2);
    EXPECT_EQ(idsOf(order.sorted(list)), (QStringList{u"b"_s, u"a"_s}));
}

TEST(DisplayOrder, FollowsAChangeOfTheList)
{
    DisplayOrder order;
    EXPECT_EQ(idsOf(order.sorted({numbered(u"a"_s, 1), numbered(u"b"_s, 0)})),
              (QStringList{u"b"_s, u"a"_s}));
    EXPECT_EQ(idsOf(order.sorted({numbered(u"c"_s, 1), numbered(u"d"_s, 0)})),
              (QStringList{u"d"_s, u"c"_s}));
    EXPECT_EQ(idsOf(order.sorted({numbered(u"c"_s, 1)})), (QStringList{u"c"_s}));
    EXPECT_TRUE(order.sorted({}).isEmpty());
}

TEST(DisplayOrder, GivesTheContentsOfTheMoment)
{
    DisplayOrder order;
    QList<Snippet> list{numbered(u"a"_s, 0)};
    (void)order.sorted(list);
    list[0].setTitle(u"New"_s);
    EXPECT_EQ(order.sorted(list).first().title(), u"New"_s);
}

} // namespace
} // namespace vellumry::test
