#include "library/ImportExportService.h"

#include "models/JSONDecoder.h"

#include <QDateTime>
#include <QHash>
#include <QLocale>
#include <QSet>
#include <QStringBuilder>
#include <QStringView>

#include <utility>

namespace vellumry {

namespace {

bool haveSameTexts(const Snippet& a, const Snippet& b)
{
    return a.content() == b.content() && a.subtitle() == b.subtitle() &&
           a.keywords() == b.keywords();
}

} // namespace

ImportExportService& ImportExportService::shared()
{
    static ImportExportService service(SystemClock::shared());
    return service;
}

std::optional<ImportExportService::ImportedData>
ImportExportService::importFromJSON(const PaddedBytes& data)
{
    ImportedData imported;
    try {
        imported.collections = JSONDecoder::iso8601().decode<ExportData>(data).collections;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
    for (const ExportCollection& collection : std::as_const(imported.collections))
        imported.snippets.append(collection.snippets);
    return imported;
}

ConflictDetectionResult
ImportExportService::detectConflicts(const ImportedData& importedData,
                                     const QList<Collection>& existingCollections,
                                     const QList<Snippet>& existingSnippets)
{
    QSet<QStringView> names;
    for (const Collection& collection : existingCollections)
        names.insert(collection.name);
    QHash<std::pair<QStringView, QStringView>, const Snippet*> existing;
    existing.reserve(existingSnippets.size());
    for (qsizetype i = 0; i < existingSnippets.size(); ++i) {
        prefetchFields(existingSnippets, i);
        const Snippet& snippet = existingSnippets.at(i);
        existing.insert({snippet.collection(), snippet.title()}, &snippet);
    }

    ConflictDetectionResult result;
    for (const ExportCollection& collection : importedData.collections) {
        if (!names.contains(collection.name)) {
            result.newCollections.append(collection);
            result.newSnippets.append(collection.snippets);
            continue;
        }
        for (const Snippet& imported : collection.snippets) {
            const Snippet* const local = existing.value({collection.name, imported.title()});
            if (!local) {
                result.newSnippets.append(imported);
            } else if (!haveSameTexts(*local, imported) &&
                       local->updatedAt() != imported.updatedAt()) {
                result.conflicts.append({.id = local->id(),
                                         .type = ConflictType::snippet,
                                         .name = imported.title(),
                                         .localUpdatedAt = local->updatedAt(),
                                         .importedUpdatedAt = imported.updatedAt()});
                result.conflictingSnippets.append(imported);
            }
        }
    }
    return result;
}

QString ImportExportService::defaultExportFilename() const
{
    const auto sinceEpoch =
        std::chrono::floor<std::chrono::milliseconds>(clock.now()).time_since_epoch();
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
    return u"Vellumry_Backup_" % QLocale::c().toString(local, QStringLiteral("yyyy-MM-dd_HHmmss")) %
           u".json";
}

} // namespace vellumry
