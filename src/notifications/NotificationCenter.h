#pragma once

#include "models/HotkeyConfig.h"
#include "models/VellumryData.h"

#include <QObject>
#include <QString>

#include <optional>

namespace vellumry {

/// The one table of announcements between parts that must not know each other. Each signal is
/// emitted on the thread of its poster, which is the main thread unless told otherwise; receivers
/// live on the main thread and are connected with themselves as context, so that the connection
/// ends with them.
class NotificationCenter : public QObject {
    Q_OBJECT

public:
    /// The one that the program uses.
    [[nodiscard]] static NotificationCenter& defaultCenter();

Q_SIGNALS:
    /// Show the loading overlay with this line; without a text the last line stays.
    /// Posted by the first launch and by a change of the data folder.
    void showLoadingOverlay(const std::optional<QString>& text);
    /// Take the loading overlay away. Posted by the same.
    void hideLoadingOverlay();

    /// The data folder is another one from now on. Posted by StorageLocationManager, on the thread
    /// that set the location; observed by CollectionFileStorageService.
    void storageLocationDidChange(const QString& newLocation);
    /// A save ended well. Posted by CollectionFileStorageService; announced only.
    void syncDataDidSave();
    /// The library was read anew after a change from outside. Posted by
    /// CollectionFileStorageService; observed by the list model.
    void syncDataDidChange(const vellumry::VellumryData& data);

    /// The person chose another hot key. Posted by SettingsService; observed by AppDelegate, which
    /// registers it, and by the status menu, which shows it.
    void hotkeyDidChange(const vellumry::HotkeyConfig& config);
    /// Show or hide the palette. Posted by menus; observed by AppDelegate.
    void togglePalette();
    /// Close the palette if it is open. Posted by menus; observed by AppDelegate.
    void dismissQuickSearch();
    /// Show the toast; without a text it says "Copied to Clipboard". Posted by
    /// CommandPaletteViewModel; observed by AppDelegate.
    void quickSearchShowToast(const std::optional<QString>& text);
    /// Bring the main window up. Posted by the palette and by menus; observed by AppDelegate.
    void openMainWindow();
    /// Bring the main window up with this snippet selected. Posted by CommandPaletteViewModel;
    /// observed by AppDelegate.
    void openSnippetInApp(const std::optional<QString>& snippetID);
    /// Snippets changed on another way than the main window's. Posted by CommandPaletteViewModel;
    /// observed by the list model.
    void snippetDataChanged();
    /// A collection was renamed. Posted by the list model; observed by the editor.
    void collectionsDidChange(const QString& oldName, const QString& newName);

    /// Commands of the menus, observed by the main window.
    void createSnippet();
    /// Announced only: nobody answers, on purpose.
    void performSave();
    void importSnippets();
    void exportSnippets();
    void revealDataInFinder();

    /// Moves of the keyboard focus between the columns of the main window.
    void focusSnippetSearch();
    void focusCategorySidebar();
    void focusSnippetList();
    void focusSnippetTitle();
    void focusSnippetEditor();
};

} // namespace vellumry
