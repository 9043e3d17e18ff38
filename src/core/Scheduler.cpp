#include "core/Scheduler.h"

#include <QTimer>

#include <utility>

namespace vellumry {

void EventLoopScheduler::after(std::chrono::milliseconds delay, QObject* owner,
                               std::function<void()> action)
{
    QTimer::singleShot(delay, Qt::PreciseTimer, owner, std::move(action));
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
