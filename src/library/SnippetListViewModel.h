#pragma once

#include "core/Date.h"
#include "core/Scheduler.h"
#include "library/DisplayOrder.h"
#include "library/DraftedLibrary.h"
#include "library/ExportDocument.h"
#include "library/FrozenOrder.h"
#include "library/ImportConflicts.h"
#include "library/ImportExportService.h"
#include "library/ImportResult.h"
#include "library/PickedFile.h"
#include "models/Collection.h"
#include "models/Identifier.h"
#include "models/Snippet.h"
#include "models/VellumryData.h"
#include "platform/FileSystem.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <set>

namespace vellumry {

class CategoryColorService;
class NotificationCenter;
class SearchServiceProtocol;
class StorageServiceProtocol;

/// The logic of the main window: the library with its drafts, which snippets the list shows and in
/// which order, and every change that the window can make. Views render its values and forward what
/// the person does. Main thread only.
///
/// The order of the list is not computed anew as data changes. A refresh takes a snapshot of ids,
/// and from then on the list shows those, with their contents of the moment, until the next one: so
/// a snippet neither jumps nor vanishes under the hands of who edits it. A refresh comes with a
/// change of searchText or selectedCollection, with a load, with selectUnsaved, with a draft that
/// comes or goes while "Unsaved" is selected, and with the renaming or deletion of a collection;
/// with nothing else.
///
/// Nothing selected means "All Snippets", or "Unsaved" while isFilteringUnsaved holds.
///
/// Each change saves the whole library at once. A save or a file operation that fails is passed
/// over in silence: memory and disk then differ until the next save that succeeds. An import alone
/// is told of, and undone.
///
/// An operation announces when it is complete, each field that is different then once. A read of
/// collections() is such an operation too.
class SnippetListViewModel : public QObject {
    Q_OBJECT

public:
    /// What the model works with; all outlive it. The search may keep the text of the lists that it
    /// is asked to search, so it should not be the palette's.
    struct Dependencies {
        StorageServiceProtocol& storageService;
        SearchServiceProtocol& searchService;
        CategoryColorService& colors;
        NotificationCenter& notifications;
        Scheduler& scheduler;
        const Clock& clock;
        std::function<QString()> newIdentifier = makeIdentifier;
        FileSystem& files = FileSystem::local(); ///< where backup files are
    };

    /// Listens for changes of the library, and loads nothing.
    explicit SnippetListViewModel(Dependencies dependencies, QObject* parent = nullptr);

    // The library

    /// Every snippet as it is stored; never a draft.
    [[nodiscard]] const QList<Snippet>& snippets() const { return library.snippets(); }
    /// In the order of the sidebar.
    [[nodiscard]] const QList<Collection>& collectionModels() const { return models; }
    /// The drafts by the ids of their snippets. They are kept in memory alone.
    [[nodiscard]] const QMap<QString, Snippet>& unsavedEdits() const { return library.drafts(); }
    /// The snippets with the drafts laid over them.
    [[nodiscard]] const QList<Snippet>& effectiveSnippets() const { return library.effective(); }
    /// Nothing for an id that is not stored, even if there is a draft of it.
    [[nodiscard]] std::optional<Snippet> effectiveSnippet(const QString& id) const;
    [[nodiscard]] bool isUnsaved(const QString& id) const { return unsavedEdits().contains(id); }
    /// How many of effectiveSnippets are in this collection.
    [[nodiscard]] qsizetype snippetCount(const QString& collection) const;

    // The list

    /// What the list shows. Costs nothing while nothing changes; to be read where it is needed, not
    /// to be kept.
    [[nodiscard]] const QList<Snippet>& filteredSnippets() const { return frozen.shown(); }
    [[nodiscard]] QStringList frozenSnippetOrder() const { return frozen.ids(); }
    /// The row of filteredSnippets with this id; -1 if there is none.
    [[nodiscard]] qsizetype shownRow(const QString& id) const
    {
        return frozen.shownRow(id, library);
    }

    [[nodiscard]] const QString& searchText() const { return fields.searchText; }
    void setSearchText(const QString& text);
    [[nodiscard]] bool isFilteringUnsaved() const { return fields.isFilteringUnsaved; }
    [[nodiscard]] const std::optional<QString>& selectedCollection() const
    {
        return fields.selectedCollection;
    }
    /// Leaves isFilteringUnsaved alone, other than selectCollection.
    void setSelectedCollection(const std::optional<QString>& name);
    [[nodiscard]] const std::optional<QString>& selectedSnippetID() const
    {
        return fields.selectedSnippetID;
    }
    void setSelectedSnippetID(const std::optional<QString>& id);
    /// A snippet that createSnippet has made and that the editor has not shown yet.
    [[nodiscard]] const std::optional<QString>& newlyCreatedSnippetID() const
    {
        return fields.newlyCreatedSnippetID;
    }
    void setNewlyCreatedSnippetID(const std::optional<QString>& id);

    /// Selects a collection or, with nothing, "All Snippets". The list is refreshed only if
    /// selectedCollection changes: a step from "Unsaved" to "All Snippets" leaves the snapshot.
    void selectCollection(const std::optional<QString>& name);
    void selectUnsaved();
    /// To the row before or after the selected one, without wrapping around; to the first if the
    /// selected one is not in the list.
    void moveSelectionUp();
    void moveSelectionDown();

    // Loading

    /// Reads the library anew. One snippet without a number renumbers every collection by date.
    void loadSnippets();
    /// For a library that was replaced as a whole: lets go of drafts and selection, and loads.
    /// Filter text and "Unsaved" stay.
    void refreshData();
    /// Writes the library as it stands, without the drafts.
    void saveAllData();

    // Snippets. An unknown id changes nothing.

    /// Makes a snippet in the selected collection, or else in "Default", and selects it a moment
    /// later, when the list shows its row.
    void createSnippet();
    /// Copies the stored form of a snippet, and selects the copy a moment later.
    void duplicateSnippet(const QString& id, const QString& newTitle);
    /// Stores the edited form of a snippet and drops its draft.
    void updateSnippet(const Snippet& snippet);
    void incrementUsage(const QString& id);
    /// Moves rows of the snapshot, which includes what is hidden, and numbers its snippets in the
    /// new order. Without `persist` nothing is saved.
    void moveSnippets(const std::set<qsizetype>& offsets, qsizetype target, bool persist);

    /// Asks whether to delete the snippet; deletes it at once if nothing was ever put into it.
    void requestDelete(const QString& id);
    /// Deletes the snippet that was asked about.
    void confirmDelete();
    /// Whether the question is up, and about which snippet.
    [[nodiscard]] bool showDeleteConfirmation() const { return fields.showDeleteConfirmation; }
    void setShowDeleteConfirmation(bool isShown);
    [[nodiscard]] const std::optional<QString>& snippetIDToDelete() const
    {
        return fields.snippetIDToDelete;
    }
    void setSnippetIDToDelete(const std::optional<QString>& id);

    // Drafts

    void setUnsavedEdit(const Snippet& draft);
    void clearUnsavedEdit(const QString& id);
    /// Stores each draft, with the time stamp that it has, in a save of its own. A draft without a
    /// stored snippet stays a draft.
    void saveAllUnsavedEdits();
    void discardAllUnsavedEdits();

    // Collections

    /// The names for the sidebar. A name that only a snippet knows comes last, and its collection
    /// is created and saved by this read.
    [[nodiscard]] QStringList collections();
    /// Whether no collection has this name, in upper or lower case and with blanks around it.
    [[nodiscard]] bool isCollectionNameAvailable(const QString& name) const;
    /// Creates a collection of the name without the blanks around it, and selects it. False for an
    /// empty name and one that exists in this very form.
    bool createEmptyCollection(const QString& name);
    /// Drafts keep naming the old collection. A name that is taken joins the two collections.
    void renameCollection(const QString& oldName, const QString& newName);
    /// Deletes the collection with the snippets stored in it.
    void deleteCollection(const QString& name);
    void moveCollections(const std::set<qsizetype>& offsets, qsizetype target);

    // Export: the picker of collections, then the dialog for the file.

    /// Proposes every collection.
    void showExport();
    /// Proposes the collection of this name.
    void showExportForCollection(const QString& name);
    [[nodiscard]] bool showExportCollectionPicker() const
    {
        return fields.showExportCollectionPicker;
    }
    [[nodiscard]] const QSet<QString>& selectedCollectionsToExport() const
    {
        return fields.selectedCollectionsToExport;
    }
    void setSelectedCollectionsToExport(const QSet<QString>& names);
    /// The answers to the picker.
    void confirmCollectionsToExport();
    void cancelCollectionsToExport();
    [[nodiscard]] bool showExportPicker() const { return fields.showExportPicker; }
    void setShowExportPicker(bool isShown);
    /// The chosen collections with their stored snippets, as of now.
    [[nodiscard]] ExportDocument exportDocument() const;
    /// Writes exportDocument() to the place that was picked, and handles the outcome.
    void exportTo(const QString& path);
    /// Writes a line of diagnosis.
    static void handleExport(const PickedFile& result);

    // Import: the dialog for the file, then a question if there are conflicts.

    [[nodiscard]] bool showImportPicker() const { return fields.showImportPicker; }
    void setShowImportPicker(bool isShown);
    /// Imports the file that was picked, or asks about its conflicts first.
    void handleImport(const PickedFile& result);
    [[nodiscard]] bool showImportConflictDialog() const { return fields.showImportConflictDialog; }
    [[nodiscard]] const std::optional<ConflictDetectionResult>& conflictDetectionResult() const
    {
        return fields.conflictDetectionResult;
    }
    /// What waits for the answer.
    [[nodiscard]] const std::optional<ImportExportService::ImportedData>& pendingImportData() const
    {
        return fields.pendingImportData;
    }
    [[nodiscard]] ConflictResolutionMode selectedConflictResolutionMode() const
    {
        return fields.selectedConflictResolutionMode;
    }
    void setSelectedConflictResolutionMode(ConflictResolutionMode mode);
    /// The answers to the question. The second imports nothing, not even what is new.
    void confirmConflictResolution();
    void cancelConflictResolution();
    /// How the last import ended.
    [[nodiscard]] const std::optional<ImportResult>& importResult() const
    {
        return fields.importResult;
    }
    /// Lets importResult go in 3 seconds, even if it is another one by then.
    void showImportResultToast();

Q_SIGNALS:
    void snippetsChanged();
    void collectionModelsChanged();
    void unsavedEditsChanged();
    /// Of what the list shows, in order or contents.
    void filteredSnippetsChanged();
    void searchTextChanged();
    void isFilteringUnsavedChanged();
    void selectedCollectionChanged();
    void selectedSnippetIDChanged();
    void newlyCreatedSnippetIDChanged();
    void showDeleteConfirmationChanged();
    void snippetIDToDeleteChanged();
    void showExportCollectionPickerChanged();
    void selectedCollectionsToExportChanged();
    void showExportPickerChanged();
    void showImportPickerChanged();
    void showImportConflictDialogChanged();
    void conflictDetectionResultChanged();
    void selectedConflictResolutionModeChanged();
    void importResultChanged();

private:
    /// The fields that can be compared at no cost worth speaking of.
    struct Fields {
        QString searchText;
        bool isFilteringUnsaved = false;
        std::optional<QString> selectedCollection;
        std::optional<QString> selectedSnippetID;
        std::optional<QString> newlyCreatedSnippetID;
        bool showDeleteConfirmation = false;
        std::optional<QString> snippetIDToDelete;
        bool showExportCollectionPicker = false;
        QSet<QString> selectedCollectionsToExport;
        bool showExportPicker = false;
        bool showImportPicker = false;
        bool showImportConflictDialog = false;
        std::optional<ConflictDetectionResult> conflictDetectionResult;
        std::optional<ImportExportService::ImportedData> pendingImportData;
        ConflictResolutionMode selectedConflictResolutionMode = ConflictResolutionMode::smartUpdate;
        std::optional<ImportResult> importResult;
    };

    /// The time in which an operation changes fields. What is different at its end is announced
    /// then, so that whoever listens sees the operation complete. Operations within it join it.
    class Operation {
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

    /// Which of the observed lists have changed.
    struct ChangedLists {
        bool snippets = false;
        bool collectionModels = false;
        bool unsavedEdits = false;
    };

    void setupNotifications();
    void handleExternalDataChange();
    void announce(const Fields& before, quint64 frozenVersion);

    void refreshSnippetOrder();
    [[nodiscard]] QList<Snippet> snippetsInSelection();
    /// Throws StorageError.
    void save();

    void setSnippets(const QList<Snippet>& snippets);
    void replaceSnippet(qsizetype position, const Snippet& snippet);
    void insertSnippet(const Snippet& snippet);
    void showChange(const Snippet& before);
    void noteDraft(bool isChanged, const std::optional<Snippet>& before);

    [[nodiscard]] qint64 nextDisplayOrder(const QString& collection) const;
    void selectSoon(const QString& id);
    void moveSelection(qsizetype by);

    void setCollectionModels(const QList<Collection>& collections);
    /// Collections are equal by their ids alone.
    [[nodiscard]] static bool haveSameFields(const QList<Collection>& a,
                                             const QList<Collection>& b);
    void appendCollection(const QString& name);
    void appendMissingCollections(const QStringList& names);
    [[nodiscard]] QStringList missingCollectionNames() const;
    void ensureCollectionExists(const QString& name);
    void cleanupEmptyCollection(const QString& name);
    [[nodiscard]] qsizetype indexOfCollection(const QString& name) const;

    void performImport(const ConflictDetectionResult& found, ConflictResolutionMode mode);
    void takeOver(const ConflictDetectionResult& found, ConflictResolutionMode mode);
    void endConflictResolution();

    Dependencies services;
    DraftedLibrary library;
    QList<Collection> models;
    Fields fields;
    FrozenOrder frozen;
    DisplayOrder displayOrder;

    /// The snippets of a selected collection, so that typing does not gather them anew.
    struct {
        quint64 version = 0; ///< of the library
        std::optional<QString> collection;
        QList<Snippet> snippets;
    } gathered;

    int operationDepth = 0;
    ChangedLists changed;
};

} // namespace vellumry
