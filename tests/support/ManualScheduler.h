#pragma once

#include "core/Scheduler.h"

#include <QPointer>

#include <algorithm>
#include <utility>
#include <vector>

namespace vellumry::test {

/// A scheduler whose time a test moves by hand. Actions run in the order of their due times,
/// those of the same time in the order in which they were asked for.
class ManualScheduler final : public Scheduler {
public:
    void after(std::chrono::milliseconds delay, QObject* owner,
               std::function<void()> action) override
    {
        calls.push_back({now + delay, owner, std::move(action)});
    }

    /// Moves the time on and runs what falls due, also what the actions themselves ask for.
    void advance(std::chrono::milliseconds by)
    {
        const auto target = now + by;
        for (;;) {
            const auto next =
                std::min_element(calls.begin(), calls.end(),
                                 [](const Call& a, const Call& b) { return a.due < b.due; });
            if (next == calls.end() || next->due > target)
                break;
            const Call call = std::move(*next);
            calls.erase(next);
            now = call.due;
            if (call.owner)
                call.action();
        }
        now = target;
    }

    [[nodiscard]] size_t pending() const { return calls.size(); }

private:
    struct Call {
        std::chrono::milliseconds due;
        QPointer<QObject> owner;
        std::function<void()> action;
    };
    std::chrono::milliseconds now{0};
    std::vector<Call> calls;
};

} // namespace vellumry::test
