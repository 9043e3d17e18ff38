#include "library/PlainListModel.h"

#include "core/Text.h"
#include "platform/DeviceIdentifier.h"

#include <algorithm>
#include <limits>

namespace vellumry::test {

namespace {

using namespace std::chrono_literals;

template <typename T>
void moveElements(QList<T>& list, const std::set<qsizetype>& offsets, qsizetype target)
{
    QList<T> moved;
    qsizetype place = target;
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset) {
        moved.prepend(list.takeAt(*offset));
        if (*offset < target)
            --place;
    }
    for (qsizetype i = 0; i < moved.size(); ++i)
        list.insert(place + i, moved[i]);
}

bool isStorageCallGood(const std::function<void()>& call)
{
    try {
        call();
    } catch (const StorageError&) {
        return false;
    }
    return true;
}

} // namespace

qsizetype PlainListModel::find(const QString& id) const
{
    for (qsizetype i = 0; i < snippets.size(); ++i)
        if (snippets[i].id() == id)
            return i;
    return -1;
}

QList<Snippet> PlainListModel::effectiveSnippets() const
{
    QList<Snippet> result;
    for (const Snippet& snippet : snippets)
        result.append(unsavedEdits.value(snippet.id(), snippet));
    return result;
}

std::optional<Snippet> PlainListModel::effectiveSnippet(const QString& id) const
{
    const qsizetype i = find(id);
    if (i < 0)
        return std::nullopt;
    return unsavedEdits.value(id, snippets[i]);
}

QList<Snippet> PlainListModel::filteredSnippets() const
{
    QMap<QString, Snippet> byId;
    for (const Snippet& snippet : effectiveSnippets())
        byId[snippet.id()] = snippet;
    QList<Snippet> result;
    for (const QString& id : frozenSnippetOrder) {
        if (!byId.contains(id))
            continue;
        if (selectedCollection && byId[id].collection() != *selectedCollection)
            continue;
        result.append(byId[id]);
    }
    return result;
}

qsizetype PlainListModel::snippetCount(const QString& name) const
{
    qsizetype count = 0;
    for (const Snippet& snippet : effectiveSnippets())
        count += snippet.collection() == name ? 1 : 0;
    return count;
}

void PlainListModel::refreshSnippetOrder()
{
    QList<Snippet> kept;
    for (const Snippet& snippet : effectiveSnippets()) {
        if (isFilteringUnsaved) {
            if (unsavedEdits.contains(snippet.id()))
                kept.append(snippet);
        } else if (!selectedCollection || snippet.collection() == *selectedCollection) {
            kept.append(snippet);
        }
    }
    if (!searchText.isEmpty()) {
        kept = with.search.search(searchText, kept);
    } else {
        std::stable_sort(kept.begin(), kept.end(), [](const Snippet& a, const Snippet& b) {
            constexpr qint64 last = std::numeric_limits<qint64>::max();
            return a.displayOrder().value_or(last) < b.displayOrder().value_or(last);
        });
    }
    frozenSnippetOrder = idsOf(kept);
}

void PlainListModel::setSearchText(const QString& text)
{
    const bool isChanged = text != searchText;
    searchText = text;
    if (isChanged)
        refreshSnippetOrder();
}

void PlainListModel::setSelectedCollection(const std::optional<QString>& name)
{
    const bool isChanged = name != selectedCollection;
    selectedCollection = name;
    if (isChanged)
        refreshSnippetOrder();
}

void PlainListModel::selectCollection(const std::optional<QString>& name)
{
    isFilteringUnsaved = false;
    setSelectedCollection(name);
}

void PlainListModel::selectUnsaved()
{
    isFilteringUnsaved = true;
    setSelectedCollection(std::nullopt);
    refreshSnippetOrder();
}

void PlainListModel::moveSelection(int by)
{
    const QList<Snippet> list = filteredSnippets();
    if (list.isEmpty())
        return;
    const qsizetype row = selectedSnippetID ? idsOf(list).indexOf(*selectedSnippetID) : -1;
    if (row < 0)
        selectedSnippetID = list.first().id();
    else if (row + by >= 0 && row + by < list.size())
        selectedSnippetID = list[row + by].id();
}

void PlainListModel::loadSnippets()
{
    snippets = {};
    collectionModels = {};
    if (const auto data = with.storage.loadFullData()) {
        snippets = data->data.snippets;
        for (const SyncCollection& stored : data->data.collections)
            collectionModels.append(
                {stored.id, stored.name, collectionModels.size(), stored.createdAt});
    }
    migrateSnippetDisplayOrderIfNeeded();
    refreshSnippetOrder();
}

void PlainListModel::migrateSnippetDisplayOrderIfNeeded()
{
    bool isNeeded = false;
    QStringList names;
    for (const Snippet& snippet : snippets) {
        isNeeded = isNeeded || !snippet.displayOrder();
        names.append(snippet.collection());
    }
    if (!isNeeded)
        return;
    names.removeDuplicates();
    for (const QString& name : names) {
        QList<Snippet*> group;
        for (Snippet& snippet : snippets)
            if (snippet.collection() == name)
                group.append(&snippet);
        std::stable_sort(group.begin(), group.end(), [](const Snippet* a, const Snippet* b) {
            return a->createdAt() < b->createdAt();
        });
        for (qsizetype i = 0; i < group.size(); ++i)
            group[i]->setDisplayOrder(i);
    }
    saveAllData();
}

void PlainListModel::refreshData()
{
    snippets = {};
    collectionModels = {};
    setSelectedCollection(std::nullopt);
    frozenSnippetOrder = {};
    selectedSnippetID.reset();
    unsavedEdits = {};
    loadSnippets();
}

void PlainListModel::handleExternalDataChange()
{
    const auto collection = selectedCollection;
    const auto snippet = selectedSnippetID;
    loadSnippets();
    if (collection && collections().contains(*collection))
        setSelectedCollection(collection);
    if (!snippet || find(*snippet) < 0)
        selectedSnippetID.reset();
    else
        selectedSnippetID = snippet;
}

void PlainListModel::saveAllData()
{
    (void)isSaveGood();
}

bool PlainListModel::isSaveGood()
{
    VellumryData data;
    data.version = QStringLiteral("3.0");
    data.lastModified = with.clock.now();
    data.deviceId = DeviceIdentifier::current();
    data.data.snippets = snippets;
    for (const Collection& collection : std::as_const(collectionModels)) {
        const auto color = with.colors.getColorHex(collection.name);
        data.data.collections.append({collection.id, collection.name, color, collection.createdAt});
        if (color)
            data.data.categoryColors[collection.name] = *color;
    }
    return isStorageCallGood([&] { with.storage.saveFullData(data, false); });
}

qint64 PlainListModel::nextNumber(const QString& collection) const
{
    QList<qint64> numbers;
    for (const Snippet& snippet : snippets)
        if (snippet.collection() == collection && snippet.displayOrder())
            numbers.append(*snippet.displayOrder());
    return numbers.isEmpty() ? 0 : *std::max_element(numbers.begin(), numbers.end()) + 1;
}

void PlainListModel::insert(SnippetFields made)
{
    made.id = with.newIdentifier();
    made.createdAt = with.clock.now();
    made.updatedAt = with.clock.now();
    made.displayOrder = nextNumber(made.collection);
    snippets.append(Snippet(made));
    saveAllData();
    frozenSnippetOrder.append(made.id);
    setSearchText({});
    with.scheduler.after(100ms, &owner, [this, id = made.id] { selectedSnippetID = id; });
}

void PlainListModel::createSnippet()
{
    SnippetFields made;
    made.collection = selectedCollection.value_or(QStringLiteral("Default"));
    ensureCollectionExists(made.collection);
    made.title = QStringLiteral("New Snippet");
    insert(made);
    newlyCreatedSnippetID = snippets.last().id();
}

void PlainListModel::duplicateSnippet(const QString& id, const QString& newTitle)
{
    const qsizetype i = find(id);
    if (i < 0)
        return;
    SnippetFields made = snippets[i].fields();
    made.title = newTitle;
    made.usageCount = 0;
    made.lastUsedAt.reset();
    made.variables.clear();
    insert(made);
}

void PlainListModel::updateSnippet(const Snippet& snippet)
{
    const qsizetype i = find(snippet.id());
    if (i < 0)
        return;
    snippets[i] = snippet;
    saveAllData();
    clearUnsavedEdit(snippet.id());
}

void PlainListModel::incrementUsage(const QString& id)
{
    const qsizetype i = find(id);
    if (i < 0)
        return;
    snippets[i].setUsageCount(snippets[i].usageCount() + 1);
    snippets[i].setLastUsedAt(with.clock.now());
    saveAllData();
}

void PlainListModel::moveSnippets(const std::set<qsizetype>& offsets, qsizetype target,
                                  bool persist)
{
    moveElements(frozenSnippetOrder, offsets, target);
    for (qsizetype i = 0; i < frozenSnippetOrder.size(); ++i)
        if (const qsizetype at = find(frozenSnippetOrder[i]); at >= 0)
            snippets[at].setDisplayOrder(i);
    if (persist)
        saveAllData();
}

void PlainListModel::requestDelete(const QString& id)
{
    const qsizetype i = find(id);
    if (i < 0)
        return;
    const Snippet& snippet = snippets.at(i);
    const bool isUntitled =
        snippet.title() == QStringLiteral("New Snippet") || snippet.title().isEmpty();
    snippetIDToDelete = id;
    if (isUntitled && snippet.content().isEmpty())
        confirmDelete();
    else
        showDeleteConfirmation = true;
}

void PlainListModel::confirmDelete()
{
    if (!snippetIDToDelete)
        return;
    const QString id = *snippetIDToDelete;
    if (selectedSnippetID == id)
        selectedSnippetID.reset();
    snippets.removeIf([&](const Snippet& snippet) { return snippet.id() == id; });
    clearUnsavedEdit(id);
    snippetIDToDelete.reset();
    saveAllData();
    frozenSnippetOrder.removeAll(id);
}

void PlainListModel::setUnsavedEdit(const Snippet& snippet)
{
    unsavedEdits[snippet.id()] = snippet;
    if (isFilteringUnsaved)
        refreshSnippetOrder();
}

void PlainListModel::clearUnsavedEdit(const QString& id)
{
    unsavedEdits.remove(id);
    if (isFilteringUnsaved)
        refreshSnippetOrder();
}

void PlainListModel::saveAllUnsavedEdits()
{
    const QMap<QString, Snippet> drafts = unsavedEdits;
    for (const Snippet& draft : drafts) {
        const qsizetype i = find(draft.id());
        if (i < 0)
            continue;
        snippets[i] = draft;
        saveAllData();
        unsavedEdits.remove(draft.id());
        if (isFilteringUnsaved)
            refreshSnippetOrder();
    }
}

QStringList PlainListModel::collections()
{
    QStringList names;
    for (const Collection& collection : std::as_const(collectionModels))
        names.append(collection.name);
    QStringList used;
    for (const Snippet& snippet : effectiveSnippets())
        used.append(snippet.collection());
    used.removeDuplicates();
    used.sort();
    for (const QString& name : std::as_const(used)) {
        if (names.contains(name))
            continue;
        names.append(name);
        ensureCollectionExists(name);
    }
    return names;
}

void PlainListModel::ensureCollectionExists(const QString& name)
{
    const qsizetype before = collectionModels.size();
    ensureCollectionIsModelled(name);
    if (collectionModels.size() > before)
        saveAllData();
}

void PlainListModel::ensureCollectionIsModelled(const QString& name)
{
    for (const Collection& collection : std::as_const(collectionModels))
        if (collection.name == name)
            return;
    collectionModels.append(
        {with.newIdentifier(), name, collectionModels.size(), with.clock.now()});
}

bool PlainListModel::isCollectionNameAvailable(const QString& name) const
{
    const QString trimmed = trimmedHorizontally(name).toString();
    if (trimmed.isEmpty())
        return false;
    for (const Collection& collection : collectionModels)
        if (collection.name.toLower() == trimmed.toLower())
            return false;
    return true;
}

bool PlainListModel::createEmptyCollection(const QString& name)
{
    const QString trimmed = trimmedHorizontally(name).toString();
    if (trimmed.isEmpty())
        return false;
    for (const Collection& collection : std::as_const(collectionModels))
        if (collection.name == trimmed)
            return false;
    ensureCollectionExists(trimmed);
    setSelectedCollection(trimmed);
    return true;
}

void PlainListModel::renameCollection(const QString& oldName, const QString& newName)
{
    const QString trimmed = trimmedHorizontally(newName).toString();
    if (trimmed.isEmpty() || trimmed == oldName)
        return;
    for (Snippet& snippet : snippets) {
        if (snippet.collection() == oldName) {
            snippet.setCollection(trimmed);
            snippet.setUpdatedAt(with.clock.now());
        }
    }
    for (Collection& collection : collectionModels) {
        if (collection.name == oldName) {
            collection.name = trimmed;
            break;
        }
    }
    saveAllData();
    for (const Collection& collection : std::as_const(collectionModels)) {
        if (collection.name == trimmed) {
            (void)isStorageCallGood(
                [&] { with.storage.renameCollectionFile(collection.id, trimmed); });
            break;
        }
    }
    auto colors = with.colors.loadColors();
    colors[trimmed] = toHex(with.colors.getColor(oldName));
    colors.remove(oldName);
    with.colors.saveColors(colors);
    if (selectedCollection == oldName)
        setSelectedCollection(trimmed);
    refreshSnippetOrder();
}

void PlainListModel::deleteCollection(const QString& name)
{
    QStringList ids;
    for (const Snippet& snippet : std::as_const(snippets))
        if (snippet.collection() == name)
            ids.append(snippet.id());
    if (selectedSnippetID && ids.contains(*selectedSnippetID))
        selectedSnippetID.reset();
    snippets.removeIf([&](const Snippet& snippet) { return snippet.collection() == name; });
    for (const QString& id : std::as_const(ids)) {
        unsavedEdits.remove(id);
        frozenSnippetOrder.removeAll(id);
    }
    if (isFilteringUnsaved)
        refreshSnippetOrder();
    for (const Collection& collection : std::as_const(collectionModels)) {
        if (collection.name == name) {
            const QString id = collection.id;
            (void)isStorageCallGood([&] { with.storage.deleteCollectionFile(id); });
            collectionModels.removeIf([&](const Collection& each) { return each.id == id; });
            break;
        }
    }
    saveAllData();
    auto colors = with.colors.loadColors();
    colors.remove(name);
    with.colors.saveColors(colors);
    if (selectedCollection == name)
        setSelectedCollection(std::nullopt);
    refreshSnippetOrder();
}

void PlainListModel::moveCollections(const std::set<qsizetype>& offsets, qsizetype target)
{
    moveElements(collectionModels, offsets, target);
    for (qsizetype i = 0; i < collectionModels.size(); ++i)
        collectionModels[i].displayOrder = i;
    saveAllData();
}

void PlainListModel::handleImport(const ExportData& file)
{
    ConflictDetectionResult found;
    for (const ExportCollection& given : file.collections) {
        bool isKnown = false;
        for (const Collection& collection : std::as_const(collectionModels))
            isKnown = isKnown || collection.name == given.name;
        if (!isKnown)
            found.newCollections.append(given);
        for (const Snippet& imported : given.snippets) {
            std::optional<Snippet> local;
            for (const Snippet& snippet : std::as_const(snippets))
                if (isKnown && snippet.collection() == given.name &&
                    snippet.title() == imported.title())
                    local = snippet;
            if (!local) {
                found.newSnippets.append(imported);
                continue;
            }
            if (local->content() == imported.content() &&
                local->subtitle() == imported.subtitle() &&
                local->keywords() == imported.keywords())
                continue;
            if (local->updatedAt() == imported.updatedAt())
                continue;
            found.conflicts.append({local->id(), ConflictType::snippet, imported.title(),
                                    local->updatedAt(), imported.updatedAt()});
            found.conflictingSnippets.append(imported);
        }
    }
    if (found.conflicts.isEmpty())
        return performImport(found, ConflictResolutionMode::skipConflicts);
    pendingImport = file;
    conflictDetectionResult = found;
    selectedConflictResolutionMode = ConflictResolutionMode::smartUpdate;
    showImportConflictDialog = true;
}

void PlainListModel::confirmConflictResolution()
{
    if (!pendingImport || !conflictDetectionResult)
        return;
    performImport(*conflictDetectionResult, selectedConflictResolutionMode);
    cancelImport();
}

void PlainListModel::cancelImport()
{
    showImportConflictDialog = false;
    pendingImport.reset();
    conflictDetectionResult.reset();
}

void PlainListModel::appendImported(const Snippet& imported, const QString& title)
{
    SnippetFields made;
    made.id = with.newIdentifier();
    made.title = title;
    made.subtitle = imported.subtitle();
    made.collection = imported.collection();
    made.content = imported.content();
    made.keywords = imported.keywords();
    made.createdAt = with.clock.now();
    made.updatedAt = with.clock.now();
    made.usageCount = imported.usageCount();
    made.lastUsedAt = imported.lastUsedAt();
    snippets.append(Snippet(made));
}

void PlainListModel::performImport(const ConflictDetectionResult& found,
                                   ConflictResolutionMode mode)
{
    const auto snippetsBefore = snippets;
    const auto modelsBefore = collectionModels;
    const auto colorsBefore = with.colors.loadColors();
    for (const ExportCollection& given : found.newCollections) {
        ensureCollectionIsModelled(given.name);
        auto colors = with.colors.loadColors();
        if (given.color)
            colors[given.name] = *given.color;
        with.colors.saveColors(colors);
    }
    qsizetype count = found.newSnippets.size();
    for (const Snippet& imported : found.newSnippets)
        appendImported(imported, imported.title());
    for (const Snippet& imported : found.conflictingSnippets) {
        for (const ImportConflict& conflict : found.conflicts) {
            if (conflict.name != imported.title())
                continue;
            const qsizetype i = find(conflict.id);
            const bool isNewer = conflict.importedUpdatedAt > conflict.localUpdatedAt;
            if (mode == ConflictResolutionMode::keepBoth) {
                appendImported(imported, imported.title() + QStringLiteral(" (imported)"));
                ++count;
            } else if (i >= 0 && (mode == ConflictResolutionMode::restoreFromBackup ||
                                  (mode == ConflictResolutionMode::smartUpdate && isNewer))) {
                snippets[i].setTitle(imported.title());
                snippets[i].setSubtitle(imported.subtitle());
                snippets[i].setContent(imported.content());
                snippets[i].setKeywords(imported.keywords());
                snippets[i].setUpdatedAt(imported.updatedAt());
                ++count;
            }
            break;
        }
    }
    QStringList used;
    for (const Snippet& snippet : effectiveSnippets())
        used.append(snippet.collection());
    used.sort();
    for (const QString& name : std::as_const(used))
        ensureCollectionIsModelled(name);
    if (isSaveGood()) {
        loadSnippets();
        if (selectedSnippetID)
            with.scheduler.after(0ms, &owner,
                                 [this, id = *selectedSnippetID] { selectedSnippetID = id; });
        selectedSnippetID.reset();
        importResult = ImportResult::success(count);
    } else {
        snippets = snippetsBefore;
        collectionModels = modelsBefore;
        with.colors.saveColors(colorsBefore);
        saveAllData();
        importResult = ImportResult::failure(QStringLiteral("no space"));
    }
    with.scheduler.after(3s, &owner, [this] { importResult.reset(); });
}

} // namespace vellumry::test
