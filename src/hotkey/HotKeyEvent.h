#pragma once

#include <cstdint>

namespace vellumry::hotkey {

/// Names a registration to the backend, which gives it back with each event.
struct HotKeyID {
    std::uint32_t signature = 0;
    std::uint32_t number = 0;

    friend bool operator==(const HotKeyID&, const HotKeyID&) = default;
};

/// A four-character code: each character shifted into the value, the first one highest.
[[nodiscard]] constexpr std::uint32_t fourCharacterCode(const char (&text)[5])
{
    std::uint32_t code = 0;
    for (int index = 0; index < 4; ++index)
        code = (code << 8) | static_cast<unsigned char>(text[index]);
    return code;
}

/// A press or a release of a registered combination.
struct HotKeyEvent {
    static constexpr std::uint32_t pressed = 5;
    static constexpr std::uint32_t released = 6;

    std::uint32_t kind = pressed;
    HotKeyID hotKeyID;
    /// The window system's time of the event in milliseconds, 0 when it has none.
    std::uint32_t time = 0;
    /// Not zero when the backend could not tell `hotKeyID`.
    std::int32_t parameterStatus = 0;
};

} // namespace vellumry::hotkey
