#include "storage/CollectionFileComparison.h"

#include "storage/StorageWorld.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vellumry::test {

namespace {

class CollectionFileComparisonTest : public testing::Test {
protected:
    bool holdsCollection(const SyncCollection& given)
    {
        groups.regroup(file.snippets);
        return holds(file, given, groups.of(work.name), QStringLiteral("/work.json"));
    }
    bool holdsSnippets(const QList<Snippet>& given)
    {
        groups.regroup(given);
        return holds(file, work, groups.of(work.name), QStringLiteral("/work.json"));
    }
    /// Whether the file still holds its snippets when the fields of the second are changed.
    template <typename Change>
    bool holdsChanged(Change change)
    {
        SnippetFields fields = file.snippets[1].fields();
        change(fields);
        return holdsSnippets({file.snippets[0], Snippet(fields)});
    }

    const SyncCollection work = makeCollection(QStringLiteral("w"), QStringLiteral("Work"));
    CollectionFile file{.collection = work,
                        .snippets = {makeSnippet(QStringLiteral("1"), work.name),
                                     makeSnippet(QStringLiteral("2"), work.name)}};
    SnippetsByCollection groups;
};

TEST_F(CollectionFileComparisonTest, theHeadCountsButForItsDate)
{
    EXPECT_TRUE(holdsCollection(work));
    SyncCollection other = work;
    other.createdAt = dateAt(99);
    EXPECT_TRUE(holdsCollection(other));
    other.color = QStringLiteral("#FF0000");
    EXPECT_FALSE(holdsCollection(other));
    EXPECT_FALSE(holdsCollection(makeCollection(QStringLiteral("w"), QStringLiteral("New"))));
    EXPECT_FALSE(holdsCollection(makeCollection(QStringLiteral("x"), work.name)));
}

TEST_F(CollectionFileComparisonTest, theSnippetsCountButNotTheirOrder)
{
    QList<Snippet> snippets = file.snippets;
    std::reverse(snippets.begin(), snippets.end());
    EXPECT_TRUE(holdsSnippets(snippets));
    EXPECT_TRUE(holdsSnippets(
        {makeSnippet(QStringLiteral("2"), work.name), makeSnippet(QStringLiteral("1"), work.name)}))
        << "read from elsewhere";
    snippets.append(makeSnippet(QStringLiteral("3"), work.name));
    EXPECT_FALSE(holdsSnippets(snippets));
    snippets.removeFirst();
    EXPECT_FALSE(holdsSnippets(snippets)) << "as many";
}

TEST_F(CollectionFileComparisonTest, eightFieldsOfASnippetCount)
{
    EXPECT_TRUE(holdsChanged([](SnippetFields&) {}));
    EXPECT_TRUE(holdsChanged([](SnippetFields& fields) { fields.createdAt = dateAt(99); }));
    EXPECT_TRUE(holdsChanged([](SnippetFields& fields) { fields.displayOrder = 9; }));
    EXPECT_TRUE(holdsChanged([](SnippetFields& fields) {
        fields.variables.insert(QStringLiteral("name"), QStringLiteral("value"));
    }));

    EXPECT_FALSE(holdsChanged([](SnippetFields& fields) { fields.title += u'x'; }));
    EXPECT_FALSE(holdsChanged([](SnippetFields& fields) { fields.subtitle += u'x'; }));
    EXPECT_FALSE(holdsChanged([](SnippetFields& fields) { fields.content += u'x'; }));
    EXPECT_FALSE(holdsChanged([](SnippetFields& fields) { fields.keywords.append(QString()); }));
    EXPECT_FALSE(holdsChanged(
        [](SnippetFields& fields) { fields.updatedAt += std::chrono::nanoseconds(1); }));
    EXPECT_FALSE(holdsChanged([](SnippetFields& fields) { fields.lastUsedAt = dateAt(1); }));
    EXPECT_FALSE(holdsChanged([](SnippetFields& fields) { ++fields.usageCount; }));
    file.snippets[1].setCollection(QStringLiteral("Other"));
    EXPECT_FALSE(holdsChanged([&](SnippetFields& fields) { fields.collection = work.name; }));
}

TEST_F(CollectionFileComparisonTest, anIdThatStandsTwiceEndsTheProcess)
{
    file.snippets[1] = file.snippets[0];
    file.hasUniqueIds = false;
    EXPECT_DEATH((void)holdsCollection(work), "Duplicate values for key: '1'");
}

} // namespace

} // namespace vellumry::test
