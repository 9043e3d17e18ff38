#include "views/window/BackupDialogs.h"

#include "library/SnippetListViewModel.h"
#include "settings/CategoryColorService.h"
#include "views/common/SheetHost.h"
#include "views/sheets/ExportCollectionPickerView.h"
#include "views/sheets/ImportConflictView.h"
#include "views/window/MainContentView.h"

#include <QDir>
#include <QFileDialog>
#include <QUrl>

#include <optional>
#include <utility>

namespace vellumry {

namespace {

/// What came of a dialog that was accepted.
std::optional<PickedFile> pickedFile(const QFileDialog& dialog)
{
    const QList<QUrl> places = dialog.selectedUrls();
    if (places.isEmpty())
        return std::nullopt;
    if (!places.constFirst().isLocalFile())
        return PickedFile{.path = {},
                          .error = QStringLiteral("\"%1\" is not a file of this computer.")
                                       .arg(places.constFirst().toDisplayString())};
    return PickedFile{.path = places.constFirst().toLocalFile(), .error = std::nullopt};
}

} // namespace

BackupDialogs::BackupDialogs(Dependencies dependencies, QObject* parent)
    : QObject(parent), with(std::move(dependencies))
{
    SnippetListViewModel& model = with.viewModel;
    using M = SnippetListViewModel;
    connect(&model, &M::showImportPickerChanged, this, &BackupDialogs::showImportPicker);
    connect(&model, &M::showImportConflictDialogChanged, this, &BackupDialogs::showConflicts);
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

QFileDialog* BackupDialogs::makeFileDialog(const QString& title)
{
    auto* dialog = new QFileDialog(&with.contents, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setMimeTypeFilters({QStringLiteral("application/json")});
    dialog->setDirectory(QDir::home());
    return dialog;
}

void BackupDialogs::showImportPicker()
{
    if (!with.viewModel.showImportPicker()) {
        if (importDialog)
            importDialog->reject();
        return;
    }
    importDialog = makeFileDialog(QStringLiteral("Import from JSON"));
    importDialog->setFileMode(QFileDialog::ExistingFile);
    connect(importDialog, &QDialog::finished, this, [this, dialog = importDialog](int result) {
        importDialog = nullptr;
        with.viewModel.setShowImportPicker(false);
        if (const auto file = result == QDialog::Accepted ? pickedFile(*dialog) : std::nullopt)
            with.viewModel.handleImport(*file);
    });
    importDialog->open();
}

void BackupDialogs::showConflicts()
{
    const auto& found = with.viewModel.conflictDetectionResult();
    if (!with.viewModel.showImportConflictDialog() || !found) {
        if (conflicts)
            with.contents.sheets().dismiss(std::exchange(conflicts, nullptr));
        return;
    }
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
        if (exportDialog)
            exportDialog->reject();
        return;
    }
    exportDialog = makeFileDialog(QStringLiteral("Export to JSON"));
    exportDialog->setAcceptMode(QFileDialog::AcceptSave);
    exportDialog->setFileMode(QFileDialog::AnyFile);
    exportDialog->setDefaultSuffix(QStringLiteral("json"));
    exportDialog->selectFile(with.defaultExportFilename());
    connect(exportDialog, &QDialog::finished, this, [this, dialog = exportDialog](int result) {
        exportDialog = nullptr;
        with.viewModel.setShowExportPicker(false);
        const auto file = result == QDialog::Accepted ? pickedFile(*dialog) : std::nullopt;
        if (!file)
            return;
        if (file->error)
            SnippetListViewModel::handleExport(*file);
        else
            with.viewModel.exportTo(file->path);
    });
    exportDialog->open();
}

void BackupDialogs::showResult()
{
    if (const auto& result = with.viewModel.importResult())
        with.contents.showImportResult(result->symbol(), result->text());
    else
        with.contents.hideImportResult();
}

} // namespace vellumry
