#include "library/SnippetListViewModel.h"

#include "core/Log.h"
#include "core/Text.h"
#include "library/ImportMerge.h"
#include "library/MoveOffsets.h"
#include "notifications/NotificationCenter.h"
#include "palette/SearchServiceProtocol.h"
#include "platform/DeviceIdentifier.h"
#include "settings/CategoryColorService.h"
#include "storage/StorageError.h"
#include "storage/StorageServiceProtocol.h"

#include <QHash>
#include <QStringBuilder>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

/// Gives the list the time to show a new row before it is selected.
constexpr auto selectionDelay = 100ms;

/// How long the outcome of an import is shown.
constexpr auto importResultTime = 3s;

QString newSnippetTitle()
{
    return QStringLiteral("New Snippet");
}

void log(QStringView message)
{
    vellumry::log(u"SnippetListViewModel", message);
}

/// Collections are equal by their ids alone.
bool haveSameFields(const Collection& a, const Collection& b)
{
    return a.id == b.id && a.name == b.name && a.displayOrder == b.displayOrder &&
           a.createdAt == b.createdAt;
}

bool haveSameFields(const QList<Collection>& a, const QList<Collection>& b)
{
    return std::equal(
        a.cbegin(), a.cend(), b.cbegin(), b.cend(),
        [](const auto& one, const auto& other) { return haveSameFields(one, other); });
}

/// The colour of a collection in hexadecimal form, as CategoryColorService::getColorHex gives it,
/// of colours that are loaded once for all of them.
std::optional<QString> hexOf(const QMap<QString, QString>& colors, const QString& collection)
{
    return CategoryColorService::hexOf(colors.value(collection, QStringLiteral("gray")));
}

bool isUntouched(const Snippet& snippet)
{
    return (snippet.title().isEmpty() || snippet.title() == newSnippetTitle()) &&
           snippet.content().isEmpty();
}

/// Numbers the snippets of every collection by creation date if a single one in the list lacks its
/// number. True if it did.
bool migrateSnippetDisplayOrderIfNeeded(QList<Snippet>& snippets)
{
    const bool isComplete =
        std::all_of(snippets.cbegin(), snippets.cend(),
                    [](const Snippet& snippet) { return snippet.displayOrder().has_value(); });
    if (isComplete)
        return false;
    QHash<QString, std::vector<qsizetype>> groups;
    for (qsizetype i = 0; i < snippets.size(); ++i)
        groups[snippets.at(i).collection()].push_back(i);
    for (std::vector<qsizetype>& group : groups) {
        std::stable_sort(group.begin(), group.end(), [&](qsizetype a, qsizetype b) {
            return snippets.at(a).createdAt() < snippets.at(b).createdAt();
        });
        for (size_t number = 0; number < group.size(); ++number)
            snippets[group[number]].setDisplayOrder(static_cast<qint64>(number));
    }
    return true;
}

} // namespace

/// The time in which an operation changes fields. What is different at its end is announced then,
/// so that whoever listens sees the operation complete. Operations within it join it.
class SnippetListViewModel::Operation {
public:
    explicit Operation(SnippetListViewModel& owner) : model(owner)
    {
        if (model.operationDepth++ > 0)
            return;
        before = model.fields;
        frozenVersion = model.frozen.version();
    }
    ~Operation()
    {
        if (--model.operationDepth == 0)
            model.announce(before, frozenVersion);
    }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

private:
    SnippetListViewModel& model;
    Fields before;
    quint64 frozenVersion = 0;
};

SnippetListViewModel::SnippetListViewModel(Dependencies dependencies, QObject* parent)
    : QObject(parent), services(std::move(dependencies))
{
    setupNotifications();
}

void SnippetListViewModel::setupNotifications()
{
    connect(&services.notifications, &NotificationCenter::snippetDataChanged, this,
            &SnippetListViewModel::loadSnippets);
    connect(&services.notifications, &NotificationCenter::syncDataDidChange, this,
            &SnippetListViewModel::handleExternalDataChange);
}

void SnippetListViewModel::announce(const Fields& before, quint64 frozenVersion)
{
    const Fields now = fields;
    const ChangedLists lists = std::exchange(changed, {});
    const bool isListChanged = frozen.version() != frozenVersion;
    if (lists.collectionModels)
        Q_EMIT collectionModelsChanged();
    if (lists.snippets)
        Q_EMIT snippetsChanged();
    if (lists.unsavedEdits)
        Q_EMIT unsavedEditsChanged();
    if (now.isFilteringUnsaved != before.isFilteringUnsaved)
        Q_EMIT isFilteringUnsavedChanged();
    if (now.selectedCollection != before.selectedCollection)
        Q_EMIT selectedCollectionChanged();
    if (now.searchText != before.searchText)
        Q_EMIT searchTextChanged();
    if (isListChanged)
        Q_EMIT filteredSnippetsChanged();
    if (now.newlyCreatedSnippetID != before.newlyCreatedSnippetID)
        Q_EMIT newlyCreatedSnippetIDChanged();
    if (now.selectedSnippetID != before.selectedSnippetID)
        Q_EMIT selectedSnippetIDChanged();
    if (now.snippetIDToDelete != before.snippetIDToDelete)
        Q_EMIT snippetIDToDeleteChanged();
    if (now.showDeleteConfirmation != before.showDeleteConfirmation)
        Q_EMIT showDeleteConfirmationChanged();
    if (now.showExportCollectionPicker != before.showExportCollectionPicker)
        Q_EMIT showExportCollectionPickerChanged();
    if (now.selectedCollectionsToExport != before.selectedCollectionsToExport)
        Q_EMIT selectedCollectionsToExportChanged();
    if (now.showExportPicker != before.showExportPicker)
        Q_EMIT showExportPickerChanged();
    if (now.showImportPicker != before.showImportPicker)
        Q_EMIT showImportPickerChanged();
    if (now.conflictDetectionResult != before.conflictDetectionResult)
        Q_EMIT conflictDetectionResultChanged();
    if (now.selectedConflictResolutionMode != before.selectedConflictResolutionMode)
        Q_EMIT selectedConflictResolutionModeChanged();
    if (now.showImportConflictDialog != before.showImportConflictDialog)
        Q_EMIT showImportConflictDialogChanged();
    if (now.importResult != before.importResult)
        Q_EMIT importResultChanged();
}

std::optional<Snippet> SnippetListViewModel::effectiveSnippet(const QString& id) const
{
    return library.effective(id);
}

qsizetype SnippetListViewModel::snippetCount(const QString& collection) const
{
    return library.count(collection);
}

// The list

void SnippetListViewModel::refreshSnippetOrder()
{
    const QList<Snippet> kept = snippetsInSelection();
    const QList<Snippet> order = fields.searchText.isEmpty()
                                     ? displayOrder.sorted(kept)
                                     : services.searchService.search(fields.searchText, kept);
    frozen.refresh(order, fields.selectedCollection, library);
}

QList<Snippet> SnippetListViewModel::snippetsInSelection()
{
    if (fields.isFilteringUnsaved)
        return library.drafted();
    if (!fields.selectedCollection)
        return library.effective();
    if (gathered.version != library.version() || gathered.collection != fields.selectedCollection) {
        gathered = {library.version(), fields.selectedCollection, {}};
        for (const Snippet& snippet : library.effective()) {
            if (snippet.collection() == *fields.selectedCollection)
                gathered.snippets.append(snippet);
        }
    }
    return gathered.snippets;
}

void SnippetListViewModel::setSearchText(const QString& text)
{
    if (text == fields.searchText)
        return;
    const Operation operation(*this);
    fields.searchText = text;
    refreshSnippetOrder();
}

void SnippetListViewModel::setSelectedCollection(const std::optional<QString>& name)
{
    if (name == fields.selectedCollection)
        return;
    const Operation operation(*this);
    fields.selectedCollection = name;
    refreshSnippetOrder();
}

void SnippetListViewModel::setSelectedSnippetID(const std::optional<QString>& id)
{
    const Operation operation(*this);
    fields.selectedSnippetID = id;
}

void SnippetListViewModel::setNewlyCreatedSnippetID(const std::optional<QString>& id)
{
    const Operation operation(*this);
    fields.newlyCreatedSnippetID = id;
}

void SnippetListViewModel::selectCollection(const std::optional<QString>& name)
{
    const Operation operation(*this);
    fields.isFilteringUnsaved = false;
    setSelectedCollection(name);
}

void SnippetListViewModel::selectUnsaved()
{
    const Operation operation(*this);
    fields.isFilteringUnsaved = true;
    fields.selectedCollection.reset();
    refreshSnippetOrder();
}

void SnippetListViewModel::moveSelectionUp()
{
    moveSelection(-1);
}

void SnippetListViewModel::moveSelectionDown()
{
    moveSelection(1);
}

void SnippetListViewModel::moveSelection(qsizetype by)
{
    const QList<Snippet>& shown = frozen.shown();
    if (shown.isEmpty())
        return;
    const qsizetype row =
        fields.selectedSnippetID ? frozen.shownRow(*fields.selectedSnippetID, library) : -1;
    const qsizetype next = row < 0 ? 0 : std::clamp<qsizetype>(row + by, 0, shown.size() - 1);
    setSelectedSnippetID(shown.at(next).id());
}

// Loading and saving

void SnippetListViewModel::loadSnippets()
{
    const Operation operation(*this);
    QList<Snippet> loaded;
    QList<Collection> collections;
    if (const auto data = services.storageService.loadFullData()) {
        loaded = data->data.snippets;
        for (const SyncCollection& collection : data->data.collections)
            collections.append({.id = collection.id,
                                .name = collection.name,
                                .displayOrder = collections.size(),
                                .createdAt = collection.createdAt});
    }
    const bool isMigrated = migrateSnippetDisplayOrderIfNeeded(loaded);
    setSnippets(loaded);
    setCollectionModels(collections);
    if (isMigrated) {
        saveAllData();
        log(u"已完成 displayOrder 迁移");
    }
    refreshSnippetOrder();
}

void SnippetListViewModel::refreshData()
{
    const Operation operation(*this);
    fields.selectedCollection.reset();
    fields.selectedSnippetID.reset();
    if (library.clearDrafts())
        changed.unsavedEdits = true;
    loadSnippets();
    log(u"数据已完全刷新");
}

void SnippetListViewModel::saveAllData()
{
    try {
        save();
    } catch (const StorageError&) {
        return; // the next save writes what this one could not
    }
}

void SnippetListViewModel::save()
{
    VellumryData data{.version = VellumryData::currentVersion.toString(),
                      .lastModified = services.clock.now(),
                      .deviceId = DeviceIdentifier::current(),
                      .data = {.collections = {}, .snippets = snippets(), .categoryColors = {}},
                      .settings = std::nullopt};
    const QMap<QString, QString> colors = services.colors.loadColors();
    for (const Collection& collection : std::as_const(models)) {
        const std::optional<QString> color = hexOf(colors, collection.name);
        data.data.collections.append({.id = collection.id,
                                      .name = collection.name,
                                      .color = color,
                                      .createdAt = collection.createdAt});
        if (color)
            data.data.categoryColors.insert(collection.name, *color);
    }
    services.storageService.saveFullData(data, false);
}

void SnippetListViewModel::handleExternalDataChange()
{
    log(u"检测到外部数据变化，重新加载...");
    const Operation operation(*this);
    loadSnippets();
    // A selected collection that is gone stays selected, over an empty list.
    if (fields.selectedCollection)
        (void)collections();
    if (fields.selectedSnippetID && library.indexOf(*fields.selectedSnippetID) < 0)
        fields.selectedSnippetID.reset();
}

// Snippets

void SnippetListViewModel::setSnippets(const QList<Snippet>& snippets)
{
    if (library.setSnippets(snippets))
        changed.snippets = true;
}

void SnippetListViewModel::replaceSnippet(qsizetype position, const Snippet& snippet)
{
    const std::optional<Snippet> before = library.effective(snippet.id());
    if (!library.replace(position, snippet))
        return;
    changed.snippets = true;
    showChange(*before);
}

/// Lets the list show what has become of a snippet.
void SnippetListViewModel::showChange(const Snippet& before)
{
    if (library.hasUniqueIds())
        frozen.update(before, *library.effective(before.id()));
    else
        frozen.update(library);
}

void SnippetListViewModel::createSnippet()
{
    const Operation operation(*this);
    const QString target = fields.selectedCollection.value_or(QStringLiteral("Default"));
    ensureCollectionExists(target);
    const Date now = services.clock.now();
    SnippetFields made;
    made.id = services.newIdentifier();
    made.title = newSnippetTitle();
    made.collection = target;
    made.createdAt = now;
    made.updatedAt = now;
    made.displayOrder = nextDisplayOrder(target);
    insertSnippet(Snippet(made));
    fields.newlyCreatedSnippetID = made.id;
    selectSoon(made.id);
}

void SnippetListViewModel::duplicateSnippet(const QString& id, const QString& newTitle)
{
    const qsizetype position = library.indexOf(id);
    if (position < 0)
        return;
    const Operation operation(*this);
    const Snippet original = snippets().at(position);
    const Date now = services.clock.now();
    SnippetFields made;
    made.id = services.newIdentifier();
    made.title = newTitle;
    made.subtitle = original.subtitle();
    made.collection = original.collection();
    made.content = original.content();
    made.keywords = original.keywords();
    made.createdAt = now;
    made.updatedAt = now;
    made.displayOrder = nextDisplayOrder(original.collection());
    insertSnippet(Snippet(made));
    selectSoon(made.id);
}

qint64 SnippetListViewModel::nextDisplayOrder(const QString& collection) const
{
    std::optional<qint64> largest;
    for (const Snippet& snippet : snippets()) {
        if (snippet.displayOrder() > largest && snippet.collection() == collection)
            largest = snippet.displayOrder();
    }
    if (!largest)
        return 0;
    return *largest < std::numeric_limits<qint64>::max() ? *largest + 1 : *largest;
}

/// Stores a new snippet. It stands last in the snapshot, unless the filter text, which is cleared,
/// makes for a new one.
void SnippetListViewModel::insertSnippet(const Snippet& snippet)
{
    library.append(snippet);
    changed.snippets = true;
    saveAllData();
    if (!fields.searchText.isEmpty()) {
        setSearchText({}); // takes a new snapshot
        return;
    }
    frozen.append(snippet);
    if (!library.hasUniqueIds())
        frozen.update(library);
}

void SnippetListViewModel::selectSoon(const QString& id)
{
    services.scheduler.after(selectionDelay, this, [this, id] { setSelectedSnippetID(id); });
}

void SnippetListViewModel::updateSnippet(const Snippet& snippet)
{
    const qsizetype position = library.indexOf(snippet.id());
    if (position < 0)
        return;
    const Operation operation(*this);
    const QString previousCollection = snippets().at(position).collection();
    const bool hasMoved = previousCollection != snippet.collection();
    replaceSnippet(position, snippet);
    saveAllData();
    clearUnsavedEdit(snippet.id());
    if (hasMoved)
        cleanupEmptyCollection(previousCollection);
}

void SnippetListViewModel::incrementUsage(const QString& id)
{
    const qsizetype position = library.indexOf(id);
    if (position < 0)
        return;
    const Operation operation(*this);
    Snippet used = snippets().at(position);
    // A file may hold any count; the largest one cannot grow.
    if (used.usageCount() < std::numeric_limits<qint64>::max())
        used.setUsageCount(used.usageCount() + 1);
    used.setLastUsedAt(services.clock.now());
    replaceSnippet(position, used);
    saveAllData();
}

void SnippetListViewModel::moveSnippets(const std::set<qsizetype>& offsets, qsizetype target,
                                        bool persist)
{
    const Operation operation(*this);
    frozen.move(offsets, target);
    QSet<QString> numbered;
    // An id that stands twice has the number of its last place, hence from the end.
    for (qsizetype i = frozen.contents().size() - 1; i >= 0; --i) {
        const Snippet row = frozen.contents().at(i);
        if (library.hasUniqueIds()) {
            // Most keep their number, and need not be looked up.
            if (row.displayOrder() == i && !isUnsaved(row.id()))
                continue;
        } else if (numbered.contains(row.id())) {
            continue;
        } else {
            numbered.insert(row.id());
        }
        const qsizetype position = library.indexOf(row.id());
        Snippet snippet = snippets().at(position);
        if (snippet.displayOrder() == i)
            continue;
        snippet.setDisplayOrder(i);
        library.replace(position, snippet);
        changed.snippets = true;
        if (library.hasUniqueIds())
            frozen.update(i, *library.effective(row.id()));
    }
    if (!library.hasUniqueIds())
        frozen.update(library);
    if (persist)
        saveAllData();
}

void SnippetListViewModel::requestDelete(const QString& id)
{
    const qsizetype position = library.indexOf(id);
    if (position < 0)
        return;
    const Operation operation(*this);
    fields.snippetIDToDelete = id;
    if (isUntouched(snippets().at(position)))
        confirmDelete();
    else
        fields.showDeleteConfirmation = true;
}

void SnippetListViewModel::confirmDelete()
{
    if (!fields.snippetIDToDelete)
        return;
    const Operation operation(*this);
    const QString id = *std::exchange(fields.snippetIDToDelete, std::nullopt);
    if (fields.selectedSnippetID == id)
        fields.selectedSnippetID.reset();
    const qsizetype position = library.indexOf(id);
    const auto collection =
        position < 0 ? std::nullopt : std::optional(snippets().at(position).collection());
    if (collection) {
        if (library.hasUniqueIds())
            frozen.remove(*library.effective(id));
        else
            frozen.remove(QSet<QString>{id});
        library.remove(id);
        changed.snippets = true;
    }
    clearUnsavedEdit(id);
    saveAllData();
    if (collection)
        cleanupEmptyCollection(*collection);
}

void SnippetListViewModel::setShowDeleteConfirmation(bool isShown)
{
    const Operation operation(*this);
    fields.showDeleteConfirmation = isShown;
}

void SnippetListViewModel::setSnippetIDToDelete(const std::optional<QString>& id)
{
    const Operation operation(*this);
    fields.snippetIDToDelete = id;
}

// Drafts

void SnippetListViewModel::setUnsavedEdit(const Snippet& draft)
{
    const Operation operation(*this);
    const std::optional<Snippet> before = library.effective(draft.id());
    const bool isChanged = library.setDraft(draft);
    noteDraft(isChanged, before);
}

void SnippetListViewModel::clearUnsavedEdit(const QString& id)
{
    const Operation operation(*this);
    const std::optional<Snippet> before = library.effective(id);
    const bool isChanged = library.removeDraft(id);
    noteDraft(isChanged, before);
}

/// What follows on a draft that was set or removed. `before` is what stood for its snippet, if it
/// is stored.
void SnippetListViewModel::noteDraft(bool isChanged, const std::optional<Snippet>& before)
{
    if (isChanged)
        changed.unsavedEdits = true;
    if (fields.isFilteringUnsaved)
        refreshSnippetOrder();
    else if (isChanged && before)
        showChange(*before);
}

void SnippetListViewModel::saveAllUnsavedEdits()
{
    const Operation operation(*this);
    const QMap<QString, Snippet> drafts = unsavedEdits();
    for (const Snippet& draft : drafts)
        updateSnippet(draft);
}

void SnippetListViewModel::discardAllUnsavedEdits()
{
    const Operation operation(*this);
    const QStringList ids = unsavedEdits().keys();
    for (const QString& id : ids) {
        const std::optional<Snippet> before = library.effective(id);
        changed.unsavedEdits = library.removeDraft(id);
        if (before)
            showChange(*before);
    }
}

// Collections

void SnippetListViewModel::setCollectionModels(const QList<Collection>& collections)
{
    if (!haveSameFields(models, collections))
        changed.collectionModels = true;
    models = collections;
}

qsizetype SnippetListViewModel::indexOfCollection(const QString& name) const
{
    const auto found = std::find_if(models.cbegin(), models.cend(), [&](const auto& collection) {
        return collection.name == name;
    });
    return found == models.cend() ? -1 : found - models.cbegin();
}

QStringList SnippetListViewModel::collections()
{
    const Operation operation(*this);
    for (const QString& name : missingCollectionNames())
        ensureCollectionExists(name);

    QStringList names;
    names.reserve(models.size());
    for (const Collection& collection : std::as_const(models))
        names.append(collection.name);
    return names;
}

/// The names that only snippets know, in ascending order.
QStringList SnippetListViewModel::missingCollectionNames() const
{
    QSet<QString> known;
    for (const Collection& collection : models)
        known.insert(collection.name);
    QStringList missing;
    for (const QString& name : library.collectionNames()) {
        if (!known.contains(name))
            missing.append(name);
    }
    std::sort(missing.begin(), missing.end());
    return missing;
}

void SnippetListViewModel::ensureCollectionExists(const QString& name)
{
    if (indexOfCollection(name) < 0) {
        appendCollection(name);
        saveAllData();
    }
}

/// Without a save.
void SnippetListViewModel::appendCollection(const QString& name)
{
    models.append({.id = services.newIdentifier(),
                   .name = name,
                   .displayOrder = models.size(),
                   .createdAt = services.clock.now()});
    changed.collectionModels = true;
}

/// Those of the names that are not there yet, without a save.
void SnippetListViewModel::appendMissingCollections(const QStringList& names)
{
    QSet<QString> known;
    for (const Collection& collection : std::as_const(models))
        known.insert(collection.name);
    for (const QString& name : names) {
        if (!known.contains(name)) {
            known.insert(name);
            appendCollection(name);
        }
    }
}

/// Called when a collection may have lost its last snippet. It stays, empty, until the person
/// deletes it.
void SnippetListViewModel::cleanupEmptyCollection(const QString& /*name*/) {}

bool SnippetListViewModel::isCollectionNameAvailable(const QString& name) const
{
    const QString wanted = trimmedHorizontally(name).toString().toLower();
    if (wanted.isEmpty())
        return false;
    return std::none_of(models.cbegin(), models.cend(), [&](const Collection& collection) {
        return collection.name.toLower() == wanted;
    });
}

bool SnippetListViewModel::createEmptyCollection(const QString& name)
{
    const QString trimmed = trimmedHorizontally(name).toString();
    if (trimmed.isEmpty() || indexOfCollection(trimmed) >= 0)
        return false;
    const Operation operation(*this);
    appendCollection(trimmed);
    saveAllData();
    setSelectedCollection(trimmed);
    return true;
}

void SnippetListViewModel::renameCollection(const QString& oldName, const QString& newName)
{
    const QString trimmed = trimmedHorizontally(newName).toString();
    if (trimmed.isEmpty() || trimmed == oldName)
        return;
    // The name that is given may be that of the model itself.
    const std::pair<QString, QString> names(oldName, trimmed);
    {
        const Operation operation(*this);
        const Date now = services.clock.now();
        QList<Snippet> renamed = snippets();
        for (qsizetype i = 0; i < renamed.size(); ++i) {
            if (renamed.at(i).collection() != names.first)
                continue;
            renamed[i].setCollection(trimmed);
            renamed[i].setUpdatedAt(now);
        }
        setSnippets(renamed);
        if (const qsizetype i = indexOfCollection(names.first); i >= 0) {
            models[i].name = trimmed;
            changed.collectionModels = true;
        }
        saveAllData();
        if (const qsizetype i = indexOfCollection(trimmed); i >= 0) {
            try {
                services.storageService.renameCollectionFile(models.at(i).id, trimmed);
            } catch (const StorageError&) {
                // The file keeps its name, which nothing depends on.
            }
        }
        QMap<QString, QString> colors = services.colors.loadColors();
        colors.insert(trimmed, toHex(services.colors.getColor(names.first)));
        colors.remove(names.first);
        services.colors.saveColors(colors);
        if (fields.selectedCollection == names.first)
            fields.selectedCollection = trimmed;
        refreshSnippetOrder();
    }
    Q_EMIT services.notifications.collectionsDidChange(names.first, names.second);
}

void SnippetListViewModel::deleteCollection(const QString& name)
{
    const Operation operation(*this);
    // The name that is given may be one of those that go.
    const bool isSelected = fields.selectedCollection == name;
    const qsizetype index = indexOfCollection(name);
    QMap<QString, QString> colors = services.colors.loadColors();
    colors.remove(name);
    QSet<QString> ids;
    QList<Snippet> kept;
    for (const Snippet& snippet : snippets()) {
        if (snippet.collection() == name)
            ids.insert(snippet.id());
        else
            kept.append(snippet);
    }
    if (fields.selectedSnippetID && ids.contains(*fields.selectedSnippetID))
        fields.selectedSnippetID.reset();
    for (const QString& id : std::as_const(ids)) {
        if (library.removeDraft(id))
            changed.unsavedEdits = true;
    }
    setSnippets(kept);
    if (index >= 0) {
        const QString id = models.at(index).id;
        try {
            services.storageService.deleteCollectionFile(id);
        } catch (const StorageError&) {
            // The save removes the file of a collection that is gone.
        }
        models.removeIf([&](const Collection& collection) { return collection.id == id; });
        changed.collectionModels = true;
    }
    saveAllData();
    services.colors.saveColors(colors);
    if (isSelected)
        fields.selectedCollection.reset();
    refreshSnippetOrder();
}

void SnippetListViewModel::moveCollections(const std::set<qsizetype>& offsets, qsizetype target)
{
    const Operation operation(*this);
    QList<Collection> moved = models;
    moveOffsets(moved, offsets, target);
    for (qsizetype i = 0; i < moved.size(); ++i)
        moved[i].displayOrder = i;
    setCollectionModels(moved);
    saveAllData();
}

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
                                     .color = hexOf(colors, collection.name),
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
    log(result.error ? QString(u"导出失败: " % *result.error)
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
        vellumry::log(u"ImportExportService", QString(u"导入失败 - " % failure.description()));
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
