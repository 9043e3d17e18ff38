#pragma once

#include "platform/ApplicationWindows.h"
#include "platform/linux/GlobalMenu.h"

#include <QPointer>

#include <functional>

class QWidget;

namespace vellumry {

class AppCommands;
class ContentsGround;
class MainWindow;
class PanelActivation;
class Scheduler;
class SettingsWindow;

/// The program's windows, which are Qt's top-level widgets, and the window group that makes the
/// main window. Nothing of a window is built before it is asked for. Main thread only.
class QtApplicationWindows final : public ApplicationWindows {
    Q_OBJECT

public:
    struct Dependencies {
        PanelActivation& activation;
        std::function<AppCommands&()> commands; ///< which outlive the windows
        Scheduler& scheduler;
        /// What stands in the main window until it has its contents.
        std::function<ContentsGround*()> makeGround;
        /// What the windows are filled with; each call makes new contents.
        std::function<QWidget*()> makeMainContents;
        std::function<QWidget*()> makeSettingsContents;
    };

    explicit QtApplicationWindows(Dependencies dependencies, QObject* parent = nullptr);
    ~QtApplicationWindows() override;

    /// Has the window group make its window, and shows it.
    void openWindowOfGroup();
    /// The same, but shows the ground of the columns first and makes the contents behind that: at
    /// the start of the program the library is still to be read. Calls back when it has contents.
    void openWindowOfGroupAtOnce(std::function<void()> whenFilled);
    /// Gives a window that still shows the ground its contents now.
    void fillWindow();

    /// Whether a window other than a panel or a passing message is on the screen.
    [[nodiscard]] bool hasVisibleWindows() const;

    [[nodiscard]] QList<ApplicationWindow*> windows() override;
    void setRegularActivationPolicy() override;
    void activateIgnoringOtherApps() override;
    [[nodiscard]] std::vector<Menu> mainMenu() override;
    ApplicationWindow& createWindow() override;
    bool postSettingsShortcut() override;
    void showSettingsWindow() override;

Q_SIGNALS:
    /// The settings window has left the screen.
    void settingsWindowDidDisappear();

private:
    [[nodiscard]] MainWindow& makeWindowOfGroup();
    void add(MainWindow& window);
    void fill(MainWindow& window);
    void lookForGlobalMenu();
    void giveMenuBar(MainWindow& window);
    [[nodiscard]] ApplicationWindow& handleOf(QWidget& window);

    Dependencies with;
    GlobalMenu globalMenu;
    bool isLookingForGlobalMenu = false;
    QList<QPointer<QWidget>> mainWindows;  ///< in the order of their making
    std::function<void()> fillFirstWindow; ///< while it shows the ground
    QPointer<SettingsWindow> settingsWindow;
};

} // namespace vellumry
