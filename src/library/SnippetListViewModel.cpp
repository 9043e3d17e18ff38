#include "library/SnippetListViewModel.h"

#include "core/Log.h"
#include "core/Text.h"
#include "library/MoveOffsets.h"
#include "notifications/NotificationCenter.h"
#include "palette/SearchServiceProtocol.h"
#include "platform/DeviceIdentifier.h"
#include "settings/CategoryColorService.h"
#include "storage/StorageError.h"
#include "storage/StorageServiceProtocol.h"

#include <QHash>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace vellumry {

namespace {

using namespace std::chrono_literals;

/// Gives the list the time to show a new row before it is selected.
constexpr auto selectionDelay = 100ms;

QString newSnippetTitle()
{
    return QStringLiteral("New Snippet");
}

void log(QStringView message)
{
    vellumry::log(u"SnippetListViewModel", message);
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
        const std::optional<QString> color = CategoryColorService::hexOf(colors, collection.name);
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

} // namespace vellumry
