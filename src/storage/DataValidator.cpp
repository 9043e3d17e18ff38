#include "storage/DataValidator.h"

#include "models/Identifier.h"
#include "platform/DeviceIdentifier.h"

#include <QSet>

#include <algorithm>
#include <limits>
#include <utility>

namespace vellumry {

namespace {

VellumryData library(SyncDataContent content, Date now)
{
    return {.version = VellumryData::currentVersion.toString(),
            .lastModified = now,
            .deviceId = DeviceIdentifier::current(),
            .data = std::move(content),
            .settings = std::nullopt};
}

} // namespace

VellumryData DataValidator::migrateFromLegacy(const LegacyExportData& legacy, const Clock& clock)
{
    const auto position = [](const LegacyExportCollection& collection) {
        return collection.displayOrder.value_or(std::numeric_limits<qint64>::max());
    };
    QList<LegacyExportCollection> collections = legacy.collections;
    std::stable_sort(collections.begin(), collections.end(),
                     [&](const auto& a, const auto& b) { return position(a) < position(b); });
    SyncDataContent content;
    for (const LegacyExportCollection& collection : std::as_const(collections)) {
        content.collections.append({.id = collection.id ? *collection.id : makeIdentifier(),
                                    .name = collection.name,
                                    .color = collection.color,
                                    .createdAt = clock.now()});
        if (collection.color)
            content.categoryColors.insert(collection.name, *collection.color);
        content.snippets.append(collection.snippets);
    }
    return library(std::move(content), clock.now());
}

VellumryData DataValidator::migrateFromSnippetArray(const QList<Snippet>& snippets,
                                                    const Clock& clock)
{
    QSet<QString> names;
    for (const Snippet& snippet : snippets)
        names.insert(snippet.collection());
    SyncDataContent content;
    content.snippets = snippets;
    for (const QString& name : std::as_const(names))
        content.collections.append({.id = makeIdentifier(),
                                    .name = name,
                                    .color = std::nullopt,
                                    .createdAt = clock.now()});
    return library(std::move(content), clock.now());
}

} // namespace vellumry
