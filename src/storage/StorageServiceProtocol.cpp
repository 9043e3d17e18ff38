#include "storage/StorageServiceProtocol.h"

#include <limits>
#include <optional>

namespace vellumry {

namespace {

/// Where the first snippet with this id stands.
std::optional<qsizetype> positionOf(const QString& id, const QList<Snippet>& snippets)
{
    for (qsizetype i = 0; i < snippets.size(); ++i) {
        prefetchFields(snippets, i + 32);
        if (i + 16 < snippets.size())
            __builtin_prefetch(snippets[i + 16].id().constData());
        if (snippets[i].id() == id)
            return i;
    }
    return std::nullopt;
}

} // namespace

bool StorageServiceProtocol::incrementUsage(const QString& id, const Clock& clock)
{
    QList<Snippet> snippets = loadSnippets();
    const std::optional<qsizetype> position = positionOf(id, snippets);
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
