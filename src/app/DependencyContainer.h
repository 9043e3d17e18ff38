#pragma once

#include <memory>

namespace vellumry {

class Appearance;
class ClipboardServiceProtocol;
class CollectionFileStorageService;
class FileChooser;
class FileViewer;
class FuzzySearchService;
class HotkeyConflictChecker;
class HotkeyService;
class LoginItem;
class Pasteboard;
class SearchServiceProtocol;
class SettingsService;
class SnippetListViewModel;
class StorageServiceProtocol;

/// The services of the program. Each slot is filled when it is first read and kept for the life
/// of the process. Main thread only, but for the construction of shared().
class DependencyContainer {
public:
    [[nodiscard]] static DependencyContainer& shared();

    DependencyContainer();
    ~DependencyContainer();
    DependencyContainer(const DependencyContainer&) = delete;
    DependencyContainer& operator=(const DependencyContainer&) = delete;

    [[nodiscard]] CollectionFileStorageService& collectionFileStorageService();
    /// The same object, seen through the protocol.
    [[nodiscard]] StorageServiceProtocol& storageService();
    [[nodiscard]] Pasteboard& systemPasteboard();
    [[nodiscard]] ClipboardServiceProtocol& clipboardService();
    [[nodiscard]] SearchServiceProtocol& searchService();
    [[nodiscard]] HotkeyService& hotkeyService();
    [[nodiscard]] HotkeyConflictChecker& hotkeyConflictChecker();
    [[nodiscard]] SettingsService& settings();
    [[nodiscard]] FileViewer& fileViewer();
    [[nodiscard]] FileChooser& fileChooser();
    /// Of the main window. It searches with a service of its own: lists of one collection would
    /// drive the prepared text of the whole library out of the palette's.
    [[nodiscard]] SnippetListViewModel& mainSnippetListViewModel();

    /// The search service as what it is, for preparing it ahead of the first query.
    [[nodiscard]] FuzzySearchService& fuzzySearchService();

private:
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<ClipboardServiceProtocol> clipboard;
    std::unique_ptr<FuzzySearchService> search;
    std::unique_ptr<HotkeyService> hotkey;
    std::unique_ptr<HotkeyConflictChecker> conflictChecker;
    std::unique_ptr<FileViewer> viewer;
    std::unique_ptr<FileChooser> chooser;
    std::unique_ptr<Appearance> appearance;
    std::unique_ptr<LoginItem> loginItem;
    std::unique_ptr<SettingsService> settingsService;
    std::unique_ptr<FuzzySearchService> listSearch;
    std::unique_ptr<SnippetListViewModel> mainList;
};

} // namespace vellumry
