#pragma once

#include "core/Scheduler.h"
#include "views/common/Theme.h"

#include <QObject>
#include <QPointer>

#include <functional>

namespace vellumry {

class CategoryColorService;
class ExportCollectionPickerView;
class FileDialog;
class ImportConflictView;
class MainContentView;
class SnippetListViewModel;

/// The dialogs, sheets and results of import and export over the main window's contents: shown and
/// taken away as the list model says, with each answer handed back to it. Main thread only.
class BackupDialogs : public QObject {
    Q_OBJECT

public:
    /// All outlive the object.
    struct Dependencies {
        MainContentView& contents;
        SnippetListViewModel& viewModel;
        const CategoryColorService& colors;
        Scheduler& scheduler;
        const Theme& theme;
        std::function<QString()> defaultExportFilename;
    };

    explicit BackupDialogs(Dependencies dependencies, QObject* parent = nullptr);

private:
    void showImportPicker();
    void showConflicts();
    void showCollectionPicker();
    void showExportPicker();
    void showResult();

    Dependencies with;
    QPointer<FileDialog> importDialog;
    QPointer<FileDialog> exportDialog;
    QPointer<ImportConflictView> conflicts;
    QPointer<ExportCollectionPickerView> collections;
};

} // namespace vellumry
