#include "library/ImportMerge.h"

#include <QHash>
#include <QStringBuilder>
#include <QStringView>

namespace vellumry {

namespace {

/// An imported snippet as it joins the library beside what is there.
Snippet newSnippet(const Snippet& imported, const QString& id, const QString& title, Date now)
{
    SnippetFields fields = imported.fields();
    fields.id = id;
    fields.title = title;
    fields.createdAt = now;
    fields.updatedAt = now;
    fields.displayOrder.reset();
    fields.variables.clear();
    return Snippet(fields);
}

void update(Snippet& local, const Snippet& imported)
{
    local.setTitle(imported.title());
    local.setSubtitle(imported.subtitle());
    local.setContent(imported.content());
    local.setKeywords(imported.keywords());
    local.setUpdatedAt(imported.updatedAt());
}

} // namespace

ImportMerge mergeImport(const QList<Snippet>& snippets, const ConflictDetectionResult& found,
                        ConflictResolutionMode mode, Date now,
                        const std::function<QString()>& newIdentifier)
{
    using enum ConflictResolutionMode;
    ImportMerge merge{snippets, found.newSnippets.size()};
    for (const Snippet& imported : found.newSnippets)
        merge.snippets.append(newSnippet(imported, newIdentifier(), imported.title(), now));
    if (mode == skipConflicts || found.conflictingSnippets.isEmpty())
        return merge;

    // Backwards, so that the first of each stays.
    QHash<QStringView, const ImportConflict*> conflicts;
    for (auto it = found.conflicts.crbegin(); it != found.conflicts.crend(); ++it) {
        if (it->type == ConflictType::snippet)
            conflicts.insert(it->name, &*it);
    }
    QHash<QString, qsizetype> positions;
    if (mode != keepBoth) {
        for (qsizetype i = snippets.size() - 1; i >= 0; --i)
            positions.insert(snippets.at(i).id(), i);
    }
    for (const Snippet& imported : found.conflictingSnippets) {
        const ImportConflict* const conflict = conflicts.value(imported.title());
        if (!conflict)
            continue;
        if (mode == keepBoth) {
            merge.snippets.append(
                newSnippet(imported, newIdentifier(), imported.title() % u" (imported)", now));
        } else {
            const qsizetype position = positions.value(conflict->id, -1);
            const bool isNewer = conflict->importedUpdatedAt > conflict->localUpdatedAt;
            if (position < 0 || (mode == smartUpdate && !isNewer))
                continue;
            update(merge.snippets[position], imported);
        }
        ++merge.count;
    }
    return merge;
}

} // namespace vellumry
