#include "storage/CollectionFileComparison.h"

#include "core/FatalError.h"

#include <QHash>
#include <QSet>

namespace vellumry {

namespace {

/// Whether a change from `stored` to `given` is one that is written to disk.
bool differs(const Snippet& given, const Snippet& stored)
{
    return given.title() != stored.title() || given.subtitle() != stored.subtitle() ||
           given.content() != stored.content() || given.collection() != stored.collection() ||
           given.keywords() != stored.keywords() || given.updatedAt() != stored.updatedAt() ||
           given.lastUsedAt() != stored.lastUsedAt() || given.usageCount() != stored.usageCount();
}

/// The first id that stands twice; there is one.
QString duplicateId(const QList<Snippet>& snippets)
{
    QSet<QStringView> ids;
    for (const Snippet& snippet : snippets) {
        if (ids.contains(snippet.id()))
            return snippet.id();
        ids.insert(snippet.id());
    }
    Q_UNREACHABLE();
}

/// The snippets of a file, to be compared with those of the library. Their ids are unique.
class StoredSnippets {
public:
    explicit StoredSnippets(const QList<Snippet>& ofFile) : snippets(ofFile) {}

    /// Whether the file holds the given snippet, the i-th of the library's, without a difference
    /// that is written to disk.
    bool hold(const Snippet& given, qsizetype i)
    {
        // Most snippets stand where they stood and share their data with what the file holds.
        const Snippet& neighbour = snippets[i];
        if (given.sharesDataWith(neighbour) || data.contains(&given.fields()))
            return true;
        if (given.id() == neighbour.id())
            return !differs(given, neighbour);
        if (data.isEmpty()) {
            for (const Snippet& snippet : snippets)
                data.insert(&snippet.fields());
            if (data.contains(&given.fields()))
                return true;
        }
        if (positions.isEmpty()) {
            for (qsizetype position = 0; position < snippets.size(); ++position)
                positions.insert(snippets[position].id(), position);
        }
        const auto found = positions.constFind(given.id());
        return found != positions.cend() && !differs(given, snippets[*found]);
    }

private:
    const QList<Snippet>& snippets;
    QSet<const SnippetFields*> data; ///< filled when the order turns out to differ
    QHash<QStringView, qsizetype> positions;
};

} // namespace

bool holds(const CollectionFile& file, const SyncCollection& collection,
           const SnippetSelection& snippets, const QString& path)
{
    if (collection.id != file.collection.id || collection.name != file.collection.name ||
        collection.color != file.collection.color || snippets.size() != file.snippets.size())
        return false;

    if (!file.hasUniqueIds)
        fatalDuplicateKey(duplicateId(file.snippets), path);
    StoredSnippets stored(file.snippets);
    for (qsizetype i = 0; i < snippets.size(); ++i) {
        if (!stored.hold(snippets[i], i))
            return false;
    }
    return true;
}

} // namespace vellumry
