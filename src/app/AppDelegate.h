#pragma once

#include "app/MainWindowKeeper.h"
#include "core/Date.h"
#include "core/Scheduler.h"
#include "models/HotkeyConfig.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace vellumry {

class ClipboardServiceProtocol;
class CommandPaletteView;
class CommandPaletteViewModel;
class HotkeyServiceProtocol;
class KeyablePanel;
class MenuBarService;
class NotificationCenter;
class PanelActivation;
class RandomPasswordService;
class SearchServiceProtocol;
class SettingsService;
class SnippetListViewModel;
class StatusArea;
class StorageServiceProtocol;
class Theme;
class ToastWindow;

/// Owns the palette, the toast, the status item and what is known of the main window, and joins
/// them with the hot key and the announcements of the other parts. Main thread only.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    /// What the delegate works with; all outlive it.
    struct Dependencies {
        StorageServiceProtocol& storageService;
        SearchServiceProtocol& searchService;
        ClipboardServiceProtocol& clipboardService;
        const RandomPasswordService& passwordService;
        HotkeyServiceProtocol& hotkeyService;
        SettingsService& settings;
        NotificationCenter& notifications;
        PanelActivation& panelActivation;
        ApplicationWindows& windows;
        StatusArea& statusArea;
        Scheduler& scheduler;
        const Clock& clock;
        const Theme& theme;
        std::function<QColor(const QString& collection)> collectionColor;
        std::function<std::chrono::duration<double>()> systemUptime;
        std::function<void()> startFileWatching; ///< of the store
        /// Of the main window; asked for only when it is needed.
        std::function<SnippetListViewModel&()> mainSnippetListViewModel;
        std::function<bool()> applicationShouldTerminate; ///< false keeps the program
        std::function<void()> applicationWillTerminate;
        std::function<void()> endProcess;
    };

    explicit AppDelegate(const Dependencies& dependencies, QObject* parent = nullptr);
    ~AppDelegate() override;

    /// The start: file watching, status item, palette, hot key, main window, observers, in this
    /// order. The main window is made by others and may come up to 1.5 s later.
    void applicationDidFinishLaunching();

    /// The program has the keyboard again: what fills its key window gets it.
    void applicationDidBecomeActive();

    /// The person started the program, or asked for it, once more.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);

    /// Ends the program, unless applicationShouldTerminate says no. Every way to the end goes
    /// through here.
    void terminate();

    /// Builds the palette's panel, hidden.
    void setupPalette();
    /// Puts the library's rows in order and makes the palette's window, so that the first press
    /// need not. Does nothing while the palette is there.
    void preparePalette();

    /// Shows the palette, or hides it when it is there.
    void togglePalette();

    /// Shows a short message where the palette is.
    void showQuickSearchToast(const QString& text);

    /// Brings the main window up.
    void openOrCreateMainWindow();

    /// Brings the main window up with this snippet selected.
    void openSnippetInApp(const std::optional<QString>& snippetID);

    [[nodiscard]] KeyablePanel* palettePanel() const { return paletteWindow.get(); }
    [[nodiscard]] CommandPaletteViewModel* paletteModel() const { return paletteViewModel.get(); }
    [[nodiscard]] CommandPaletteView* paletteContents() const { return paletteView; }
    [[nodiscard]] ToastWindow* toast() const;
    [[nodiscard]] MainWindowKeeper& mainWindowKeeper() { return windowKeeper; }
    [[nodiscard]] MenuBarService* menuBar() const { return menuBarService.get(); }
    [[nodiscard]] bool isPaletteShown() const { return isPalettePresented; }

private:
    void setupHotkey();
    void reregisterHotkey(const HotkeyConfig& config);
    void registerObservers();
    void setPalettePresented(bool isPresented);
    void hidePalette();
    void paletteResignedKey();
    void selectSnippet(const QString& snippetID);

    Dependencies services;
    MainWindowKeeper windowKeeper;
    std::unique_ptr<MenuBarService> menuBarService;
    std::unique_ptr<CommandPaletteViewModel> paletteViewModel;
    std::unique_ptr<KeyablePanel> paletteWindow;
    CommandPaletteView* paletteView = nullptr; ///< owned by the panel
    bool isPalettePresented = false;
    unsigned showCount = 0; ///< how often the palette was raised
    QPointer<ToastWindow> toastWindow;
};

} // namespace vellumry
