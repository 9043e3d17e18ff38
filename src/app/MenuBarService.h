#pragma once

#include "models/HotkeyConfig.h"
#include "platform/ApplicationWindows.h"

#include <QKeySequence>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class QAction;
class QIcon;
class QMenu;
class QSystemTrayIcon;

namespace vellumry {

class HotkeyServiceProtocol;
class NotificationCenter;
class Scheduler;
class SettingsService;
class StatusArea;

/// Owns the status item with its menu, by which the program is reached while it has no window. The
/// item is made when the desktop has a place for it. Main thread only.
class MenuBarService : public QObject {
    Q_OBJECT

public:
    /// What the service works with; all outlive it.
    struct Dependencies {
        ApplicationWindows& windows;
        StatusArea& statusArea;
        NotificationCenter& notifications;
        HotkeyServiceProtocol& hotkeyService;
        SettingsService& settings;
        Scheduler& scheduler;
        std::function<void()> terminate; ///< asks first whether the program may end
        QString logoFile = QStringLiteral(":/icons/SidebarLogo.svg");
    };

    /// Waits for the status area; observes the hot key.
    explicit MenuBarService(Dependencies dependencies, QObject* parent = nullptr);
    ~MenuBarService() override;

    /// Brings up whatever can pass for the main window, or else asks for one.
    void openMainWindow();
    /// Brings the main window up with a new snippet.
    void createSnippet();
    /// Shows the settings. Until the settings view has gone, the hot key is paused.
    void openSettings();
    void quitApp();

    /// Null before there is a status area.
    [[nodiscard]] QSystemTrayIcon* item() const { return statusItem.get(); }
    [[nodiscard]] QMenu* menu() const { return statusMenu.get(); }

private:
    void setupMenuBar();
    [[nodiscard]] std::unique_ptr<QMenu> createMenu();
    [[nodiscard]] QIcon itemIcon() const;
    void hotkeyDidChange(const HotkeyConfig& config);
    [[nodiscard]] QKeySequence searchKey(const HotkeyConfig& config) const;

    Dependencies services;
    std::unique_ptr<QMenu> statusMenu;
    std::unique_ptr<QSystemTrayIcon> statusItem;
    QAction* searchMenuItem = nullptr; ///< shows the hot key; owned by the menu
};

} // namespace vellumry
