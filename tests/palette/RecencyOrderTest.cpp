#include "palette/RecencyOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace vellumry {
namespace {

/// The same order, plainly.
QList<Snippet> sortedPlainly(QList<Snippet> snippets)
{
    std::stable_sort(snippets.begin(), snippets.end(), [](const Snippet& a, const Snippet& b) {
        const auto usedA = a.lastUsedAt();
        const auto usedB = b.lastUsedAt();
        if (usedA && usedB)
            return *usedA > *usedB;
        if (usedA || usedB)
            return usedA.has_value();
        return a.updatedAt() > b.updatedAt();
    });
    return snippets;
}

class RandomSnippets {
public:
    /// Few distinct dates, so that there are many ties.
    Snippet next()
    {
        Snippet snippet;
        snippet.setId(QString::number(++count));
        snippet.setUpdatedAt(date());
        if (upTo(2) == 0)
            snippet.setLastUsedAt(date());
        return snippet;
    }
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(engine); }

private:
    Date date() { return Date(std::chrono::seconds(upTo(40))); }

    std::mt19937 engine{42};
    int count = 0;
};

TEST(RecencyOrder, AgreesWithAPlainSortThroughAllChanges)
{
    RandomSnippets random;
    RecencyOrder order;
    QList<Snippet> library;
    QList<Snippet> kept;
    for (int i = 0; i < 200; ++i)
        library.append(random.next());
    for (int round = 0; round < 400; ++round) {
        switch (random.upTo(5)) {
        case 0:
            library.append(random.next());
            break;
        case 1:
            library.removeAt(random.upTo(static_cast<int>(library.size()) - 1));
            break;
        case 2: // more changes than are worth moving one by one
            for (Snippet& snippet : library)
                snippet = random.next();
            break;
        case 3: // nothing
            break;
        default:
            for (int i = random.upTo(40); i >= 0; --i)
                library[random.upTo(static_cast<int>(library.size()) - 1)] = random.next();
        }
        const QList<Snippet> result = order.sorted(library);
        ASSERT_EQ(result, sortedPlainly(library)) << round;
        const QList<Snippet> again = order.sorted(library);
        ASSERT_EQ(again.constData(), result.constData());
        // Now and then a copy is still alive at the next change.
        if (random.upTo(1) == 0)
            kept = result;
    }
}

TEST(RecencyOrder, AResultThatWasCopiedStaysAsItWas)
{
    RandomSnippets random;
    RecencyOrder order;
    QList<Snippet> library{random.next(), random.next(), random.next()};
    const QList<Snippet> first = order.sorted(library);
    const QList<Snippet> expected = sortedPlainly(library);
    library[0].setLastUsedAt(Date(std::chrono::seconds(1000)));
    EXPECT_EQ(order.sorted(library), sortedPlainly(library));
    EXPECT_EQ(first, expected);
}

TEST(RecencyOrder, OfAnEmptyLibraryIsEmpty)
{
    RecencyOrder order;
    EXPECT_TRUE(order.sorted({}).isEmpty());
    EXPECT_EQ(order.sorted({Snippet()}).size(), 1);
    EXPECT_TRUE(order.sorted({}).isEmpty());
}

} // namespace
} // namespace vellumry
