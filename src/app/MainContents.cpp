#include "app/MainContents.h"

#include "app/DependencyContainer.h"
#include "app/LaunchState.h"
#include "core/BackgroundRunner.h"
#include "library/FirstLaunch.h"
#include "library/ImportExportService.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "platform/FileSystem.h"
#include "platform/FileViewer.h"
#include "settings/CategoryColorService.h"
#include "settings/SettingsService.h"
#include "storage/CollectionFileStorageService.h"
#include "storage/StorageLocationManager.h"
#include "sync/CloudDriveDetectionService.h"
#include "views/common/PillToast.h"
#include "views/common/SheetHost.h"
#include "views/sheets/FirstLaunchView.h"
#include "views/sheets/FolderDialog.h"
#include "views/sheets/KeyboardShortcutsView.h"
#include "views/sidebar/CollectionSidebarView.h"
#include "views/window/BackupDialogs.h"
#include "views/window/LoadingOverlayView.h"
#include "views/window/MainContentView.h"
#include "views/window/QuitAlert.h"

#include <QDesktopServices>
#include <QDir>
#include <QUrl>

#include <utility>

namespace vellumry {

MainContents::MainContents(Dependencies dependencies, QObject* parent)
    : QObject(parent), with(std::move(dependencies))
{
    const LaunchState* state = &with.launchState;
    connect(state, &LaunchState::showFirstLaunchViewChanged, this,
            &MainContents::showFirstLaunchView);
    connect(state, &LaunchState::showLoadingOverlayChanged, this,
            &MainContents::showLoadingOverlay);
    connect(state, &LaunchState::loadingTextChanged, this, &MainContents::showLoadingOverlay);
}

MainContents::~MainContents() = default;

Theme& MainContents::theme()
{
    if (!ownTheme) {
        SettingsService& settings = with.container.settings();
        ownTheme = std::make_unique<Theme>(settings.colorScheme());
        ownTheme->followSystemFont();
        connect(&settings, &SettingsService::colorSchemeChanged, ownTheme.get(),
                [this, &settings] { ownTheme->setScheme(settings.colorScheme()); });
    }
    return *ownTheme;
}

QWidget* MainContents::make()
{
    SnippetListViewModel& list = with.container.mainSnippetListViewModel();
    list.loadSnippets();
    view = new MainContentView(
        {.viewModel = list,
         .colors = CategoryColorService::shared(),
         .notifications = NotificationCenter::defaultCenter(),
         .scheduler = EventLoopScheduler::shared(),
         .clock = SystemClock::shared(),
         .theme = theme(),
         .pasteboard = with.container.systemPasteboard(),
         .makeEditor = SnippetEditorView::maker(editorDependencies()),
         .currentLocation = [] { return StorageLocationManager::shared().currentLocation(); },
         .openExternally = [this](const QUrl& url) { openExternally(url); }});
    new BackupDialogs({.contents = *view,
                       .viewModel = list,
                       .colors = CategoryColorService::shared(),
                       .scheduler = EventLoopScheduler::shared(),
                       .theme = theme(),
                       .defaultExportFilename =
                           [] { return ImportExportService::shared().defaultExportFilename(); }},
                      view);
    connect(view, &MainContentView::settingsRequested, this,
            [this] { with.showSettings(view->sheets()); });
    connect(view, &MainContentView::keyboardShortcutsRequested, this,
            &MainContents::showKeyboardShortcuts);
    showFirstLaunchView();
    showLoadingOverlay();
    return view;
}

SnippetEditorView::Dependencies MainContents::editorDependencies()
{
    CollectionFileStorageService& storage = with.container.collectionFileStorageService();
    if (!savePanel)
        savePanel = std::make_unique<SaveFilePanel>(
            theme(), [this]() -> SheetHost& { return view->sheets(); });
    return {.model = {.storageService = storage,
                      .currentData = [&storage] { return storage.currentData(); },
                      .clipboardService = with.container.clipboardService(),
                      .files = FileSystem::local(),
                      .saveDialog = *savePanel,
                      .notifications = NotificationCenter::defaultCenter(),
                      .scheduler = EventLoopScheduler::shared(),
                      .clock = SystemClock::shared()},
            .theme = theme()};
}

void MainContents::showFirstLaunchView()
{
    if (!view || !with.launchState.showFirstLaunchView() || firstLaunchView)
        return;
    if (!firstLaunch) {
        firstLaunch = std::make_unique<FirstLaunch>(
            FirstLaunch::Dependencies{.locations = StorageLocationManager::shared(),
                                      .storage = with.container.collectionFileStorageService(),
                                      .list = with.container.mainSnippetListViewModel(),
                                      .notifications = NotificationCenter::defaultCenter(),
                                      .background = ThreadRunner::shared()});
    }
    firstLaunchView =
        new FirstLaunchView({.theme = theme(),
                             .scheduler = EventLoopScheduler::shared(),
                             .setup = {.cloudDriveService = CloudDriveDetectionService::shared(),
                                       .files = FileSystem::local(),
                                       .clock = SystemClock::shared(),
                                       .background = ThreadRunner::shared(),
                                       .pickFolder = FolderDialog::over(*view),
                                       .onComplete =
                                           [this](const FirstLaunchChoice& choice) {
                                               firstLaunch->handleFirstLaunchChoice(choice);
                                           }},
                             .defaultLocation = StorageLocationManager::shared().defaultLocation(),
                             .homeFolder = QDir::homePath(),
                             .onDismiss = [this] { dismissFirstLaunchView(); }});
    view->sheets().present(firstLaunchView,
                           {.onCancel = {}, .firstFocus = firstLaunchView->firstFocus()});
}

void MainContents::dismissFirstLaunchView()
{
    with.launchState.dismissFirstLaunchView();
    if (view)
        view->sheets().dismiss(firstLaunchView);
    firstLaunchView = nullptr;
}

void MainContents::showLoadingOverlay()
{
    if (!view)
        return;
    if (!with.launchState.showLoadingOverlay()) {
        if (overlay)
            view->sheets().dismiss(std::exchange(overlay, nullptr));
    } else if (!overlay) {
        overlay = new LoadingOverlayView(theme(), with.launchState.loadingText());
        view->sheets().present(overlay, {});
    } else {
        overlay->setText(with.launchState.loadingText());
    }
}

void MainContents::showKeyboardShortcuts()
{
    SheetHost& sheets = view->sheets();
    auto* const sheet =
        new KeyboardShortcutsView(theme(), EventLoopScheduler::shared(),
                                  with.container.settings().quickSearchHotkey(), [this] {
                                      if (view)
                                          view->sheets().dismiss(std::exchange(shortcuts, nullptr));
                                  });
    shortcuts = sheet;
    sheets.present(sheet,
                   {.onCancel = [sheet] { sheet->cancel(); }, .firstFocus = sheet->firstFocus()});
}

void MainContents::openExternally(const QUrl& url)
{
    if (!url.isLocalFile()) {
        QDesktopServices::openUrl(url);
        return;
    }
    with.container.fileViewer().showFolder(
        url.toLocalFile(), QPointer<QObject>(view), [this](const QString& reason) {
            if (view)
                view->toast().present(QStringLiteral("xmark"), reason);
        });
}

void MainContents::toggleSidebar()
{
    if (view)
        view->toggleSidebar();
}

std::optional<qsizetype> MainContents::ask(const QuitQuestion& question)
{
    return view ? askBeforeQuit(view->sheets(), theme(), question) : std::nullopt;
}

} // namespace vellumry
