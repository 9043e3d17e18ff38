#include "app/SingleInstance.h"

#include "support/LogCapture.h"

#include <QByteArray>
#include <gtest/gtest.h>

namespace vellumry::test {

namespace {

/// Another value of a variable of the environment, for the time being.
class Environment {
public:
    Environment(const char* variable, const QByteArray& value)
        : name(variable), before(qgetenv(variable))
    {
        qputenv(name, value);
    }
    ~Environment() { qputenv(name, before); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* name;
    QByteArray before;
};

TEST(SingleInstanceTest, withoutASessionBusEachStartIsTheFirst)
{
    const Environment noAddress("DBUS_SESSION_BUS_ADDRESS", {});
    const Environment noFolder("XDG_RUNTIME_DIR", "/nonexistent");
    const LogCapture log;
    for (const StartCommand command : {StartCommand::open, StartCommand::togglePalette}) {
        SingleInstance instance;
        EXPECT_EQ(instance.claim(command), SingleInstance::Role::first);
        instance.listen([](StartCommand) { FAIL() << "nobody can ask"; });
    }
    EXPECT_EQ(log.lines.value(0),
              QStringLiteral("SingleInstance: there is no session bus, so a second start will not "
                             "find this one"));
}

} // namespace

} // namespace vellumry::test
