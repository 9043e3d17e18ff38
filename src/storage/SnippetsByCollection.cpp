#include "storage/SnippetsByCollection.h"

#include <utility>

namespace vellumry {

QList<Snippet> SnippetSelection::toList() const
{
    QList<Snippet> list;
    list.reserve(size());
    for (const qsizetype position : positions)
        list.append(snippets[position]);
    return list;
}

void SnippetsByCollection::regroup(const QList<Snippet>& list)
{
    std::vector<Group> regrouped;
    regrouped.reserve(static_cast<size_t>(list.size()));
    // Snippets that were read from one file share the memory of their collection's name.
    std::pair<const QChar*, qsizetype> lastName{nullptr, -1};
    Group lastGroup = 0;
    const QList<Snippet> before = std::move(snippets);
    qsizetype next = 0; // in it, where its order goes on
    for (const Snippet& snippet : list) {
        const auto isAt = [&](qsizetype i) {
            return i < before.size() && before[i].sharesDataWith(snippet);
        };
        if (!isAt(next) && isAt(next + 1))
            ++next; // one was changed or removed
        if (isAt(next)) {
            regrouped.push_back(groupOf[static_cast<size_t>(next++)]);
            continue;
        }
        const QString& name = snippet.collection();
        if (const std::pair address(name.constData(), name.size()); address != lastName) {
            lastGroup = groupNamed(name);
            lastName = address;
        }
        regrouped.push_back(lastGroup);
    }
    snippets = list;
    groupOf = std::move(regrouped);

    ends.assign(static_cast<size_t>(groups.size()), 0);
    for (const Group group : groupOf)
        ++ends[group];
    size_t begin = 0;
    for (size_t& end : ends)
        begin += std::exchange(end, begin);
    // Each end starts as the group's begin and moves on as the group fills.
    positions.resize(groupOf.size());
    for (size_t i = 0; i < groupOf.size(); ++i)
        positions[ends[groupOf[i]]++] = static_cast<qsizetype>(i);
}

SnippetsByCollection::Group SnippetsByCollection::groupNamed(const QString& name)
{
    const auto known = groups.constFind(name);
    return known != groups.cend() ? *known
                                  : *groups.insert(name, static_cast<Group>(groups.size()));
}

SnippetSelection SnippetsByCollection::of(const QString& collectionName) const
{
    const auto found = groups.constFind(collectionName);
    if (found == groups.cend())
        return {snippets, {}};
    const size_t begin = *found == 0 ? 0 : ends[*found - 1];
    return {snippets, std::span(positions).subspan(begin, ends[*found] - begin)};
}

} // namespace vellumry
