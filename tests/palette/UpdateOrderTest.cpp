#include "palette/UpdateOrder.h"

#include "palette/NaiveSearch.h"
#include "palette/RandomLibrary.h"

#include <gtest/gtest.h>

namespace vellumry {
namespace {

TEST(UpdateOrder, EqualsAStableSortThroughEveryChange)
{
    test::RandomLibrary random(1);
    UpdateOrder order;
    QList<Snippet> snippets;
    for (int round = 0; round < 20000; ++round) {
        snippets = random.changed(snippets);
        ASSERT_EQ(order.sorted(snippets), test::naiveSearch(QString(), snippets)) << round;
    }
}

TEST(UpdateOrder, TellsNanosecondsApart)
{
    SnippetFields fields;
    fields.updatedAt = Date(std::chrono::nanoseconds(1));
    const Snippet older(fields);
    fields.updatedAt = Date(std::chrono::nanoseconds(2));
    const Snippet newer(fields);
    EXPECT_EQ(UpdateOrder().sorted({older, newer}), QList<Snippet>({newer, older}));
}

TEST(UpdateOrder, GivesTheSnippetsOfTheListInHand)
{
    UpdateOrder order;
    const QList<Snippet> snippets{Snippet()};
    EXPECT_EQ(order.sorted(snippets), snippets);
    QList<Snippet> used = snippets;
    used[0].setUsageCount(1);
    EXPECT_EQ(order.sorted(used), used);
}

} // namespace
} // namespace vellumry
