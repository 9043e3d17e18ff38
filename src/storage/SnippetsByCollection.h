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
/// copying 100,000 handles into lists costs more than all the rest of a save. The list outlives
/// the grouping.
class SnippetsByCollection {
public:
    explicit SnippetsByCollection(const QList<Snippet>& list);

    /// The snippets of the collections with this name; none where there are none.
    [[nodiscard]] SnippetSelection of(const QString& collectionName) const;

private:
    const QList<Snippet>& snippets;
    QHash<QString, size_t> groups; ///< the number of each name
    std::vector<size_t> ends;      ///< by number: where in `positions` the group ends
    std::vector<qsizetype> positions;
};

} // namespace vellumry
