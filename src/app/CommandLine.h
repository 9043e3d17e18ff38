#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace vellumry {

/// What a start of the program asks for, of itself or of the one that is running already.
enum class StartCommand {
    open,          ///< by hand: shows the main window
    stayHidden,    ///< in the background: shows nothing
    togglePalette, ///< the three are the way in for desktops without hot key or status area
    newSnippet,
    showSettings,
    quit,
};

/// What the command line says.
struct CommandLine {
    StartCommand command = StartCommand::open;
    bool wantsHelp = false;
    std::optional<QString> unknownArgument; ///< the first that means nothing
};

/// `arguments` are those after the program's name. Of several commands the last one counts.
[[nodiscard]] CommandLine parseCommandLine(const QStringList& arguments);

/// The switch of a command, such as "--hidden"; empty for StartCommand::open.
[[nodiscard]] QString switchOf(StartCommand command);
/// The command that a switch stands for.
[[nodiscard]] std::optional<StartCommand> commandOf(const QString& name);

/// What --help prints.
[[nodiscard]] QString commandLineHelp();

} // namespace vellumry
