#include "palette/SearchIndex.h"

#include "palette/SearchEncoding.h"

#include <QHash>
#include <QStringView>

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <numeric>
#include <optional>
#include <utility>

namespace vellumry {

namespace {

using Record = SearchText::Record;

// Where a needle stands. The first five bits are those of the fields.
constexpr unsigned bit(SearchText::Field field)
{
    return 1U << field;
}
constexpr unsigned acrossFields = 1U << SearchText::fieldCount;
constexpr unsigned atTitleStart = 2 * acrossFields; ///< only together with the title's bit
constexpr unsigned isTitle = 4 * acrossFields;      ///< only together with atTitleStart
constexpr unsigned allPlaces = 8 * acrossFields - 1;

constexpr quint32 pointUnit = 5;
constexpr quint32 phraseRank = 150 / pointUnit;

/// The points of one keyword for each set of places, in units of five.
constexpr auto rankOfPlaces = [] {
    std::array<unsigned char, allPlaces + 1> ranks{};
    for (unsigned places = 0; places < ranks.size(); ++places) {
        unsigned points = 0;
        if ((places & isTitle) != 0)
            points += 200;
        else if ((places & atTitleStart) != 0)
            points += 100;
        else if ((places & bit(SearchText::title)) != 0)
            points += 50;
        if ((places & bit(SearchText::subtitle)) != 0)
            points += 35;
        if ((places & bit(SearchText::keywords)) != 0)
            points += 30;
        if ((places & bit(SearchText::content)) != 0)
            points += 10;
        if ((places & bit(SearchText::collection)) != 0)
            points += 5;
        ranks[places] = static_cast<unsigned char>(points / pointUnit);
    }
    return ranks;
}();

/// Walks over the snippets at the given positions, for a list to be made of them: in one go, it
/// does not look at the room that is left for each. Fetches them from memory some steps ahead.
class SnippetsInOrder {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Snippet;
    using difference_type = std::ptrdiff_t;
    using pointer = const Snippet*;
    using reference = const Snippet&;

    SnippetsInOrder(const QList<Snippet>& list, const quint32* begin, const quint32* end)
        : snippets(&list), position(begin), last(end)
    {
    }

    reference operator*() const
    {
        constexpr difference_type ahead = 16;
        if (last - position > ahead)
            prefetchHandle((*snippets)[position[ahead]]);
        return (*snippets)[*position];
    }
    SnippetsInOrder& operator++()
    {
        ++position;
        return *this;
    }
    bool operator==(const SnippetsInOrder& other) const { return position == other.position; }

private:
    const QList<Snippet>* snippets;
    const quint32* position;
    const quint32* last;
};

/// After so many records without a hit one behind the other, the scan leaps to the next hit.
/// Leaping is the fastest way over records without hits, but each leap waits for memory once.
constexpr int mostMisses = 3;

} // namespace

SearchIndex::SearchIndex(ByteScanner::Instructions instructions) : scanner(instructions) {}

void SearchIndex::prepare(const QList<Snippet>& snippets)
{
    text.update(snippets);
}

QList<Snippet> SearchIndex::holdingAnywhere(const QStringList& keywords,
                                            const QList<Snippet>& snippets)
{
    prepare(snippets);
    return run({.collection = {},
                .keywords = distinct(keywords),
                .phrase = encoded(keywords.join(u' ')),
                .accepted = allPlaces},
               snippets);
}

QList<Snippet> SearchIndex::inCollection(const QStringList& collectionKeywords,
                                         const QStringList& contentKeywords,
                                         const QList<Snippet>& snippets)
{
    prepare(snippets);
    return run({.collection = distinct(collectionKeywords),
                .keywords = distinct(contentKeywords),
                .phrase = encoded(contentKeywords.join(u' ')),
                .accepted = bit(SearchText::title) | bit(SearchText::subtitle) |
                            bit(SearchText::content) | bit(SearchText::keywords)},
               snippets);
}

QList<Snippet> SearchIndex::run(Search search, const QList<Snippet>& snippets)
{
    std::vector<Hit> hits;
    if (search.keywords.empty()) {
        for (qsizetype i = 0; i < snippets.size(); ++i) {
            if (isInCollection(text.recordOf(i), search.collection))
                hits.push_back({static_cast<quint32>(i), 0});
        }
    } else {
        putRarestFirst(search.keywords);
        find(search, hits);
    }
    return ordered(std::move(hits), snippets);
}

/// The keywords in the order in which they were first given. One that is given again counts again,
/// but need not be looked for again.
std::vector<SearchIndex::Keyword> SearchIndex::distinct(const QStringList& keywords) const
{
    std::vector<Keyword> result;
    QHash<QStringView, size_t> indexOf;
    for (const QString& keyword : keywords) {
        if (const auto known = indexOf.constFind(keyword); known != indexOf.cend()) {
            ++result[*known].count;
            continue;
        }
        indexOf.insert(keyword, result.size());
        result.push_back({Needle(encoded(keyword), text.histogram()), 1});
    }
    return result;
}

/// The keyword that fewest of a sample of records hold leads the scan, and the next rarer ones are
/// tried before the more frequent.
void SearchIndex::putRarestFirst(std::vector<Keyword>& keywords) const
{
    constexpr size_t mostSamples = 256;
    constexpr size_t leastStep = 16; // a small library is searched sooner than sampled
    if (keywords.size() < 2)
        return;
    const auto& records = text.records();
    const size_t step = std::max(leastStep, records.size() / mostSamples);
    std::vector<int> hits(keywords.size());
    for (size_t i = 0; i < records.size(); i += step) {
        const unsigned char* const start = text.begin() + records[i].start;
        const unsigned char* const end = start + records[i].fieldEnd(SearchText::keywords);
        for (size_t k = 0; k < keywords.size(); ++k)
            hits[k] += scanner.find(start, end, keywords[k].needle) ? 1 : 0;
    }
    std::vector<size_t> order(keywords.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
        return hits[a] != hits[b] ? hits[a] < hits[b]
                                  : keywords[a].needle.size() > keywords[b].needle.size();
    });
    std::vector<Keyword> sorted;
    sorted.reserve(keywords.size());
    for (const size_t k : order)
        sorted.push_back(std::move(keywords[k]));
    keywords = std::move(sorted);
}

void SearchIndex::find(const Search& search, std::vector<Hit>& hits) const
{
    const auto& records = text.records();
    const Needle& lead = search.keywords.front().needle;
    size_t index = 0;
    while (index < records.size()) {
        const unsigned char* from =
            scanner.find(text.begin() + records[index].start, text.end(), lead);
        if (!from)
            return;
        index = text.recordAt(from, index);
        for (int misses = 0; index < records.size() && misses < mostMisses; ++index) {
            const Record& record = records[index];
            const unsigned char* const start = std::exchange(from, nullptr);
            if (!isInCollection(record, search.collection))
                continue;
            const Places places =
                placesIn(record, lead, start ? start : text.begin() + record.start);
            if (places == 0) {
                ++misses;
                continue;
            }
            misses = 0;
            if ((places & search.accepted) == 0)
                continue;
            if (const auto rank = calculateRelevanceScore(record, search, places))
                hits.push_back({record.position, *rank});
        }
    }
}

/// The score in units of five, or nothing if the record lacks a keyword. `first` are the places of
/// the first keyword, which was found already.
std::optional<quint32>
SearchIndex::calculateRelevanceScore(const Record& record, const Search& search, Places first) const
{
    const unsigned char* const start = text.begin() + record.start;
    quint32 rank = rankOfPlaces[first] * search.keywords.front().count;
    for (size_t k = 1; k < search.keywords.size(); ++k) {
        const auto& [needle, count] = search.keywords[k];
        const Places places = placesIn(record, needle, start);
        if ((places & search.accepted) == 0)
            return std::nullopt;
        rank += rankOfPlaces[places] * count;
    }
    if (search.phrase.size() <= record.fieldEnd(SearchText::title) &&
        std::memcmp(start, search.phrase.data(), search.phrase.size()) == 0)
        rank += phraseRank;
    return rank;
}

/// Looks for the needle in the record from `from` on. One hit in each field is enough.
SearchIndex::Places SearchIndex::placesIn(const Record& record, const Needle& needle,
                                          const unsigned char* from) const
{
    const unsigned char* const start = text.begin() + record.start;
    const unsigned char* const end = start + record.fieldEnd(SearchText::keywords);
    Places places = 0;
    int field = 0;
    while ((from = scanner.find(from, end, needle))) {
        const auto hit = static_cast<quint32>(from - start);
        while (hit >= record.fieldEnd(field))
            ++field;
        if (hit + needle.size() > record.fieldEnd(field)) {
            places |= acrossFields;
            ++from;
            continue;
        }
        places |= 1U << field;
        if (hit == 0) {
            places |= atTitleStart;
            if (needle.size() == record.fieldEnd(SearchText::title))
                places |= isTitle;
        }
        from = start + record.fieldEnd(field) + 1;
    }
    return places;
}

bool SearchIndex::isInCollection(const Record& record, const std::vector<Keyword>& collection) const
{
    const unsigned char* const start = text.begin() + record.start;
    return std::all_of(collection.begin(), collection.end(), [&](const Keyword& keyword) {
        return scanner.find(start + record.fieldStart(SearchText::collection),
                            start + record.fieldEnd(SearchText::collection), keyword.needle);
    });
}

/// The snippets of the hits, best first. Hits come in the order of the records.
QList<Snippet> SearchIndex::ordered(std::vector<Hit> hits, const QList<Snippet>& snippets) const
{
    if (hits.empty())
        return {};
    // Two passes of counting sort. The first, by position, is needed only after changes.
    if (!text.isInListOrder()) {
        constexpr quint32 none = ~quint32{0};
        std::vector<quint32> rankOf(static_cast<size_t>(snippets.size()), none);
        for (const Hit& hit : hits)
            rankOf[hit.position] = hit.rank;
        hits.clear();
        for (size_t i = 0; i < rankOf.size(); ++i) {
            if (rankOf[i] != none)
                hits.push_back({static_cast<quint32>(i), rankOf[i]});
        }
    }
    const quint32 best = std::max_element(hits.begin(), hits.end(), [](Hit a, Hit b) {
                             return a.rank < b.rank;
                         })->rank;
    std::vector<quint32> places(best + size_t{2}); // of the next hit of a rank, by best - rank
    for (const Hit& hit : hits)
        ++places[best - hit.rank + 1];
    std::partial_sum(places.begin(), places.end(), places.begin());
    std::vector<quint32> positions(hits.size());
    for (const Hit& hit : hits)
        positions[places[best - hit.rank]++] = hit.position;

    const quint32* const end = positions.data() + positions.size();
    return {SnippetsInOrder(snippets, positions.data(), end), SnippetsInOrder(snippets, end, end)};
}

} // namespace vellumry
