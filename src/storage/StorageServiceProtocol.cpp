#include "storage/StorageServiceProtocol.h"

#include <limits>
#include <optional>

namespace vellumry {

bool StorageServiceProtocol::incrementUsage(const QString& id, const Clock& clock)
{
    const QList<Snippet> loaded = loadSnippets();
    // Found on the way of the copy that the change needs: two passes over a large library would
    // fetch each record from memory twice.
    QList<Snippet> snippets;
    snippets.reserve(loaded.size());
    std::optional<qsizetype> position;
    for (qsizetype i = 0; i < loaded.size(); ++i) {
        prefetchId(loaded, i);
        snippets.append(loaded[i]);
        if (!position && loaded[i].id() == id)
            position = i;
    }
    if (!position)
        return false;
    Snippet& used = snippets[*position];
    // A file may hold any count; the largest one cannot grow.
    if (used.usageCount() < std::numeric_limits<qint64>::max())
        used.setUsageCount(used.usageCount() + 1);
    used.setLastUsedAt(clock.now());
    return saveSnippets(snippets);
}

} // namespace vellumry
