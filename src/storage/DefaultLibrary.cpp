#include "storage/DefaultLibrary.h"

#include "models/Identifier.h"
#include "platform/DeviceIdentifier.h"

#include <utility>

namespace vellumry {

VellumryData defaultLibrary(const DefaultSnippetsContainer& resource, const Clock& clock)
{
    const Date now = clock.now();
    SyncDataContent content;
    for (const DefaultCollection& collection : resource.collections) {
        content.collections.append({.id = makeIdentifier(),
                                    .name = collection.name,
                                    .color = collection.color,
                                    .createdAt = now});
        content.categoryColors.insert(collection.name, collection.color);
        for (const DefaultSnippet& snippet : collection.snippets) {
            SnippetFields fields;
            fields.id = makeIdentifier();
            fields.title = snippet.title;
            fields.collection = collection.name;
            fields.content = snippet.content;
            fields.createdAt = now;
            fields.updatedAt = now;
            content.snippets.append(Snippet(std::move(fields)));
        }
    }
    return {.version = VellumryData::currentVersion.toString(),
            .lastModified = clock.now(),
            .deviceId = DeviceIdentifier::current(),
            .data = std::move(content),
            .settings = std::nullopt};
}

} // namespace vellumry
