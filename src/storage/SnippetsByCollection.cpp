#include "storage/SnippetsByCollection.h"

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
    QHash<const QChar*, size_t> groupsByAddress;
    std::vector<size_t> groupOfSnippet;
    groupOfSnippet.reserve(static_cast<size_t>(snippets.size()));
    const QString* lastName = nullptr;
    size_t group = 0;
    for (const Snippet& snippet : snippets) {
        const QString& name = snippet.collection();
        const bool isLast = lastName && lastName->constData() == name.constData() &&
                            lastName->size() == name.size();
        if (!isLast) {
            const auto known = groupsByAddress.constFind(name.constData());
            if (known != groupsByAddress.cend()) {
                group = *known;
            } else {
                group = *groups.tryInsert(name, ends.size());
            }
        }
        lastName = &name;
        if (group == ends.size())
            ends.push_back(0);
        ++ends[group];
        groupOfSnippet.push_back(group);
    }
}

} // namespace vellumry
