#include "core/BackgroundRunner.h"

#include "support/Eventually.h"

#include <QDeadlineTimer>
#include <QList>
#include <QThread>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <semaphore>

namespace vellumry {
namespace {

using namespace std::chrono_literals;

TEST(ThreadRunner, WorksElsewhereAndReportsOnTheMainThreadInOrder)
{
    ThreadRunner runner;
    QObject owner;
    QList<int> reported;
    for (int i = 0; i < 3; ++i) {
        runner.run([&, i] {
            EXPECT_NE(QThread::currentThread(), QCoreApplication::instance()->thread());
            for (int step = 0; step < 2; ++step)
                runner.onMain(&owner, [&, i, step] {
                    EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
                    reported.append(2 * i + step);
                });
        });
    }
    EXPECT_TRUE(test::eventually([&] { return reported.size() == 6; }));
    EXPECT_EQ(reported, (QList<int>{0, 1, 2, 3, 4, 5}));
}

TEST(ThreadRunner, ActionsAreNeverRunAtOnceAndEndWithTheirOwner)
{
    ThreadRunner runner;
    auto owner = std::make_unique<QObject>();
    QObject other;
    bool hasRun = false;
    bool isOver = false;
    runner.onMain(owner.get(), [&] { hasRun = true; });
    runner.onMain(&other, [&] { isOver = true; });
    EXPECT_FALSE(isOver);
    owner.reset();
    EXPECT_TRUE(test::eventually([&] { return isOver; }));
    EXPECT_FALSE(hasRun);
}

/// Gives a runner one piece of work in hand and one behind it, and lets `end` end them.
void expectTheWorkInHandToBeTheLast(const std::function<void()>& end, ThreadRunner& runner)
{
    std::binary_semaphore begun(0);
    std::atomic<bool> isDone = false;
    std::atomic<bool> hasBegunTheRest = false;
    // Lives as long as the work behind waits for its turn.
    auto rest = std::make_shared<bool>();
    runner.run([&, waiting = std::weak_ptr(rest)] {
        begun.release();
        const QDeadlineTimer deadline(20'000);
        while (!waiting.expired() && !deadline.hasExpired())
            QThread::yieldCurrentThread();
        isDone = true;
    });
    begun.acquire();
    runner.run([&, rest = std::move(rest)] { hasBegunTheRest = true; });
    end();
    EXPECT_TRUE(isDone);
    EXPECT_FALSE(hasBegunTheRest);
}

TEST(ThreadRunner, ItsEndWaitsForTheWorkInHandAndDropsTheRest)
{
    auto runner = std::make_unique<ThreadRunner>();
    expectTheWorkInHandToBeTheLast([&] { runner.reset(); }, *runner);
}

TEST(ThreadRunner, DrainedItHasNoWorkLeftAndTakesMore)
{
    ThreadRunner runner;
    runner.drain();
    for (int turn = 0; turn < 3; ++turn)
        expectTheWorkInHandToBeTheLast([&] { runner.drain(); }, runner);
}

} // namespace
} // namespace vellumry
