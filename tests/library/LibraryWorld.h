#pragma once

#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "palette/FuzzySearchService.h"
#include "settings/CategoryColorService.h"
#include "storage/MemoryFileSystem.h"
#include "storage/StorageError.h"
#include "storage/StorageWorld.h"
#include "support/LogCapture.h"
#include "support/ManualClock.h"
#include "support/ManualScheduler.h"
#include "support/MemoryPreferences.h"

#include <QMap>
#include <QStringList>

#include <functional>
#include <optional>

namespace vellumry::test {

/// A storage that keeps the library in memory and writes its calls down. Calls can be made to fail.
class MemoryStorage final : public StorageServiceProtocol {
public:
    std::optional<VellumryData> loadFullData() override
    {
        return enter(QStringLiteral("load")) ? stored : std::nullopt;
    }
    void saveFullData(const VellumryData& data, bool) override
    {
        if (!enter(QStringLiteral("save")))
            throw StorageError(QStringLiteral("no space"));
        stored = data;
    }
    [[nodiscard]] QList<Snippet> loadSnippets() override { return {}; }
    bool saveSnippets(const QList<Snippet>&) override { return false; }
    void deleteCollectionFile(const QString& id) override
    {
        if (!enter(QStringLiteral("delete ") + id))
            throw StorageError(QStringLiteral("no such file"));
    }
    void renameCollectionFile(const QString& id, const QString& newName) override
    {
        if (!enter(QStringLiteral("rename ") + id + QStringLiteral(" to ") + newName))
            throw StorageError(QStringLiteral("no such file"));
    }

    [[nodiscard]] qsizetype saves() const { return calls.count(QStringLiteral("save")); }

    std::optional<VellumryData> stored;
    QStringList calls;
    /// Whether the call fails; the number counts the calls from 0.
    std::function<bool(qsizetype number)> fails = [](qsizetype) { return false; };

private:
    bool enter(const QString& call)
    {
        calls.append(call);
        return !fails(calls.size() - 1);
    }
};

/// Everything that a list model works with.
struct LibraryParts {
    MemoryStorage storage;
    MemoryPreferences preferences;
    CategoryColorService colors{preferences};
    FuzzySearchService search;
    NotificationCenter notifications;
    ManualScheduler scheduler;
    ManualClock clock;
    MemoryFileSystem files; ///< where backup files are
    int identifiers = 0;

    QString newIdentifier() { return QStringLiteral("new-%1").arg(++identifiers); }
};

/// Counts the announcements of a list model, by field.
class Announcements {
public:
    explicit Announcements(SnippetListViewModel& model)
    {
        using M = SnippetListViewModel;
        count(model, &M::snippetsChanged, "snippets");
        count(model, &M::collectionModelsChanged, "collectionModels");
        count(model, &M::unsavedEditsChanged, "unsavedEdits");
        count(model, &M::filteredSnippetsChanged, "filteredSnippets");
        count(model, &M::searchTextChanged, "searchText");
        count(model, &M::isFilteringUnsavedChanged, "isFilteringUnsaved");
        count(model, &M::selectedCollectionChanged, "selectedCollection");
        count(model, &M::selectedSnippetIDChanged, "selectedSnippetID");
        count(model, &M::newlyCreatedSnippetIDChanged, "newlyCreatedSnippetID");
        count(model, &M::showDeleteConfirmationChanged, "showDeleteConfirmation");
        count(model, &M::snippetIDToDeleteChanged, "snippetIDToDelete");
        count(model, &M::showExportCollectionPickerChanged, "showExportCollectionPicker");
        count(model, &M::selectedCollectionsToExportChanged, "selectedCollectionsToExport");
        count(model, &M::showExportPickerChanged, "showExportPicker");
        count(model, &M::showImportPickerChanged, "showImportPicker");
        count(model, &M::showImportConflictDialogChanged, "showImportConflictDialog");
        count(model, &M::conflictDetectionResultChanged, "conflictDetectionResult");
        count(model, &M::selectedConflictResolutionModeChanged, "selectedConflictResolutionMode");
        count(model, &M::importResultChanged, "importResult");
    }

    /// Those since the last call.
    QMap<QString, int> take() { return std::exchange(counts, {}); }

private:
    void count(SnippetListViewModel& model, void (SnippetListViewModel::*changed)(),
               const char* field)
    {
        QObject::connect(&model, changed, &model,
                         [this, name = QString::fromLatin1(field)] { ++counts[name]; });
    }

    QMap<QString, int> counts;
};

/// A list model over a library in memory.
class LibraryWorld : public LibraryParts {
public:
    /// The library that the model loads.
    void load(const QList<SyncCollection>& collections, const QList<Snippet>& snippets)
    {
        storage.stored = makeLibrary(collections, snippets);
        model.loadSnippets();
        storage.calls.clear();
        (void)announced.take();
    }

    [[nodiscard]] QStringList shown() const { return idsOf(model.filteredSnippets()); }
    [[nodiscard]] Snippet snippet(const QString& id) const
    {
        for (const Snippet& each : model.snippets())
            if (each.id() == id)
                return each;
        return {};
    }
    [[nodiscard]] QStringList modelNames() const
    {
        QStringList names;
        for (const Collection& collection : model.collectionModels())
            names.append(collection.name);
        return names;
    }

    LogCapture log;
    SnippetListViewModel model{{.storageService = storage,
                                .searchService = search,
                                .colors = colors,
                                .notifications = notifications,
                                .scheduler = scheduler,
                                .clock = clock,
                                .newIdentifier = [this] { return newIdentifier(); },
                                .files = files}};
    Announcements announced{model};
};

/// A snippet with a number, made in the second of this number after the others.
inline Snippet orderedSnippet(const QString& id, const QString& collection,
                              std::optional<qint64> displayOrder, int second = 0)
{
    Snippet snippet = makeSnippet(id, collection);
    snippet.setDisplayOrder(displayOrder);
    snippet.setCreatedAt(dateAt(qint64{1000} * second));
    return snippet;
}

inline Snippet titled(Snippet snippet, const QString& title)
{
    snippet.setTitle(title);
    return snippet;
}

inline Snippet inCollection(Snippet snippet, const QString& collection)
{
    snippet.setCollection(collection);
    return snippet;
}

} // namespace vellumry::test
