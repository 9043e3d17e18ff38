#pragma once

#include <QObject>

#include <chrono>
#include <functional>

namespace vellumry {

/// Delayed calls on the thread of their owner, the main thread mostly. The owner is held weakly:
/// when it is gone, the call does not happen. Tests hand in a scheduler that they move forward by
/// hand.
class Scheduler {
public:
    virtual ~Scheduler() = default;

    /// Runs `action` on the owner's thread after `delay`, unless `owner` has been destroyed by
    /// then. A delay of zero means the next turn of the event loop, never at once.
    virtual void after(std::chrono::milliseconds delay, QObject* owner,
                       std::function<void()> action) = 0;
};

/// The scheduler on Qt's event loop.
class EventLoopScheduler final : public Scheduler {
public:
    void after(std::chrono::milliseconds delay, QObject* owner,
               std::function<void()> action) override;
    [[nodiscard]] static EventLoopScheduler& shared();
};

/// Runs an action once after a quiet period: each call of trigger() starts the wait anew.
/// Main thread only; ends with its owner.
class Debouncer final {
public:
    Debouncer(Scheduler& timing, std::chrono::milliseconds quietPeriod, QObject* receiver,
              std::function<void()> whenQuiet);
    Debouncer(const Debouncer&) = delete;
    Debouncer& operator=(const Debouncer&) = delete;

    void trigger();

private:
    Scheduler& scheduler;
    std::chrono::milliseconds delay;
    QObject* owner;
    std::function<void()> action;
    unsigned generation = 0;
};

} // namespace vellumry
