#include "core/SerialQueue.h"

#include "core/Scheduler.h"
#include "support/Eventually.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <vector>

using namespace vellumry;

namespace {

TEST(SerialQueue, runsTasksInOrderOnOneThreadOfItsOwn)
{
    SerialQueue queue(QStringLiteral("queue"));
    std::vector<int> order;
    std::vector<QThread*> threads;
    for (int i = 0; i < 100; ++i) {
        QMetaObject::invokeMethod(
            &queue.context(),
            [&, i] {
                order.push_back(i);
                threads.push_back(QThread::currentThread());
            },
            Qt::QueuedConnection);
    }
    SerialQueue::runAndWait(queue.context(), [&] { order.push_back(100); });
    ASSERT_EQ(order.size(), 101U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
    for (const QThread* thread : threads) {
        EXPECT_EQ(thread, queue.context().thread());
        EXPECT_NE(thread, QThread::currentThread());
    }
}

TEST(SerialQueue, aTaskAskedForOnItsOwnThreadRunsAtOnce)
{
    QObject here;
    bool isRun = false;
    SerialQueue::runAndWait(here, [&] { isRun = true; });
    EXPECT_TRUE(isRun);
    SerialQueue queue(QStringLiteral("queue"));
    bool isRunInside = false;
    SerialQueue::runAndWait(queue.context(), [&] {
        SerialQueue::runAndWait(queue.context(), [&] { isRunInside = true; });
    });
    EXPECT_TRUE(isRunInside);
}

TEST(SerialQueue, delayedCallsRunOnTheThreadOfTheirOwner)
{
    SerialQueue queue(QStringLiteral("queue"));
    std::atomic<QThread*> thread = nullptr;
    EventLoopScheduler scheduler;
    scheduler.after(std::chrono::milliseconds(1), &queue.context(),
                    [&] { thread = QThread::currentThread(); });
    EXPECT_TRUE(test::eventually([&] { return thread != nullptr; }));
    EXPECT_EQ(thread, queue.context().thread());
}

TEST(SerialQueue, whatIsNotDueAtTheEndDoesNotRun)
{
    bool isRun = false;
    {
        SerialQueue queue(QStringLiteral("queue"));
        EventLoopScheduler scheduler;
        scheduler.after(std::chrono::hours(1), &queue.context(), [&] { isRun = true; });
    }
    EXPECT_FALSE(isRun);
}

} // namespace
