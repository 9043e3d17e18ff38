#pragma once

#include "palette/SearchIndex.h"
#include "palette/SearchServiceProtocol.h"
#include "palette/UpdateOrder.h"

#include <QStringList>

namespace vellumry {

/// The query language of the palette: terms that all must occur, terms in double quotes, and the
/// collection filter "collection > terms". Nothing approximate: a term occurs where it stands as it
/// is in the lower-cased text.
///
/// The result depends on the query and the snippets alone. What is expensive is kept from one
/// search to the next (see SearchText), so that searching the list that was searched before, or
/// one that differs from it in a few snippets, is fast. Main thread only.
class FuzzySearchService final : public SearchServiceProtocol {
public:
    /// Stands between the collection part of a query and its content part.
    static constexpr QStringView separator = u" > ";

    explicit FuzzySearchService(ByteScanner::Instructions instructions = ByteScanner::best());

    /// Does now what the next search in these snippets would have to do first. Never needed, but
    /// worth calling when nobody waits.
    void prepare(const QList<Snippet>& snippets) const;

    [[nodiscard]] QList<Snippet> search(const QString& query,
                                        const QList<Snippet>& snippets) const override;

    /// The collection-filter form of a lower-cased query; the plain form if it has no separator.
    [[nodiscard]] QList<Snippet> searchWithSeparator(const QString& query,
                                                     const QList<Snippet>& snippets) const;

    /// The terms of a query, without their quotes and never empty.
    [[nodiscard]] static QStringList splitKeywords(QStringView query);

private:
    [[nodiscard]] QList<Snippet> searchDefault(const QString& query,
                                               const QList<Snippet>& snippets) const;

    mutable SearchIndex index;
    mutable UpdateOrder updateOrder;
};

} // namespace vellumry
