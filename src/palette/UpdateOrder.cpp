#include "palette/UpdateOrder.h"

#include <algorithm>

namespace vellumry {

QList<Snippet> UpdateOrder::sorted(const QList<Snippet>& snippets)
{
    if (!holdsFor(snippets))
        sortAnew(snippets);
    library = snippets;

    QList<Snippet> result;
    result.reserve(snippets.size());
    for (const quint32 position : order)
        result.append(snippets[position]);
    return result;
}

bool UpdateOrder::holdsFor(const QList<Snippet>& snippets) const
{
    if (snippets.size() != library.size())
        return false;
    // The held copy keeps the list's memory from being changed or used anew.
    if (snippets.constData() == library.constData())
        return true;
    return std::equal(snippets.cbegin(), snippets.cend(), library.cbegin(),
                      [](const Snippet& a, const Snippet& b) {
                          return a.sharesDataWith(b) || a.updatedAt() == b.updatedAt();
                      });
}

void UpdateOrder::sortAnew(const QList<Snippet>& snippets)
{
    // Sorting keys with positions touches each snippet once; the position makes the order stable.
    struct Key {
        Date updatedAt;
        quint32 position;
    };
    std::vector<Key> keys;
    keys.reserve(static_cast<size_t>(snippets.size()));
    for (qsizetype i = 0; i < snippets.size(); ++i)
        keys.push_back({snippets[i].updatedAt(), static_cast<quint32>(i)});
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        return a.updatedAt != b.updatedAt ? a.updatedAt > b.updatedAt : a.position < b.position;
    });

    order.clear();
    order.reserve(keys.size());
    for (const Key& key : keys)
        order.push_back(key.position);
}

} // namespace vellumry
