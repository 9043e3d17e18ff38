// How SnippetListViewModel keeps collections.

#include "core/Text.h"
#include "library/MoveOffsets.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "settings/CategoryColorService.h"
#include "storage/StorageError.h"
#include "storage/StorageServiceProtocol.h"

#include <algorithm>
#include <utility>

namespace vellumry {

bool SnippetListViewModel::haveSameFields(const QList<Collection>& a, const QList<Collection>& b)
{
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(),
                      [](const auto& one, const auto& other) { return one.hasSameFields(other); });
}

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

} // namespace vellumry
