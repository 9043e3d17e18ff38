#include "app/DependencyContainer.h"

#include "library/SnippetListViewModel.h"
#include "notifications/NotificationCenter.h"
#include "palette/ClipboardService.h"
#include "palette/FuzzySearchService.h"
#include "platform/linux/ClipboardPasteboard.h"
#include "settings/CategoryColorService.h"
#include "settings/HotkeyService.h"
#include "settings/SettingsService.h"
#include "storage/CollectionFileStorageService.h"

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

ClipboardServiceProtocol& DependencyContainer::clipboardService()
{
    if (!clipboard) {
        pasteboard = std::make_unique<ClipboardPasteboard>();
        clipboard = std::make_unique<ClipboardService>(*pasteboard);
    }
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

SettingsService& DependencyContainer::settings()
{
    if (!settingsService)
        settingsService = std::make_unique<SettingsService>(SettingsService::Dependencies{
            PreferencesStore::standard(), hotkeyService(), NotificationCenter::defaultCenter()});
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
