#include "platform/linux/DesktopStatusArea.h"

#include "support/Environment.h"
#include "support/ManualScheduler.h"

#include <QObject>
#include <gtest/gtest.h>

using namespace vellumry;
using namespace vellumry::test;

namespace {

using namespace std::chrono_literals;

TEST(DesktopStatusAreaTest, withoutABusAndATrayIsMissingAfterAWhile)
{
    const Environment noAddress("DBUS_SESSION_BUS_ADDRESS", {});
    const Environment noFolder("XDG_RUNTIME_DIR", "/nonexistent");
    ManualScheduler scheduler;
    DesktopStatusArea area(scheduler);
    int missing = 0;
    int appeared = 0;
    QObject::connect(&area, &StatusArea::missing, &area, [&missing] { ++missing; });
    QObject::connect(&area, &StatusArea::appeared, &area, [&appeared] { ++appeared; });
    area.startLooking();
    scheduler.advance(DesktopStatusArea::patience - 1ms);
    EXPECT_EQ(missing, 0);
    scheduler.advance(1min);
    EXPECT_EQ(missing, 1) << "once";
    EXPECT_EQ(appeared, 0);
}

} // namespace
