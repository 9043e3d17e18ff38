#include "core/Scheduler.h"

#include <QTimer>

#include <utility>

namespace vellumry {

void EventLoopScheduler::after(std::chrono::milliseconds delay, QObject* owner,
                               std::function<void()> action)
{
    // Made on the owner's thread the timer belongs to that thread's dispatcher and goes with it; a
    // timer sent there from elsewhere belongs to nobody and is lost when the thread ends first.
    QMetaObject::invokeMethod(owner, [delay, owner, action = std::move(action)]() mutable {
        QTimer::singleShot(delay, Qt::PreciseTimer, owner, std::move(action));
    });
}

EventLoopScheduler& EventLoopScheduler::shared()
{
    static EventLoopScheduler scheduler;
    return scheduler;
}

Debouncer::Debouncer(Scheduler& timing, std::chrono::milliseconds quietPeriod, QObject* receiver,
                     std::function<void()> whenQuiet)
    : scheduler(timing), delay(quietPeriod), owner(receiver), action(std::move(whenQuiet))
{
}

void Debouncer::trigger()
{
    const unsigned current = ++generation;
    scheduler.after(delay, owner, [this, current] {
        if (current == generation)
            action();
    });
}

} // namespace vellumry
