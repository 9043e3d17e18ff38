#include "palette/RecencyOrder.h"

#include <algorithm>

namespace vellumry {

namespace {

/// Beyond this many changed snippets, sorting anew is cheaper than moving each.
constexpr size_t mostMoves = 32;

} // namespace

bool RecencyOrder::Entry::operator<(const Entry& other) const
{
    if (isNeverUsed != other.isNeverUsed)
        return other.isNeverUsed;
    if (date != other.date)
        return date > other.date;
    return position < other.position;
}

RecencyOrder::Entry RecencyOrder::entryFor(const Snippet& snippet, qsizetype position)
{
    const auto lastUsedAt = snippet.lastUsedAt();
    return {.isNeverUsed = !lastUsedAt,
            .position = static_cast<quint32>(position),
            .date = lastUsedAt ? *lastUsedAt : snippet.updatedAt()};
}

const QList<Snippet>& RecencyOrder::sorted(const QList<Snippet>& snippets)
{
    if (snippets.size() != library.size()) {
        sortAnew(snippets);
        return order;
    }
    if (snippets.constData() == library.constData())
        return order;

    std::vector<qsizetype> changed;
    for (qsizetype i = 0; i < snippets.size(); ++i) {
        if (snippets.at(i).sharesDataWith(library.at(i)))
            continue;
        if (changed.size() == mostMoves) {
            sortAnew(snippets);
            return order;
        }
        changed.push_back(i);
    }
    for (const qsizetype position : changed)
        move(position, library.at(position), snippets.at(position));
    library = snippets;
    return order;
}

void RecencyOrder::sortAnew(const QList<Snippet>& snippets)
{
    library = snippets;
    entries.clear();
    entries.reserve(static_cast<size_t>(snippets.size()));
    for (qsizetype i = 0; i < snippets.size(); ++i)
        entries.push_back(entryFor(snippets[i], i));
    std::sort(entries.begin(), entries.end());

    order.clear();
    order.reserve(snippets.size());
    for (const Entry& entry : entries)
        order.append(snippets[entry.position]);
}

void RecencyOrder::move(qsizetype position, const Snippet& previous, const Snippet& present)
{
    const auto from =
        std::lower_bound(entries.begin(), entries.end(), entryFor(previous, position));
    order.removeAt(from - entries.begin());
    entries.erase(from);

    const Entry entry = entryFor(present, position);
    const auto to = std::lower_bound(entries.begin(), entries.end(), entry);
    order.insert(to - entries.begin(), present);
    entries.insert(to, entry);
}

} // namespace vellumry
