#include "core/Scheduler.h"

#include "support/Eventually.h"
#include "support/ManualScheduler.h"

#include <QElapsedTimer>
#include <gtest/gtest.h>

#include <memory>

namespace vellumry {
namespace {

using namespace std::chrono_literals;

TEST(EventLoopScheduler, RunsAnActionAfterItsDelay)
{
    QObject owner;
    QElapsedTimer time;
    time.start();
    bool isDone = false;
    EventLoopScheduler::shared().after(30ms, &owner, [&] { isDone = true; });
    EXPECT_TRUE(test::eventually([&] { return isDone; }));
    EXPECT_GE(time.elapsed(), 30);
}

TEST(EventLoopScheduler, ADelayOfZeroIsNotAtOnce)
{
    QObject owner;
    bool isDone = false;
    EventLoopScheduler::shared().after(0ms, &owner, [&] { isDone = true; });
    EXPECT_FALSE(isDone);
    EXPECT_TRUE(test::eventually([&] { return isDone; }));
}

TEST(EventLoopScheduler, AnOwnerThatIsGoneIsNotCalled)
{
    QObject other;
    auto owner = std::make_unique<QObject>();
    bool isCalled = false;
    bool isLaterDone = false;
    EventLoopScheduler::shared().after(1ms, owner.get(), [&] { isCalled = true; });
    EventLoopScheduler::shared().after(30ms, &other, [&] { isLaterDone = true; });
    owner.reset();
    EXPECT_TRUE(test::eventually([&] { return isLaterDone; }));
    EXPECT_FALSE(isCalled);
}

TEST(Debouncer, RunsOnceAfterTheLastTrigger)
{
    test::ManualScheduler scheduler;
    QObject owner;
    int runs = 0;
    Debouncer debouncer(scheduler, 50ms, &owner, [&] { ++runs; });
    debouncer.trigger();
    scheduler.advance(49ms);
    debouncer.trigger();
    scheduler.advance(49ms);
    EXPECT_EQ(runs, 0);
    scheduler.advance(1ms);
    EXPECT_EQ(runs, 1);
    scheduler.advance(1000ms);
    EXPECT_EQ(runs, 1);
}

TEST(Debouncer, RunsAgainAfterARest)
{
    test::ManualScheduler scheduler;
    QObject owner;
    int runs = 0;
    Debouncer debouncer(scheduler, 50ms, &owner, [&] { ++runs; });
    debouncer.trigger();
    scheduler.advance(50ms);
    debouncer.trigger();
    scheduler.advance(50ms);
    EXPECT_EQ(runs, 2);
}

TEST(Debouncer, EndsWithItsOwner)
{
    test::ManualScheduler scheduler;
    auto owner = std::make_unique<QObject>();
    int runs = 0;
    Debouncer debouncer(scheduler, 50ms, owner.get(), [&] { ++runs; });
    debouncer.trigger();
    owner.reset();
    scheduler.advance(100ms);
    EXPECT_EQ(runs, 0);
}

} // namespace
} // namespace vellumry
