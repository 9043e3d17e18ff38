#pragma once

#include "core/BackgroundRunner.h"

#include <deque>
#include <utility>

namespace vellumry::test {

/// A runner whose work and whose actions on the main thread a test runs by hand.
class ManualBackgroundRunner final : public BackgroundRunner {
public:
    void run(std::function<void()> work) override { works.push_back(std::move(work)); }

    void onMain(const QPointer<QObject>& owner, std::function<void()> action) override
    {
        actions.push_back({owner, std::move(action)});
    }

    /// Runs the work in hand, as the other thread would.
    void runWork()
    {
        while (!works.empty()) {
            const auto work = std::move(works.front());
            works.pop_front();
            work();
        }
    }

    /// Runs what was handed to the main thread.
    void runActions()
    {
        while (!actions.empty()) {
            const auto action = std::move(actions.front());
            actions.pop_front();
            if (action.first)
                action.second();
        }
    }

    [[nodiscard]] bool hasWork() const { return !works.empty(); }

private:
    std::deque<std::function<void()>> works;
    std::deque<std::pair<QPointer<QObject>, std::function<void()>>> actions;
};

} // namespace vellumry::test
