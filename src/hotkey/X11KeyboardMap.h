#pragma once

#include "hotkey/Key.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

struct xcb_connection_t;

namespace vellumry::hotkey {

/// What the keys of an X server's keyboard mean at one moment, and where the product's keys and
/// modifiers lie on it. A plain value: tests make their own.
struct X11KeyboardMap {
    using KeySymbol = std::uint32_t;
    using Levels = std::vector<KeySymbol>; ///< What a key types plain, with Shift, and so on.

    std::array<std::vector<Levels>, 256> groups;               ///< By key code: a layout each.
    std::size_t currentGroup = 0;                              ///< The layout in use.
    std::array<std::vector<std::uint8_t>, 8> modifierKeycodes; ///< By modifier bit.

    /// Nothing when the connection fails.
    [[nodiscard]] static std::optional<X11KeyboardMap> read(xcb_connection_t* connection);

    /// The key code of the key that types `key` in the layout in use; else in any other layout;
    /// else of the key in its place on a US keyboard, whether or not this one has it. Nothing for a
    /// key that X has no code for.
    [[nodiscard]] std::optional<std::uint8_t> keycode(Key key) const;

    /// The modifier bits for a Carbon mask: command is Ctrl, option is Alt, control is Super.
    [[nodiscard]] std::uint16_t modifierMask(std::uint32_t carbonModifiers) const;

    /// The bits of Caps Lock, Num Lock and Scroll Lock, whose state does not matter to a hot key.
    [[nodiscard]] std::uint16_t lockMask() const;

private:
    [[nodiscard]] bool types(std::uint8_t keycode, KeySymbol symbol) const;
    [[nodiscard]] std::optional<std::uint16_t>
    modifierHolding(std::initializer_list<KeySymbol> symbols) const;
};

} // namespace vellumry::hotkey
