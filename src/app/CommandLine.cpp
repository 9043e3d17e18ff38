#include "app/CommandLine.h"

#include <QStringBuilder>

#include <algorithm>
#include <array>

namespace vellumry {

namespace {

struct Switch {
    StartCommand command;
    QLatin1StringView name;
    QLatin1StringView help;
};

constexpr std::array switches{
    Switch{StartCommand::stayHidden, QLatin1StringView("--hidden"),
           QLatin1StringView("start in the background, without the main window")},
    Switch{StartCommand::togglePalette, QLatin1StringView("--toggle-palette"),
           QLatin1StringView("show the palette, or hide it when it is there")},
    Switch{StartCommand::newSnippet, QLatin1StringView("--new-snippet"),
           QLatin1StringView("open the main window with a new snippet")},
    Switch{StartCommand::showSettings, QLatin1StringView("--open-settings"),
           QLatin1StringView("open the settings")},
    Switch{StartCommand::quit, QLatin1StringView("--quit"),
           QLatin1StringView("end the program that is running")},
};

} // namespace

CommandLine parseCommandLine(const QStringList& arguments)
{
    CommandLine line;
    for (const QString& argument : arguments) {
        if (argument == QLatin1StringView("--help") || argument == QLatin1StringView("-h"))
            line.wantsHelp = true;
        else if (const auto command = commandOf(argument))
            line.command = *command;
        else if (!line.unknownArgument)
            line.unknownArgument = argument;
    }
    return line;
}

QString switchOf(StartCommand command)
{
    const auto* const found =
        std::find_if(switches.begin(), switches.end(),
                     [command](const Switch& each) { return each.command == command; });
    return found == switches.end() ? QString() : QString(found->name);
}

std::optional<StartCommand> commandOf(const QString& name)
{
    for (const Switch& each : switches) {
        if (each.name == name)
            return each.command;
    }
    return std::nullopt;
}

QString commandLineHelp()
{
    QString text = QStringLiteral(
        "vellumry [SWITCH]\n\n"
        "Starts Vellumry and shows its main window. If it is running already, the running one does "
        "so,\nor what the switch says.\n\n");
    for (const Switch& each : switches)
        text += QStringLiteral("  %1  %2\n").arg(each.name, -16).arg(each.help);
    return text;
}

} // namespace vellumry
