#pragma once

#include "models/Snippet.h"

#include <QList>
#include <QString>

namespace vellumry {

/// Finds snippets by a query.
class SearchServiceProtocol {
public:
    virtual ~SearchServiceProtocol() = default;

    /// The matching snippets in result order.
    [[nodiscard]] virtual QList<Snippet> search(const QString& query,
                                                const QList<Snippet>& snippets) const = 0;
};

} // namespace vellumry
