#pragma once

#include "models/Snippet.h"

#include <QList>

#include <vector>

namespace vellumry {

/// The order of the library while nothing is typed: what was ever used comes first, the latest use
/// first; the never-used follow, the latest change first; ties stay in library order.
///
/// The order is kept together with the library it was made from. Between two openings of the
/// palette usually nothing has changed but the snippet that was copied, and then only that one is
/// moved: at 100,000 snippets a whole sort would be most of what an opening costs.
class RecencyOrder {
public:
    /// `snippets` in that order. The list is updated in place at the next call, which is cheap
    /// only if no other copy of it is alive then.
    [[nodiscard]] const QList<Snippet>& sorted(const QList<Snippet>& snippets);

private:
    /// What a snippet is sorted by. No two are equal, since the position decides last.
    struct Entry {
        bool isNeverUsed;
        quint32 position; ///< in the library
        Date date;

        [[nodiscard]] bool operator<(const Entry& other) const;
    };

    [[nodiscard]] static Entry entryFor(const Snippet& snippet, qsizetype position);
    void sortAnew(const QList<Snippet>& snippets);
    void move(qsizetype position, const Snippet& previous, const Snippet& present);

    QList<Snippet> library; ///< what the order was made from
    std::vector<Entry> entries;
    QList<Snippet> order; ///< the snippets of `entries`
};

} // namespace vellumry
