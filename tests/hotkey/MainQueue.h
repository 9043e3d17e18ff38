#pragma once

#include "hotkey/HotKeyBackend.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace vellumry::hotkey {

/// Plays the main thread's event loop: functions posted from any thread run when the test waits.
class MainQueue {
public:
    [[nodiscard]] MainThreadExecutor executor()
    {
        return [this](std::function<void()> function) {
            const std::lock_guard lock(mutex);
            functions.push_back(std::move(function));
            arrived.notify_one();
        };
    }

    /// Runs what is posted until `condition` holds; false when it does not within the limit.
    template <typename Condition>
    [[nodiscard]] bool runUntil(const Condition& condition,
                                std::chrono::milliseconds limit = std::chrono::seconds(20))
    {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!condition()) {
            if (std::chrono::steady_clock::now() >= end)
                return false;
            runNext();
        }
        return true;
    }

    /// Whether something waits to be run, without running it.
    [[nodiscard]] bool isEmpty()
    {
        const std::lock_guard lock(mutex);
        return functions.empty();
    }

private:
    /// Waits a moment for a function if there is none.
    void runNext()
    {
        std::unique_lock lock(mutex);
        arrived.wait_for(lock, std::chrono::milliseconds(2), [&] { return !functions.empty(); });
        if (functions.empty())
            return;
        const auto function = std::move(functions.front());
        functions.pop_front();
        lock.unlock();
        function();
    }

    std::mutex mutex;
    std::condition_variable arrived;
    std::deque<std::function<void()>> functions;
};

} // namespace vellumry::hotkey
