#pragma once

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <vector>

class QAction;
class QKeySequence;
class QMenu;

namespace vellumry {

class ApplicationWindows;
class NotificationCenter;
class SettingsService;

/// The commands of the main menu. They act by announcements, so they need no window, and all
/// windows share them. Main thread only.
class AppCommands : public QObject {
    Q_OBJECT

public:
    /// All outlive the commands.
    struct Dependencies {
        ApplicationWindows& windows;
        NotificationCenter& notifications;
        SettingsService& settings;
        std::function<void()> showSettings;
        std::function<void()> terminate; ///< asks first whether the program may end
        std::function<void()> toggleSidebar;
    };

    explicit AppCommands(Dependencies dependencies, QObject* parent = nullptr);
    ~AppCommands() override;

    /// The menus, the application's own first; owned by the commands.
    [[nodiscard]] QList<QMenu*> menus() const;
    /// Every command, for the windows in which its shortcut is to work.
    [[nodiscard]] QList<QAction*> actions() const;

private:
    QMenu& addMenu(const QString& title);
    QAction& add(QMenu& menu, const QString& title, const QKeySequence& shortcut,
                 std::function<void()> action);

    Dependencies services;
    std::vector<std::unique_ptr<QMenu>> ownMenus;
};

} // namespace vellumry
