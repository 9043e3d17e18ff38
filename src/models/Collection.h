#pragma once

#include "core/Date.h"

#include <QHashFunctions>
#include <QString>

namespace vellumry {

/// A group of snippets as the lists of the interface show it. It never stands in a stored file:
/// SyncCollection does. Equality and hash take the id alone, so that a renamed or moved collection
/// stays the same one.
struct Collection {
    QString id;
    QString name;
    qint64 displayOrder = 0;
    Date createdAt{};

    [[nodiscard]] bool hasSameFields(const Collection& other) const
    {
        return id == other.id && name == other.name && displayOrder == other.displayOrder &&
               createdAt == other.createdAt;
    }

    friend bool operator==(const Collection& a, const Collection& b) { return a.id == b.id; }
    friend size_t qHash(const Collection& collection, size_t seed = 0)
    {
        return ::qHash(collection.id, seed);
    }
};

} // namespace vellumry
