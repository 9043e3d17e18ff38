#include "FuzzInput.h"
#include "palette/FuzzySearchService.h"
#include "palette/NaiveSearch.h"

#include <array>

// The query splitter and the search, against the plain search of the tests. The input is lines: two
// queries, the fields of a changed snippet, and the fields of the library's snippets.

namespace {

using namespace vellumry;
using fuzz::require;

/// A text in which broken UTF-8 stands for surrogates without their other half.
QString nextText(fuzz::FuzzInput& input)
{
    return input.text().replace(QChar(QChar::ReplacementCharacter), QChar(0xD83D));
}

Snippet nextSnippet(fuzz::FuzzInput& input)
{
    SnippetFields fields;
    fields.updatedAt = Date(std::chrono::seconds(input.byte() % 4));
    fields.usageCount = input.byte() % 200;
    fields.title = nextText(input);
    fields.subtitle = nextText(input);
    fields.collection = nextText(input);
    fields.content = nextText(input);
    fields.keywords = nextText(input).split(u',');
    return Snippet(fields);
}

/// The snippets as a list of what tells them apart: handles, in order.
void requireSame(const QList<Snippet>& found, const QList<Snippet>& expected)
{
    require(found.size() == expected.size(), "as many hits as the plain search has");
    for (qsizetype i = 0; i < found.size(); ++i)
        require(found[i].sharesDataWith(expected[i]), "the hits of the plain search, in its order");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::FuzzInput input(data, size);
    const std::array queries = {nextText(input), nextText(input)};
    for (const QString& query : queries)
        require(FuzzySearchService::splitKeywords(query) == test::naiveSplitKeywords(query),
                "the keywords of the plain splitter");

    const Snippet changed = nextSnippet(input);
    QList<Snippet> library;
    while (!input.isAtEnd() && library.size() < 20)
        library.append(nextSnippet(input));

    // What the service keeps from one search to the next must not show in the results.
    const FuzzySearchService service;
    for (const QString& query : queries)
        requireSame(service.search(query, library), test::naiveSearch(query, library));
    if (!library.isEmpty())
        library[library.size() / 2] = changed;
    for (const QString& query : queries)
        requireSame(service.search(query, library), test::naiveSearch(query, library));
    library.prepend(changed);
    for (const QString& query : queries)
        requireSame(service.search(query, library), test::naiveSearch(query, library));
    return 0;
}
