#pragma once

#include "core/Date.h"

namespace vellumry::test {

/// A clock that stands still until a test moves it.
class ManualClock final : public Clock {
public:
    ManualClock() = default;
    explicit ManualClock(Date start) : time(start) {}

    [[nodiscard]] Date now() const override { return time; }
    void advance(std::chrono::nanoseconds by) { time += by; }

    Date time = Date(std::chrono::seconds(1'770'000'000)); // 2026-02-02T02:40:00Z
};

} // namespace vellumry::test
