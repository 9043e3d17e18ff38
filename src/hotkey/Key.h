#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vellumry::hotkey {

/// A key of the keyboard, by what it types or does on a US keyboard.
enum class Key : std::uint8_t {
    a,
    b,
    c,
    d,
    e,
    f,
    g,
    h,
    i,
    j,
    k,
    l,
    m,
    n,
    o,
    p,
    q,
    r,
    s,
    t,
    u,
    v,
    w,
    x,
    y,
    z,
    zero,
    one,
    two,
    three,
    four,
    five,
    six,
    seven,
    eight,
    nine,
    period,
    quote,
    rightBracket,
    semicolon,
    slash,
    backslash,
    comma,
    equal,
    grave,
    leftBracket,
    minus,
    section,
    space,
    tab,
    return_,
    command,
    rightCommand,
    option,
    rightOption,
    control,
    rightControl,
    shift,
    rightShift,
    function,
    capsLock,
    pageUp,
    pageDown,
    home,
    end,
    upArrow,
    rightArrow,
    downArrow,
    leftArrow,
    f1,
    f2,
    f3,
    f4,
    f5,
    f6,
    f7,
    f8,
    f9,
    f10,
    f11,
    f12,
    f13,
    f14,
    f15,
    f16,
    f17,
    f18,
    f19,
    f20,
    keypad0,
    keypad1,
    keypad2,
    keypad3,
    keypad4,
    keypad5,
    keypad6,
    keypad7,
    keypad8,
    keypad9,
    keypadClear,
    keypadDecimal,
    keypadDivide,
    keypadEnter,
    keypadEquals,
    keypadMinus,
    keypadMultiply,
    keypadPlus,
    escape,
    delete_,
    forwardDelete,
    help,
    volumeUp,
    volumeDown,
    mute,
};

/// The number of keys; their values run from 0 to keyCount - 1.
inline constexpr std::size_t keyCount = 114;

/// The Carbon virtual key code, by which combinations are stored. Unique for each key.
[[nodiscard]] std::uint32_t carbonKeyCode(Key key);

/// The key with that virtual key code, or nothing.
[[nodiscard]] std::optional<Key> keyFromCarbonKeyCode(std::uint32_t code);

/// The key that a name or a symbol stands for (UTF-8, letter case does not count), such as "t",
/// "RETURN", "7", "seven" or "⌫"; or nothing.
[[nodiscard]] std::optional<Key> keyFromString(std::string_view text);

/// The text that shows a key to people, UTF-8: "T", "7", "⌫", "F5".
[[nodiscard]] std::string_view description(Key key);

} // namespace vellumry::hotkey
