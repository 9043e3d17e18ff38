#pragma once

#include "models/Snippet.h"

#include <QList>

#include <vector>

namespace vellumry {

/// The snippets of a library by `updatedAt`, the newest first; equal ones stay in library order.
/// The order is kept with the list it was made for, and outlives changes of anything but the dates.
/// Not shared between threads.
class UpdateOrder {
public:
    [[nodiscard]] QList<Snippet> sorted(const QList<Snippet>& snippets);

private:
    [[nodiscard]] bool holdsFor(const QList<Snippet>& snippets) const;
    void sortAnew(const QList<Snippet>& snippets);

    QList<Snippet> library;     ///< what `order` was made for
    std::vector<quint32> order; ///< positions in the library
};

} // namespace vellumry
