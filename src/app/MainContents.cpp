#include "app/MainContents.h"

#include "app/DependencyContainer.h"
#include "app/LaunchState.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "platform/FileViewer.h"
#include "settings/CategoryColorService.h"
#include "settings/SettingsService.h"
#include "storage/StorageLocationManager.h"
#include "views/common/PillToast.h"
#include "views/sidebar/CollectionSidebarView.h"
#include "views/window/MainContentView.h"
#include "views/window/QuitAlert.h"

#include <QDesktopServices>
#include <QUrl>

#include <utility>

namespace vellumry {

MainContents::MainContents(Dependencies dependencies, QObject* parent)
    : QObject(parent), with(std::move(dependencies))
{
}

MainContents::~MainContents() = default;

Theme& MainContents::theme()
{
    if (!ownTheme) {
        SettingsService& settings = with.container.settings();
        ownTheme = std::make_unique<Theme>(settings.colorScheme());
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
         .makeEditor = [](const SnippetEditorRequest&, QWidget* parent) -> QWidget* {
             return new QWidget(parent);
         },
         .currentLocation = [] { return StorageLocationManager::shared().currentLocation(); },
         .openExternally = [this](const QUrl& url) { openExternally(url); }});
    connect(view, &MainContentView::settingsRequested, this, with.showSettings);
    return view;
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
                view->toast().present(QStringLiteral("xmark.circle.fill"), reason);
        });
}

void MainContents::toggleSidebar()
{
    if (view)
        view->sidebar().setVisible(!view->sidebar().isVisible());
}

std::optional<qsizetype> MainContents::ask(const QuitQuestion& question)
{
    return view ? askBeforeQuit(view->sheets(), theme(), question) : std::nullopt;
}

} // namespace vellumry
