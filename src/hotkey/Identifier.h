#pragma once

#include <array>
#include <cstdint>

namespace vellumry::hotkey {

/// A random UUID: names a hot key for as long as it lives.
struct Identifier {
    std::array<std::uint8_t, 16> bytes{};

    [[nodiscard]] static Identifier make();

    friend bool operator==(const Identifier&, const Identifier&) = default;
};

} // namespace vellumry::hotkey
