#include "platform/linux/GlobalMenu.h"

#include "session/PrivateBus.h"
#include "support/Eventually.h"

#include <gtest/gtest.h>

namespace vellumry::test {
namespace {

const QString registrar = QStringLiteral("com.canonical.AppMenu.Registrar");

class GlobalMenuTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(bus.address().isEmpty()) << qPrintable(bus.failure());
        QObject::connect(&menu, &GlobalMenu::changed, &menu, [this] { ++changes; });
    }

    PrivateBus bus;
    GlobalMenu menu;
    int changes = 0;
};

TEST_F(GlobalMenuTest, OneThatIsThereIsFoundOnce)
{
    QDBusConnection desktop = bus.connect();
    ASSERT_TRUE(desktop.registerService(registrar));
    menu.startLooking(bus.connect());
    EXPECT_FALSE(menu.isThere()) << "nothing waits for the answer";
    EXPECT_TRUE(eventually([&] { return menu.isThere(); }));
    EXPECT_EQ(changes, 1);
}

TEST_F(GlobalMenuTest, ItMayComeAndGo)
{
    QDBusConnection desktop = bus.connect();
    menu.startLooking(bus.connect());
    // Heard of by the signal: the answer to the question stands before it on the bus.
    ASSERT_TRUE(eventually([&] {
        if (!menu.isThere())
            desktop.registerService(registrar);
        return menu.isThere();
    }));
    ASSERT_TRUE(desktop.unregisterService(registrar));
    EXPECT_TRUE(eventually([&] { return !menu.isThere(); }));
    ASSERT_TRUE(desktop.registerService(registrar));
    EXPECT_TRUE(eventually([&] { return menu.isThere(); }));
    EXPECT_EQ(changes, 3);
}

TEST_F(GlobalMenuTest, WithoutABusThereIsNone)
{
    menu.startLooking(QDBusConnection(QStringLiteral("none of that name")));
    QCoreApplication::processEvents();
    EXPECT_FALSE(menu.isThere());
    EXPECT_EQ(changes, 0);
}

} // namespace
} // namespace vellumry::test
