#include "app/DependencyContainer.h"

#include "core/BackgroundRunner.h"
#include "hotkey/HotKeysController.h"
#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "palette/ClipboardService.h"
#include "palette/FuzzySearchService.h"
#include "platform/FileSystem.h"
#include "platform/linux/ClipboardPasteboard.h"
#include "platform/linux/FreedesktopFileViewer.h"
#include "platform/linux/PortalAppearance.h"
#include "platform/linux/PortalFileChooser.h"
#include "platform/linux/XdgAutostartLoginItem.h"
#include "settings/CategoryColorService.h"
#include "settings/HotkeyConflictChecker.h"
#include "settings/HotkeyService.h"
#include "settings/SettingsService.h"
#include "storage/CollectionFileStorageService.h"

#include <QGuiApplication>
#include <QPalette>

namespace vellumry {

DependencyContainer::DependencyContainer() = default;
DependencyContainer::~DependencyContainer() = default;

DependencyContainer& DependencyContainer::shared()
{
    static DependencyContainer container;
    return container;
}

CollectionFileStorageService& DependencyContainer::collectionFileStorageService()
{
    return CollectionFileStorageService::shared();
}

StorageServiceProtocol& DependencyContainer::storageService()
{
    return collectionFileStorageService();
}

Pasteboard& DependencyContainer::systemPasteboard()
{
    if (!pasteboard)
        pasteboard = std::make_unique<ClipboardPasteboard>();
    return *pasteboard;
}

ClipboardServiceProtocol& DependencyContainer::clipboardService()
{
    if (!clipboard)
        clipboard = std::make_unique<ClipboardService>(systemPasteboard());
    return *clipboard;
}

SearchServiceProtocol& DependencyContainer::searchService()
{
    return fuzzySearchService();
}

FuzzySearchService& DependencyContainer::fuzzySearchService()
{
    if (!search)
        search = std::make_unique<FuzzySearchService>();
    return *search;
}

HotkeyService& DependencyContainer::hotkeyService()
{
    // The end of a pause asks for the setting of that moment, hence not before both stand.
    if (!hotkey)
        hotkey = std::make_unique<HotkeyService>([this] { return settings().quickSearchHotkey(); });
    return *hotkey;
}

HotkeyConflictChecker& DependencyContainer::hotkeyConflictChecker()
{
    if (!conflictChecker)
        conflictChecker =
            std::make_unique<HotkeyConflictChecker>(hotkey::HotKeysController::backend());
    return *conflictChecker;
}

FileViewer& DependencyContainer::fileViewer()
{
    if (!viewer)
        viewer = std::make_unique<FreedesktopFileViewer>(ThreadRunner::shared());
    return *viewer;
}

FileChooser& DependencyContainer::fileChooser()
{
    if (!chooser)
        chooser = std::make_unique<PortalFileChooser>(ThreadRunner::shared());
    return *chooser;
}

SettingsService& DependencyContainer::settings()
{
    if (!settingsService) {
        appearance = std::make_unique<PortalAppearance>(colorSchemeOf(QGuiApplication::palette()),
                                                        ThreadRunner::shared());
        loginItem = std::make_unique<XdgAutostartLoginItem>(
            FileSystem::local(), XdgAutostartLoginItem::userFolder(),
            QCoreApplication::applicationFilePath());
        settingsService = std::make_unique<SettingsService>(
            SettingsService::Dependencies{.preferences = PreferencesStore::standard(),
                                          .hotkeyService = hotkeyService(),
                                          .notifications = NotificationCenter::defaultCenter(),
                                          .appearance = *appearance,
                                          .scheduler = EventLoopScheduler::shared(),
                                          .loginItem = loginItem.get()});
    }
    return *settingsService;
}

SnippetListViewModel& DependencyContainer::mainSnippetListViewModel()
{
    if (!mainList) {
        listSearch = std::make_unique<FuzzySearchService>();
        mainList = std::make_unique<SnippetListViewModel>(
            SnippetListViewModel::Dependencies{.storageService = storageService(),
                                               .searchService = *listSearch,
                                               .colors = CategoryColorService::shared(),
                                               .notifications = NotificationCenter::defaultCenter(),
                                               .scheduler = EventLoopScheduler::shared(),
                                               .clock = SystemClock::shared()});
    }
    return *mainList;
}

} // namespace vellumry
