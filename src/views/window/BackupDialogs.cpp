#include "views/window/BackupDialogs.h"

#include "library/SnippetListViewModel.h"
#include "settings/CategoryColorService.h"
#include "views/common/FileDialog.h"
#include "views/common/SheetHost.h"
#include "views/sheets/ExportCollectionPickerView.h"
#include "views/sheets/ImportConflictView.h"
#include "views/window/MainContentView.h"

#include <optional>
#include <utility>

namespace vellumry {

namespace {

constexpr QStringView backupType = u"application/json";

} // namespace

BackupDialogs::BackupDialogs(Dependencies dependencies, QObject* parent)
    : QObject(parent), with(std::move(dependencies))
{
    SnippetListViewModel& model = with.viewModel;
    using M = SnippetListViewModel;
    connect(&model, &M::showImportPickerChanged, this, &BackupDialogs::showImportPicker);
    connect(&model, &M::showImportConflictDialogChanged, this, &BackupDialogs::showConflicts);
    // A second file may come while the conflicts of the first are shown.
    connect(&model, &M::conflictDetectionResultChanged, this, [this] {
        if (conflicts)
            showConflicts();
    });
    connect(&model, &M::selectedConflictResolutionModeChanged, this, [this] {
        if (conflicts)
            conflicts->setSelectedMode(with.viewModel.selectedConflictResolutionMode());
    });
    connect(&model, &M::showExportCollectionPickerChanged, this,
            &BackupDialogs::showCollectionPicker);
    connect(&model, &M::selectedCollectionsToExportChanged, this, [this] {
        if (collections)
            collections->setSelectedCollectionNames(with.viewModel.selectedCollectionsToExport());
    });
    connect(&model, &M::showExportPickerChanged, this, &BackupDialogs::showExportPicker);
    connect(&model, &M::importResultChanged, this, &BackupDialogs::showResult);

    const MainContentView* contents = &with.contents;
    connect(contents, &MainContentView::importRequested, this,
            [this] { with.viewModel.setShowImportPicker(true); });
    connect(contents, &MainContentView::exportRequested, this,
            [this] { with.viewModel.showExport(); });
    connect(contents, &MainContentView::exportCollectionRequested, this,
            [this](const QString& name) { with.viewModel.showExportForCollection(name); });
}

void BackupDialogs::showImportPicker()
{
    if (!with.viewModel.showImportPicker()) {
        delete importDialog;
        return;
    }
    importDialog = FileDialog::show(with.contents,
                                    {.kind = FileChooser::Kind::openFile,
                                     .title = QStringLiteral("Import from JSON"),
                                     .mimeType = backupType.toString()},
                                    [this](const std::optional<PickedFile>& file) {
                                        importDialog = nullptr;
                                        with.viewModel.setShowImportPicker(false);
                                        if (file)
                                            with.viewModel.handleImport(*file);
                                    });
}

void BackupDialogs::showConflicts()
{
    if (conflicts)
        with.contents.sheets().dismiss(std::exchange(conflicts, nullptr));
    const auto& found = with.viewModel.conflictDetectionResult();
    if (!with.viewModel.showImportConflictDialog() || !found)
        return;
    SnippetListViewModel& model = with.viewModel;
    conflicts =
        new ImportConflictView({.theme = with.theme,
                                .scheduler = with.scheduler,
                                .conflictResult = *found,
                                .selectedMode = model.selectedConflictResolutionMode(),
                                .onModeChange =
                                    [&model](ConflictResolutionMode mode) {
                                        model.setSelectedConflictResolutionMode(mode);
                                    },
                                .onConfirm = [&model] { model.confirmConflictResolution(); },
                                .onCancel = [&model] { model.cancelConflictResolution(); }});
    with.contents.sheets().present(conflicts,
                                   {.onCancel = [view = conflicts.data()] { view->cancel(); },
                                    .firstFocus = conflicts->firstFocus()});
}

void BackupDialogs::showCollectionPicker()
{
    if (!with.viewModel.showExportCollectionPicker()) {
        if (collections)
            with.contents.sheets().dismiss(std::exchange(collections, nullptr));
        return;
    }
    SnippetListViewModel& model = with.viewModel;
    collections = new ExportCollectionPickerView(
        {.theme = with.theme,
         .scheduler = with.scheduler,
         .collections = model.collectionModels(),
         .snippetCountProvider = [&model](const QString& name) { return model.snippetCount(name); },
         .colorProvider = [&colors =
                               with.colors](const QString& name) { return colors.getColor(name); },
         .selectedCollectionNames = model.selectedCollectionsToExport(),
         .onSelectionChange =
             [&model](const QSet<QString>& names) { model.setSelectedCollectionsToExport(names); },
         .onExport = [&model] { model.confirmCollectionsToExport(); },
         .onCancel = [&model] { model.cancelCollectionsToExport(); }});
    with.contents.sheets().present(collections,
                                   {.onCancel = [view = collections.data()] { view->cancel(); },
                                    .firstFocus = collections->firstFocus()});
}

void BackupDialogs::showExportPicker()
{
    if (!with.viewModel.showExportPicker()) {
        delete exportDialog;
        return;
    }
    exportDialog = FileDialog::show(with.contents,
                                    {.kind = FileChooser::Kind::saveFile,
                                     .title = QStringLiteral("Export to JSON"),
                                     .fileName = with.defaultExportFilename(),
                                     .mimeType = backupType.toString()},
                                    [this](const std::optional<PickedFile>& file) {
                                        exportDialog = nullptr;
                                        with.viewModel.setShowExportPicker(false);
                                        if (file && file->error)
                                            SnippetListViewModel::handleExport(*file);
                                        else if (file)
                                            with.viewModel.exportTo(file->path);
                                    });
}

void BackupDialogs::showResult()
{
    if (const auto& result = with.viewModel.importResult())
        with.contents.showImportResult(result->symbol(), result->text());
    else
        with.contents.hideImportResult();
}

} // namespace vellumry
