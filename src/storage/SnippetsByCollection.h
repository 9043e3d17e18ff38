#pragma once

#include "models/Snippet.h"

#include <QHash>
#include <QList>
#include <QString>

#include <span>
#include <vector>

namespace vellumry {

/// Some of the snippets of a list, in the order of the list. The list and whoever made the
/// selection outlive it.
class SnippetSelection {
public:
    SnippetSelection(const QList<Snippet>& list, std::span<const qsizetype> whichOnes)
        : snippets(list), positions(whichOnes)
    {
    }

    [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(positions.size()); }
    [[nodiscard]] const Snippet& operator[](qsizetype i) const
    {
        return snippets[positions[static_cast<size_t>(i)]];
    }
    [[nodiscard]] QList<Snippet> toList() const;

private:
    const QList<Snippet>& snippets;
    std::span<const qsizetype> positions;
};

/// The snippets of a list, grouped by the name of their collection. Holds positions only, since
/// copying 100,000 handles into lists costs more than all the rest of a save.
///
/// Made to be kept from one list to the next: what the new list has in common with the old one is
/// not looked at again, since fetching each record from memory costs as much.
class SnippetsByCollection {
public:
    void regroup(const QList<Snippet>& list);

    /// The snippets of the collections with this name; none where there are none. Valid until the
    /// next regrouping.
    [[nodiscard]] SnippetSelection of(const QString& collectionName) const;

private:
    using Group = quint32;

    [[nodiscard]] Group groupNamed(const QString& name);

    QList<Snippet> snippets;
    std::vector<Group> groupOf;       ///< by position in the list
    QHash<QString, Group> groups;     ///< of all names so far
    std::vector<size_t> ends;         ///< by group: where in `positions` it ends
    std::vector<qsizetype> positions; ///< in the list, group by group
};

} // namespace vellumry
