#include "app/SettingsContents.h"

#include "app/DependencyContainer.h"
#include "core/BackgroundRunner.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "platform/FileSystem.h"
#include "platform/FileViewer.h"
#include "settings/HotkeyService.h"
#include "storage/CollectionFileStorageService.h"
#include "storage/StorageLocationManager.h"
#include "sync/CloudDriveDetectionService.h"
#include "sync/ConflictDetectionService.h"
#include "sync/ConflictResolution.h"
#include "views/common/Button.h"
#include "views/common/SheetHost.h"
#include "views/settings/SettingsView.h"
#include "views/sheets/ChangeLocationSheet.h"
#include "views/sheets/ConflictResolutionSheet.h"
#include "views/sheets/FolderDialog.h"

#include <QDir>
#include <QPointer>

#include <memory>
#include <utility>

namespace vellumry {

namespace {

/// Puts a sheet up that takes itself away.
template <typename Sheet>
void presentSheet(SheetHost& sheets, typename Sheet::Dependencies dependencies)
{
    const auto shown = std::make_shared<QPointer<Sheet>>();
    dependencies.onDismiss = [host = QPointer<SheetHost>(&sheets), shown] {
        if (host && *shown)
            host->dismiss(*shown);
    };
    auto* const sheet = new Sheet(dependencies);
    *shown = sheet;
    sheets.present(sheet,
                   {.onCancel = [sheet] { sheet->cancel(); }, .firstFocus = sheet->firstFocus()});
}

} // namespace

SettingsContents::SettingsContents(Dependencies dependencies, QObject* parent)
    : QObject(parent), with(std::move(dependencies))
{
}

QWidget* SettingsContents::make()
{
    SettingsView* const view = makeView();
    connectSheets(*view, *new SheetHost(with.theme(), view));
    return view;
}

void SettingsContents::present(SheetHost& sheets)
{
    SettingsView* const view = makeView();
    connectSheets(*view, sheets);
    const auto dismiss = [view, host = QPointer<SheetHost>(&sheets)] {
        if (host)
            host->dismiss(view);
    };
    connect(view, &SettingsView::dismissed, view, dismiss);
    sheets.present(view, {.onCancel = dismiss, .firstFocus = view->doneButton()});
}

SettingsView* SettingsContents::makeView()
{
    return new SettingsView({.settings = with.container.settings(),
                             .hotkeyService = with.container.hotkeyService(),
                             .conflictChecker = with.container.hotkeyConflictChecker(),
                             .locationManager = StorageLocationManager::shared(),
                             .cloudDriveService = CloudDriveDetectionService::shared(),
                             .conflictDetection = ConflictDetectionService::shared(),
                             .collectionStorage = with.container.collectionFileStorageService(),
                             .notifications = NotificationCenter::defaultCenter(),
                             .fileViewer = with.container.fileViewer(),
                             .scheduler = EventLoopScheduler::shared(),
                             .theme = with.theme()});
}

void SettingsContents::connectSheets(SettingsView& view, SheetHost& sheets)
{
    connect(&view, &SettingsView::changeLocationRequested, &view,
            [this, &sheets] { showChangeLocation(sheets); });
    connect(&view, &SettingsView::resolveConflictsRequested, &view,
            [this, &sheets](const QList<ConflictFile>& found) { showConflicts(sheets, found); });
}

void SettingsContents::showChangeLocation(SheetHost& sheets)
{
    DependencyContainer& container = with.container;
    presentSheet<ChangeLocationSheet>(
        sheets,
        {.theme = with.theme(),
         .scheduler = EventLoopScheduler::shared(),
         .choice = {.cloudDriveService = CloudDriveDetectionService::shared(),
                    .change = {
                        .locations = StorageLocationManager::shared(),
                        .files = FileSystem::local(),
                        .notifications = NotificationCenter::defaultCenter(),
                        .scheduler = EventLoopScheduler::shared(),
                        .background = ThreadRunner::shared(),
                        .clock = SystemClock::shared(),
                        .clearCacheAndReload =
                            [&container] {
                                container.collectionFileStorageService().clearCacheAndReload();
                            },
                        .refreshData =
                            [&container] { container.mainSnippetListViewModel().refreshData(); }},
                    .pickFolder = FolderDialog::over(*sheets.parentWidget())},
         .homeFolder = QDir::homePath(),
         .onDismiss = {}});
}

void SettingsContents::showConflicts(SheetHost& sheets, const QList<ConflictFile>& found)
{
    presentSheet<ConflictResolutionSheet>(
        sheets, {.theme = with.theme(),
                 .scheduler = EventLoopScheduler::shared(),
                 .conflicts = found,
                 .onResolve =
                     [this](ConflictMergeStrategy strategy) {
                         ConflictResolution(ConflictDetectionService::shared(),
                                            with.container.collectionFileStorageService())
                             .resolve(strategy);
                     },
                 .fileViewer = with.container.fileViewer(),
                 .onDismiss = {}});
}

} // namespace vellumry
