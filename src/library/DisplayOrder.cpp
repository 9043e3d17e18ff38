#include "library/DisplayOrder.h"

#include <algorithm>
#include <limits>

namespace vellumry {

namespace {

qint64 numberOf(const Snippet& snippet)
{
    return snippet.displayOrder().value_or(std::numeric_limits<qint64>::max());
}

} // namespace

QList<Snippet> DisplayOrder::sorted(const QList<Snippet>& snippets)
{
    if (!holdsFor(snippets)) {
        numbers.clear();
        order.clear();
        for (const Snippet& snippet : snippets) {
            order.push_back({numberOf(snippet), static_cast<qsizetype>(numbers.size())});
            numbers.push_back(order.back().number);
        }
        std::sort(order.begin(), order.end());
    }
    QList<Snippet> result;
    result.reserve(snippets.size());
    for (const Key& key : order)
        result.append(snippets[key.position]);
    return result;
}

bool DisplayOrder::holdsFor(const QList<Snippet>& snippets) const
{
    return std::equal(
        snippets.cbegin(), snippets.cend(), numbers.cbegin(), numbers.cend(),
        [](const Snippet& snippet, qint64 number) { return numberOf(snippet) == number; });
}

} // namespace vellumry
