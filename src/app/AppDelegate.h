#pragma once

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

namespace vellumry {

class ClipboardServiceProtocol;
class CommandPaletteView;
class CommandPaletteViewModel;
class HotkeyServiceProtocol;
class KeyablePanel;
class MainWindow;
class NotificationCenter;
class PanelActivation;
class RandomPasswordService;
class SearchServiceProtocol;
class SettingsService;
class StorageServiceProtocol;
class ToastWindow;

namespace hotkey {
class HotKeyBackend;
}

/// Owns the palette, the toast and the main window, and joins them with the hot key and the
/// announcements of the other parts. Main thread only.
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
        Scheduler& scheduler;
        const Clock& clock;
        std::function<QColor(const QString& collection)> collectionColor;
        std::function<QString()> libraryFolderName; ///< for people
        std::function<std::chrono::duration<double>()> systemUptime;
        std::function<void()> startFileWatching; ///< of the store
    };

    explicit AppDelegate(const Dependencies& dependencies, QObject* parent = nullptr);
    ~AppDelegate() override;

    /// The start: file watching, palette, hot key, observers, in this order.
    void applicationDidFinishLaunching();

    /// Builds the palette's panel, hidden.
    void setupPalette();
    /// Puts the library's rows in order and makes the palette's window, so that the first press
    /// need not. Does nothing while the palette is there.
    void preparePalette();

    /// Shows the palette, or hides it when it is there.
    void togglePalette();

    /// Shows a short message where the palette is.
    void showQuickSearchToast(const QString& text);

    /// Brings the main window up. Requests within 0.3 s of one another are one request.
    void openOrCreateMainWindow();

    [[nodiscard]] KeyablePanel* palettePanel() const { return paletteWindow.get(); }
    [[nodiscard]] CommandPaletteViewModel* paletteModel() const { return paletteViewModel.get(); }
    [[nodiscard]] CommandPaletteView* paletteContents() const { return paletteView; }
    [[nodiscard]] ToastWindow* toast() const;
    [[nodiscard]] MainWindow* mainWindow() const { return mainWindowRef.get(); }
    [[nodiscard]] bool isPaletteShown() const { return isPalettePresented; }

private:
    void setupHotkey();
    void reregisterHotkey(const HotkeyConfig& config);
    void registerObservers();
    void setPalettePresented(bool isPresented);
    void hidePalette();
    void paletteResignedKey();
    void resetOpeningFlag();

    Dependencies services;
    std::unique_ptr<CommandPaletteViewModel> paletteViewModel;
    std::unique_ptr<KeyablePanel> paletteWindow;
    CommandPaletteView* paletteView = nullptr; ///< owned by the panel
    bool isPalettePresented = false;
    unsigned showCount = 0; ///< how often the palette was raised
    QPointer<ToastWindow> toastWindow;
    std::unique_ptr<MainWindow> mainWindowRef;
    bool isOpeningMainWindow = false;
};

} // namespace vellumry
