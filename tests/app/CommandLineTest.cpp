#include "app/CommandLine.h"

#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

TEST(CommandLineTest, withoutAnythingOpensTheProgram)
{
    const CommandLine line = parseCommandLine({});
    EXPECT_EQ(line.command, StartCommand::open);
    EXPECT_FALSE(line.wantsHelp);
    EXPECT_FALSE(line.unknownArgument);
}

TEST(CommandLineTest, eachSwitchHasItsCommandAndBack)
{
    for (const auto& [name, command] :
         {std::pair{QStringLiteral("--hidden"), StartCommand::stayHidden},
          std::pair{QStringLiteral("--toggle-palette"), StartCommand::togglePalette},
          std::pair{QStringLiteral("--new-snippet"), StartCommand::newSnippet},
          std::pair{QStringLiteral("--open-settings"), StartCommand::showSettings},
          std::pair{QStringLiteral("--quit"), StartCommand::quit}}) {
        EXPECT_EQ(parseCommandLine({name}).command, command);
        EXPECT_EQ(switchOf(command), name);
        EXPECT_TRUE(commandLineHelp().contains(name));
    }
    EXPECT_TRUE(switchOf(StartCommand::open).isEmpty());
    EXPECT_FALSE(commandOf(QString()));
}

TEST(CommandLineTest, theLastCommandCounts)
{
    EXPECT_EQ(
        parseCommandLine({QStringLiteral("--hidden"), QStringLiteral("--open-settings")}).command,
        StartCommand::showSettings);
}

TEST(CommandLineTest, tellsWhatItDoesNotKnow)
{
    const CommandLine line = parseCommandLine(
        {QStringLiteral("--hidden"), QStringLiteral("--loud"), QStringLiteral("file")});
    EXPECT_EQ(line.unknownArgument, QStringLiteral("--loud"));
    EXPECT_TRUE(parseCommandLine({QStringLiteral("--help")}).wantsHelp);
    EXPECT_TRUE(parseCommandLine({QStringLiteral("-h")}).wantsHelp);
}

} // namespace

} // namespace vellumry::test
