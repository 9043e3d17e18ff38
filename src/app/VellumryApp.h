#pragma once

#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/LaunchState.h"
#include "app/MainContents.h"
#include "app/QtApplicationWindows.h"
#include "app/SettingsContents.h"
#include "library/Termination.h"
#include "platform/QuitSignals.h"
#include "platform/linux/DesktopStatusArea.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace vellumry {

class AppCommands;
class DependencyContainer;
class PanelActivation;

/// The entry value of the program: builds the parts in their order and declares the windows, their
/// commands and their contents. Needs the QApplication. Main thread only.
class VellumryApp : public QObject {
    Q_OBJECT

public:
    /// Runs the program; returns its exit status.
    static int run(int& argc, char** argv);

    VellumryApp();
    ~VellumryApp() override;

    /// Puts the hot key in force first, and then, as far as the command asks for it, shows the main
    /// window.
    void launch(StartCommand command);

    /// Does what a later start asks for; the desktop's token is for the window that comes up.
    void perform(StartCommand command, const QByteArray& activationToken = {});

private:
    [[nodiscard]] AppDelegate::Dependencies delegateDependencies();
    [[nodiscard]] AppCommands& commands();
    [[nodiscard]] Termination& termination();
    [[nodiscard]] std::optional<qsizetype> askBeforeEnd(const QuitQuestion& question);
    void sessionEnds(const std::function<bool()>& mayAsk, const std::function<void()>& refuse);
    void loadWhenIdle(StartCommand command);
    void preparePalette(std::chrono::milliseconds delay);

    DependencyContainer& container;
    const std::unique_ptr<PanelActivation> panelActivation;
    DesktopStatusArea statusArea;
    LaunchState launchState;
    MainContents contents;
    SettingsContents settingsContents;
    std::unique_ptr<AppCommands> appCommands; ///< made when the first window needs them
    std::optional<Termination> ending;        ///< made at the first question about the end
    QtApplicationWindows windows;
    AppDelegate appDelegate;
    QuitSignals quitSignals;
};

} // namespace vellumry
