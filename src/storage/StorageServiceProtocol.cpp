#include "storage/StorageServiceProtocol.h"

#include <algorithm>
#include <limits>

namespace vellumry {

bool StorageServiceProtocol::incrementUsage(const QString& id, const Clock& clock)
{
    QList<Snippet> snippets = loadSnippets();
    const auto found = std::find_if(snippets.cbegin(), snippets.cend(),
                                    [&](const Snippet& snippet) { return snippet.id() == id; });
    if (found == snippets.cend())
        return false;
    Snippet& used = snippets[found - snippets.cbegin()];
    // A file may hold any count; the largest one cannot grow.
    if (used.usageCount() < std::numeric_limits<qint64>::max())
        used.setUsageCount(used.usageCount() + 1);
    used.setLastUsedAt(clock.now());
    return saveSnippets(snippets);
}

} // namespace vellumry
