#include "storage/CollectionOrder.h"

#include "core/FatalError.h"

#include <QHash>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace vellumry {

void arrangeByOrder(QList<SyncCollection>& collections, const QStringList& order,
                    const QString& orderFile)
{
    QHash<QString, qsizetype> positions;
    for (const QString& id : order) {
        if (positions.contains(id))
            fatalDuplicateKey(id, orderFile);
        positions.insert(id, positions.size());
    }
    std::vector<std::pair<qsizetype, qsizetype>> places; // by order, then as they stand
    places.reserve(static_cast<size_t>(collections.size()));
    for (qsizetype i = 0; i < collections.size(); ++i)
        places.emplace_back(
            positions.value(collections[i].id, std::numeric_limits<qsizetype>::max()), i);
    std::sort(places.begin(), places.end());
    QList<SyncCollection> sorted;
    sorted.reserve(collections.size());
    for (const auto& [position, i] : places)
        sorted.append(std::move(collections[i]));
    collections = std::move(sorted);
}

QMap<QString, QString> colorsByName(const QList<SyncCollection>& collections)
{
    QMap<QString, QString> colors;
    for (const SyncCollection& collection : collections) {
        if (collection.color)
            colors.insert(collection.name, *collection.color);
    }
    return colors;
}

} // namespace vellumry
