#include "library/PlainListModel.h"

#include "core/Text.h"
#include "platform/DeviceIdentifier.h"

#include <algorithm>
#include <limits>

namespace vellumry::test {

namespace {

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
    (void)isStorageCallGood([&] { with.storage.saveFullData(data, false); });
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
    selectLater.append(made.id);
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

void PlainListModel::passDelay()
{
    for (const QString& id : std::exchange(selectLater, {}))
        selectedSnippetID = id;
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
    for (const Collection& collection : std::as_const(collectionModels))
        if (collection.name == name)
            return;
    collectionModels.append(
        {with.newIdentifier(), name, collectionModels.size(), with.clock.now()});
    saveAllData();
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

} // namespace vellumry::test
