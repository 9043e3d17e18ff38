#pragma once

#include "library/LibraryWorld.h"

namespace vellumry::test {

/// The rules of the list model, step by step and without a thought for speed, to compare with.
class PlainListModel {
public:
    explicit PlainListModel(LibraryParts& parts) : with(parts) {}

    QList<Snippet> snippets;
    QList<Collection> collectionModels;
    bool isFilteringUnsaved = false;
    std::optional<QString> selectedCollection;
    std::optional<QString> selectedSnippetID;
    QString searchText;
    QStringList frozenSnippetOrder;
    bool showDeleteConfirmation = false;
    std::optional<QString> snippetIDToDelete;
    std::optional<QString> newlyCreatedSnippetID;
    QMap<QString, Snippet> unsavedEdits;
    std::optional<ExportData> pendingImport;
    std::optional<ConflictDetectionResult> conflictDetectionResult;
    bool showImportConflictDialog = false;
    ConflictResolutionMode selectedConflictResolutionMode = ConflictResolutionMode::smartUpdate;
    std::optional<ImportResult> importResult;

    [[nodiscard]] QList<Snippet> effectiveSnippets() const;
    [[nodiscard]] std::optional<Snippet> effectiveSnippet(const QString& id) const;
    [[nodiscard]] QList<Snippet> filteredSnippets() const;
    [[nodiscard]] qsizetype snippetCount(const QString& name) const;
    QStringList collections();

    void setSearchText(const QString& text);
    void setSelectedCollection(const std::optional<QString>& name);
    void selectCollection(const std::optional<QString>& name);
    void selectUnsaved();
    void moveSelection(int by);
    void loadSnippets();
    void refreshData();
    void handleExternalDataChange();
    void saveAllData();
    void createSnippet();
    void duplicateSnippet(const QString& id, const QString& newTitle);
    void updateSnippet(const Snippet& snippet);
    void incrementUsage(const QString& id);
    void moveSnippets(const std::set<qsizetype>& offsets, qsizetype target, bool persist);
    void requestDelete(const QString& id);
    void confirmDelete();
    void setUnsavedEdit(const Snippet& snippet);
    void clearUnsavedEdit(const QString& id);
    void saveAllUnsavedEdits();
    [[nodiscard]] bool isCollectionNameAvailable(const QString& name) const;
    bool createEmptyCollection(const QString& name);
    void renameCollection(const QString& oldName, const QString& newName);
    void deleteCollection(const QString& name);
    void moveCollections(const std::set<qsizetype>& offsets, qsizetype target);
    void handleImport(const ExportData& file);
    void confirmConflictResolution();
    void cancelImport();

private:
    bool isSaveGood();
    void performImport(const ConflictDetectionResult& found, ConflictResolutionMode mode);
    void appendImported(const Snippet& imported, const QString& title);
    void ensureCollectionIsModelled(const QString& name);
    void refreshSnippetOrder();
    void migrateSnippetDisplayOrderIfNeeded();
    void ensureCollectionExists(const QString& name);
    void insert(SnippetFields fields);
    [[nodiscard]] qsizetype find(const QString& id) const;
    [[nodiscard]] qint64 nextNumber(const QString& collection) const;

    LibraryParts& with;
    QObject owner; ///< of what is delayed
};

} // namespace vellumry::test
