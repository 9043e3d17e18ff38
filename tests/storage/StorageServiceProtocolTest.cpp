#include "storage/StorageServiceProtocol.h"

#include "storage/StorageWorld.h"

#include <gtest/gtest.h>

#include <limits>

using namespace vellumry;
using namespace vellumry::test;

namespace {

/// A storage that is no more than its list of snippets.
class ListStorage final : public StorageServiceProtocol {
public:
    std::optional<VellumryData> loadFullData() override { return std::nullopt; }
    void saveFullData(const VellumryData&, bool) override {}
    QList<Snippet> loadSnippets() override { return snippets; }
    bool saveSnippets(const QList<Snippet>& saved) override
    {
        ++saves;
        if (works)
            snippets = saved;
        return works;
    }
    void deleteCollectionFile(const QString&) override {}
    void renameCollectionFile(const QString&, const QString&) override {}

    QList<Snippet> snippets{makeSnippet(QStringLiteral("a"), QStringLiteral("Work")),
                            makeSnippet(QStringLiteral("b"), QStringLiteral("Work")),
                            makeSnippet(QStringLiteral("b"), QStringLiteral("Work"))};
    int saves = 0;
    bool works = true;
};

TEST(StorageServiceProtocolTest, countsAUseOfTheFirstSnippetWithTheId)
{
    ListStorage storage;
    const QList<Snippet> before = storage.snippets;
    const ManualClock clock;
    EXPECT_TRUE(storage.incrementUsage(QStringLiteral("b"), clock));
    EXPECT_EQ(storage.snippets[1].usageCount(), 1);
    EXPECT_EQ(storage.snippets[1].lastUsedAt(), clock.now());
    EXPECT_EQ(storage.snippets[1].updatedAt(), before[1].updatedAt());
    EXPECT_TRUE(storage.snippets[0].sharesDataWith(before[0]));
    EXPECT_TRUE(storage.snippets[2].sharesDataWith(before[2]));
    EXPECT_EQ(before[1].usageCount(), 0) << "copies of the list are untouched";
}

TEST(StorageServiceProtocolTest, anUnknownIdSavesNothing)
{
    ListStorage storage;
    EXPECT_FALSE(storage.incrementUsage(QStringLiteral("nobody")));
    EXPECT_EQ(storage.saves, 0);
}

TEST(StorageServiceProtocolTest, tellsThatTheSaveFailed)
{
    ListStorage storage;
    storage.works = false;
    EXPECT_FALSE(storage.incrementUsage(QStringLiteral("a")));
    EXPECT_EQ(storage.saves, 1);
}

TEST(StorageServiceProtocolTest, theLargestCountStays)
{
    ListStorage storage;
    storage.snippets[0].setUsageCount(std::numeric_limits<qint64>::max());
    EXPECT_TRUE(storage.incrementUsage(QStringLiteral("a")));
    EXPECT_EQ(storage.snippets[0].usageCount(), std::numeric_limits<qint64>::max());
    EXPECT_TRUE(storage.snippets[0].lastUsedAt().has_value());
}

} // namespace
