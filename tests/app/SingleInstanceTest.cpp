#include "app/SingleInstance.h"

#include "app/RemoteCommands.h"
#include "support/Environment.h"
#include "support/LogCapture.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

TEST(SingleInstanceTest, withoutASessionBusEachStartIsTheFirst)
{
    const Environment noAddress("DBUS_SESSION_BUS_ADDRESS", {});
    const Environment noFolder("XDG_RUNTIME_DIR", "/nonexistent");
    const LogCapture log;
    for (const StartCommand command : {StartCommand::open, StartCommand::togglePalette}) {
        SingleInstance instance;
        EXPECT_EQ(instance.claim(command), SingleInstance::Role::first);
        instance.listen([](StartCommand, const QByteArray&) { FAIL() << "nobody can ask"; });
    }
    EXPECT_EQ(log.lines.value(0),
              QStringLiteral("SingleInstance: there is no session bus, so a second start will not "
                             "find this one"));
}

TEST(RemoteCommandsTest, whatComesBeforeSomebodyListensWaits)
{
    QObject object;
    RemoteCommands commands(&object);
    QList<StartCommand> received;
    commands.Activate({});
    commands.ActivateAction(QStringLiteral("toggle-palette"), {}, {});
    commands.listen(
        [&received](StartCommand command, const QByteArray&) { received.append(command); });
    commands.Open({QStringLiteral("file:///a")}, {});
    EXPECT_TRUE(received.isEmpty()) << "the caller has its answer first";
    QCoreApplication::processEvents();
    EXPECT_THAT(received, testing::ElementsAre(StartCommand::open, StartCommand::togglePalette,
                                               StartCommand::open));
}

TEST(RemoteCommandsTest, theDesktopsTokenComesAlong)
{
    QObject object;
    RemoteCommands commands(&object);
    QByteArrayList tokens;
    commands.ActivateAction(QStringLiteral("toggle-palette"), {},
                            {{RemoteCommands::tokenKey, QStringLiteral("first")}});
    commands.listen([&tokens](StartCommand, const QByteArray& token) { tokens.append(token); });
    commands.Activate({{RemoteCommands::tokenKey, QStringLiteral("second")}});
    commands.Open({}, {{QStringLiteral("desktop-startup-id"), QStringLiteral("third")}});
    commands.Activate({{QStringLiteral("desktop-startup-id"), QStringLiteral("older")},
                       {RemoteCommands::tokenKey, QStringLiteral("fourth")}});
    commands.Activate({});
    QCoreApplication::processEvents();
    EXPECT_THAT(tokens, testing::ElementsAre("first", "second", "third", "fourth", ""));
}

/// Desktops and people's own keys call them by these names.
TEST(RemoteCommandsTest, theActions)
{
    QObject object;
    RemoteCommands commands(&object);
    QList<StartCommand> received;
    commands.listen(
        [&received](StartCommand command, const QByteArray&) { received.append(command); });
    for (const char* action : {"new-snippet", "toggle-palette", "open-settings", "quit"})
        commands.ActivateAction(QLatin1StringView(action), {}, {});
    QCoreApplication::processEvents();
    EXPECT_THAT(received,
                testing::ElementsAre(StartCommand::newSnippet, StartCommand::togglePalette,
                                     StartCommand::showSettings, StartCommand::quit));
}

TEST(RemoteCommandsTest, anActionThatThereIsNotDoesNothing)
{
    QObject object;
    RemoteCommands commands(&object);
    int received = 0;
    commands.listen([&received](StartCommand, const QByteArray&) { ++received; });
    commands.ActivateAction(QStringLiteral("format-disk"), {}, {});
    commands.ActivateAction(QString(), {}, {});
    QCoreApplication::processEvents();
    EXPECT_EQ(received, 0);
}

} // namespace

} // namespace vellumry::test
