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

SnippetsByCollection::SnippetsByCollection(const QList<Snippet>& list) : snippets(list)
{
    // Snippets that were read from one file share the memory of their collection's name, so most
    // names are known by their address and need no hashing of text.
    using Address = std::pair<const QChar*, qsizetype>;
    QHash<Address, size_t> groupsByAddress;
    Address lastAddress{nullptr, -1};
    size_t group = 0;
    std::vector<size_t> groupOfSnippet;
    groupOfSnippet.reserve(static_cast<size_t>(snippets.size()));
    for (qsizetype i = 0; i < snippets.size(); ++i) {
        prefetchFields(snippets, i + 16);
        const QString& name = snippets[i].collection();
        const Address address(name.constData(), name.size());
        if (address != lastAddress) {
            auto known = groupsByAddress.constFind(address);
            if (known == groupsByAddress.cend()) {
                if (!groups.contains(name)) {
                    groups.insert(name, ends.size());
                    ends.push_back(0);
                }
                known = groupsByAddress.insert(address, groups.value(name));
            }
            group = *known;
            lastAddress = address;
        }
        ++ends[group];
        groupOfSnippet.push_back(group);
    }

    size_t begin = 0;
    for (size_t& end : ends)
        begin += std::exchange(end, begin);
    // Each end starts as the group's begin and moves on as the group fills.
    positions.resize(groupOfSnippet.size());
    for (size_t i = 0; i < groupOfSnippet.size(); ++i)
        positions[ends[groupOfSnippet[i]]++] = static_cast<qsizetype>(i);
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
