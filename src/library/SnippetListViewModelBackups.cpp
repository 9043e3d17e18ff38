// How SnippetListViewModel exports and imports backup files.

#include "core/Log.h"
#include "library/ImportMerge.h"
#include "library/SnippetListViewModel.h"
#include "settings/CategoryColorService.h"
#include "storage/StorageError.h"

#include <QHash>
#include <QStringBuilder>

#include <algorithm>
#include <utility>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

/// How long the outcome of an import is shown.
constexpr auto importResultTime = 3s;

} // namespace

// Export

void SnippetListViewModel::showExport()
{
    const Operation operation(*this);
    fields.selectedCollectionsToExport.clear();
    for (const Collection& collection : std::as_const(models))
        fields.selectedCollectionsToExport.insert(collection.name);
    fields.showExportCollectionPicker = true;
}

void SnippetListViewModel::showExportForCollection(const QString& name)
{
    const Operation operation(*this);
    fields.selectedCollectionsToExport = {name};
    fields.showExportCollectionPicker = true;
}

void SnippetListViewModel::setSelectedCollectionsToExport(const QSet<QString>& names)
{
    const Operation operation(*this);
    fields.selectedCollectionsToExport = names;
}

void SnippetListViewModel::confirmCollectionsToExport()
{
    const Operation operation(*this);
    fields.showExportCollectionPicker = false;
    fields.showExportPicker = true;
}

void SnippetListViewModel::cancelCollectionsToExport()
{
    const Operation operation(*this);
    fields.showExportCollectionPicker = false;
    fields.selectedCollectionsToExport.clear();
}

void SnippetListViewModel::setShowExportPicker(bool isShown)
{
    const Operation operation(*this);
    fields.showExportPicker = isShown;
}

ExportDocument SnippetListViewModel::exportDocument() const
{
    QHash<QString, QList<Snippet>> exported;
    for (const QString& name : fields.selectedCollectionsToExport)
        exported.insert(name, {});
    for (const Snippet& snippet : snippets()) {
        if (const auto chosen = exported.find(snippet.collection()); chosen != exported.end())
            chosen->append(snippet);
    }
    ExportData data{.version = ExportData::currentVersion.toString(),
                    .exportedAt = services.clock.now(),
                    .collections = {}};
    const QMap<QString, QString> colors = services.colors.loadColors();
    for (const Collection& collection : models) {
        if (fields.selectedCollectionsToExport.contains(collection.name))
            data.collections.append({.id = collection.id,
                                     .name = collection.name,
                                     .displayOrder = collection.displayOrder,
                                     .color = CategoryColorService::hexOf(colors, collection.name),
                                     .snippets = exported.value(collection.name)});
    }
    return ExportDocument(data);
}

void SnippetListViewModel::exportTo(const QString& path)
{
    try {
        services.files.write(path, exportDocument().fileWrapper());
        handleExport({.path = path, .error = std::nullopt});
    } catch (const FileError& failure) {
        handleExport({.path = {}, .error = failure.description()});
    }
}

void SnippetListViewModel::handleExport(const PickedFile& result)
{
    log(u"SnippetListViewModel", result.error ? QString(u"导出失败: " % *result.error)
                                              : QString(u"导出成功: " % result.path));
}

// Import

void SnippetListViewModel::setShowImportPicker(bool isShown)
{
    const Operation operation(*this);
    fields.showImportPicker = isShown;
}

void SnippetListViewModel::handleImport(const PickedFile& result)
{
    const Operation operation(*this);
    if (result.error) {
        fields.importResult = ImportResult::failure(*result.error);
        showImportResultToast();
        return;
    }
    std::optional<ImportExportService::ImportedData> imported;
    try {
        imported = ImportExportService::importFromJSON(services.files.read(result.path).bytes);
    } catch (const FileError& failure) {
        log(u"ImportExportService", QString(u"导入失败 - " % failure.description()));
    }
    if (!imported) {
        // Stays until something else takes its place, or until the time of an older one is over.
        fields.importResult = ImportResult::failure(QStringLiteral("Invalid file format"));
        return;
    }
    const ConflictDetectionResult found =
        ImportExportService::detectConflicts(*imported, models, snippets());
    if (found.conflicts.isEmpty())
        return performImport(found, ConflictResolutionMode::skipConflicts);
    fields.pendingImportData = imported;
    fields.conflictDetectionResult = found;
    fields.selectedConflictResolutionMode = ConflictResolutionMode::smartUpdate;
    fields.showImportConflictDialog = true;
}

void SnippetListViewModel::setSelectedConflictResolutionMode(ConflictResolutionMode mode)
{
    const Operation operation(*this);
    fields.selectedConflictResolutionMode = mode;
}

void SnippetListViewModel::confirmConflictResolution()
{
    if (!fields.pendingImportData || !fields.conflictDetectionResult)
        return;
    const Operation operation(*this);
    performImport(*fields.conflictDetectionResult, fields.selectedConflictResolutionMode);
    endConflictResolution();
}

void SnippetListViewModel::cancelConflictResolution()
{
    const Operation operation(*this);
    endConflictResolution();
}

void SnippetListViewModel::endConflictResolution()
{
    fields.showImportConflictDialog = false;
    fields.pendingImportData.reset();
    fields.conflictDetectionResult.reset();
}

/// Brings the import into the library, or leaves the library as it was.
void SnippetListViewModel::performImport(const ConflictDetectionResult& found,
                                         ConflictResolutionMode mode)
{
    const ChangedLists changedBefore = changed;
    const QList<Snippet> snippetsBefore = snippets();
    const QList<Collection> modelsBefore = models;
    const QMap<QString, QString> colorsBefore = services.colors.loadColors();
    try {
        takeOver(found, mode);
    } catch (const StorageError& failure) {
        setSnippets(snippetsBefore);
        models = modelsBefore;
        services.colors.saveColors(colorsBefore);
        saveAllData(); // in the place of what was written until the failure
        fields.importResult = ImportResult::failure(failure.description());
    }
    // What only came and went is no change.
    changed.snippets = changedBefore.snippets || snippets() != snippetsBefore;
    changed.collectionModels =
        changedBefore.collectionModels || !haveSameFields(models, modelsBefore);
    showImportResultToast();
}

/// Throws StorageError when the save fails.
void SnippetListViewModel::takeOver(const ConflictDetectionResult& found,
                                    ConflictResolutionMode mode)
{
    QStringList names;
    QMap<QString, QString> colors;
    for (const ExportCollection& collection : found.newCollections) {
        names.append(collection.name);
        if (collection.color)
            colors.insert(collection.name, *collection.color);
    }
    if (!colors.isEmpty()) {
        QMap<QString, QString> known = services.colors.loadColors();
        known.insert(colors);
        services.colors.saveColors(known);
    }
    appendMissingCollections(names);
    const ImportMerge merge =
        mergeImport(snippets(), found, mode, services.clock.now(), services.newIdentifier);
    setSnippets(merge.snippets);
    // A snippet may name a collection that its file does not have. The load would not find it in
    // the file of any.
    appendMissingCollections(missingCollectionNames());
    save();
    loadSnippets();
    if (const auto selected = std::exchange(fields.selectedSnippetID, std::nullopt))
        services.scheduler.after(0ms, this, [this, selected] { setSelectedSnippetID(selected); });
    fields.importResult = ImportResult::success(merge.count);
}

void SnippetListViewModel::showImportResultToast()
{
    services.scheduler.after(importResultTime, this, [this] {
        const Operation operation(*this);
        fields.importResult.reset();
    });
}

} // namespace vellumry
