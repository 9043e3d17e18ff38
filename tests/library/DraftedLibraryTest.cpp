#include "library/DraftedLibrary.h"

#include "library/LibraryWorld.h"

#include <gtest/gtest.h>

#include <random>

namespace vellumry::test {
namespace {

const QString collection = QStringLiteral("Work");

Snippet numbered(int number)
{
    return makeSnippet(QString::number(number), collection);
}

void expectEachInItsPlace(const DraftedLibrary& library)
{
    const QList<Snippet>& snippets = library.snippets();
    for (qsizetype i = 0; i < snippets.size(); ++i)
        ASSERT_EQ(library.indexOf(snippets.at(i).id()), i);
    EXPECT_EQ(library.count(collection), snippets.size());
    EXPECT_TRUE(library.hasUniqueIds());
}

/// Removals and additions by the thousand, without an indexing in between.
TEST(DraftedLibrary, KnowsTheirPlacesAfterManyRemovals)
{
    std::mt19937 random(4);
    const auto below = [&random](qsizetype bound) {
        return std::uniform_int_distribution<qsizetype>(0, bound - 1)(random);
    };
    DraftedLibrary library;
    int count = 0;
    QList<Snippet> first;
    while (count < 500)
        first.append(numbered(count++));
    library.setSnippets(first);
    for (int step = 0; step < 3000; ++step) {
        if (library.snippets().size() < 100 || below(5) < 2) {
            library.append(numbered(count++));
            continue;
        }
        const QString id = library.snippets().at(below(library.snippets().size())).id();
        ASSERT_TRUE(library.remove(id));
        ASSERT_EQ(library.indexOf(id), -1);
        ASSERT_NO_FATAL_FAILURE(expectEachInItsPlace(library)) << step;
    }
}

TEST(DraftedLibrary, AnIdMayComeBackAfterItsRemoval)
{
    DraftedLibrary library;
    library.setSnippets({numbered(0), numbered(1), numbered(2)});
    library.remove(QStringLiteral("1"));
    library.append(numbered(1));
    EXPECT_EQ(library.indexOf(QStringLiteral("1")), 2);
    expectEachInItsPlace(library);
    library.setSnippets(library.snippets());
    expectEachInItsPlace(library);
    library.setSnippets({numbered(2), numbered(1)});
    expectEachInItsPlace(library);
}

} // namespace
} // namespace vellumry::test
