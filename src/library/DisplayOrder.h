#pragma once

#include "models/Snippet.h"

#include <QList>

#include <vector>

namespace vellumry {

/// The snippets of a list by `displayOrder`, the smallest first and those without one last; equal
/// ones stay in the order of the list. The order is kept with the list it was made for, and
/// outlives changes of anything but the numbers.
class DisplayOrder {
public:
    [[nodiscard]] QList<Snippet> sorted(const QList<Snippet>& snippets);

private:
    /// What a snippet is sorted by. No two are equal, since the position decides last.
    struct Key {
        qint64 number;
        qsizetype position; ///< in the list

        [[nodiscard]] bool operator<(const Key& other) const
        {
            return number != other.number ? number < other.number : position < other.position;
        }
    };

    [[nodiscard]] bool holdsFor(const QList<Snippet>& snippets) const;

    std::vector<qint64> numbers; ///< of the list that `order` was made for
    std::vector<Key> order;
};

} // namespace vellumry
